#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` in ASCII. A byte that is neither printable nor a newline becomes \x and its number.
inline std::string printable(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        char escaped[8];
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = c == '\n' || (byte >= 0x20 && byte <= 0x7e);
        std::snprintf(escaped, sizeof escaped, isPlain ? "%c" : "\\x%02x", byte);
        result += escaped;
    }
    return result;
}

} // namespace eventsviewer
