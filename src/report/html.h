#pragma once

#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` as the content of an HTML element or of an attribute in quotes. Its lines are kept; else
/// it is as safe() gives it.
std::string html(std::string_view text);

} // namespace eventsviewer
