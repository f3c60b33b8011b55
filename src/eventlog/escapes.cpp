#include "eventlog/escapes.h"

#include "jsonaccess/json_content.h"

#include <algorithm>
#include <cstdio>

namespace eventsviewer {

std::string safe(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    const auto isPlain = [](char c) { return c >= ' ' && c < '\x7f'; };
    for (;;) {
        const auto plain = std::find_if_not(text.begin(), text.end(), isPlain) - text.begin();
        out.append(text, 0, static_cast<std::size_t>(plain));
        text.remove_prefix(static_cast<std::size_t>(plain));
        if (text.empty()) {
            return out;
        }
        const jsonaccess::Character character = jsonaccess::firstCharacter(text);
        if (character.safe) {
            out.append(text, 0, character.bytes);
        } else {
            const bool isByte = !character.valid || character.code < 0x80;
            char escape[16];
            std::snprintf(escape, sizeof escape, isByte ? "\\x%02x" : "\\u%04x",
                          static_cast<unsigned>(character.code));
            out += escape;
        }
        text.remove_prefix(character.bytes);
    }
}

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

} // namespace eventsviewer
