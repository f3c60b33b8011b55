#include "text/form.h"

#include <algorithm>
#include <cstddef>

namespace eventsviewer {

namespace {

constexpr std::string_view kBegin = "<!--";
constexpr std::string_view kEnd = "-->";

std::string endOf(std::string_view name)
{
    return "<!--/" + std::string(name) + "-->";
}

} // namespace

void fillForm(std::string& out, std::string_view form, const FormValues& values,
              std::string (*escape)(std::string_view))
{
    for (;;) {
        const std::size_t begin = std::min(form.find("{{"), form.find(kBegin));
        out += form.substr(0, begin);
        if (begin == std::string_view::npos) {
            return;
        }
        form.remove_prefix(begin);
        const bool isPart = form.front() == '<';
        form.remove_prefix(isPart ? kBegin.size() : 2);
        const std::string_view name = form.substr(0, form.find(isPart ? kEnd : "}}"));
        const auto isNamed = [name](const auto& value) { return value.first == name; };
        const auto value = std::find_if(values.begin(), values.end(), isNamed);
        if (value != values.end()) {
            out += isPart ? value->second : escape(value->second);
        }
        const std::string end = isPart ? endOf(name) : "}}";
        form.remove_prefix(form.find(end) + end.size());
    }
}

std::string_view partOf(std::string_view form, std::string_view name)
{
    const std::size_t begin = form.find(kBegin.data() + std::string(name) + kEnd.data());
    form.remove_prefix(begin + kBegin.size() + name.size() + kEnd.size());
    return form.substr(0, form.find(endOf(name)));
}

} // namespace eventsviewer
