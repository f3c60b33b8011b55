#include "report/html.h"

#include "eventlog/terminal.h"

#include <cstddef>

namespace eventsviewer {

std::string html(std::string_view text)
{
    std::string out;
    for (;;) {
        const std::size_t end = text.find('\n');
        for (const char c : safe(text.substr(0, end))) {
            switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
            }
        }
        if (end == std::string_view::npos) {
            return out;
        }
        out += '\n';
        text.remove_prefix(end + 1);
    }
}

std::string countInWords(std::uint64_t number, const char* what)
{
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

} // namespace eventsviewer
