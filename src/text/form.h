#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer {

/// The values of a form by their names.
using FormValues = std::vector<std::pair<std::string_view, std::string>>;

/// Adds `form` to `out`. Each "{{name}}" becomes the value of the name by `escape`, each part from
/// "<!--name-->" to "<!--/name-->" the value as it is. A value that is not given is empty.
void fillForm(std::string& out, std::string_view form, const FormValues& values,
              std::string (*escape)(std::string_view));

/// What is between "<!--name-->" and "<!--/name-->" in `form`, which has both.
std::string_view partOf(std::string_view form, std::string_view name);

} // namespace eventsviewer
