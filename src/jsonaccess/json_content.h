// JSON that is written without the library: strings from a log, which may be damaged or hostile.
// What a terminal or a parser could take for a command is written as an escape: control characters
// (C0, DEL, C1), characters that change the direction of the text or end a line, and bytes that are
// not UTF-8.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace eventsviewer::jsonaccess {

/// The first character of a text.
struct Character {
    char32_t code = 0;     ///< of a byte that is not UTF-8: its value
    std::size_t bytes = 1; ///< how long it is
    bool valid = false;    ///< whether it is UTF-8
    bool safe = false;     ///< whether it can be shown as it is
};

/// The first character of `text`, which is not empty.
Character firstCharacter(std::string_view text);

// JSON is written into memory that has room for the most bytes that a text can take.

/// The most bytes that take the place of `bytes` bytes, with what is written past the end.
constexpr std::size_t mostJsonBytes(std::size_t bytes)
{
    return 6 * bytes + 8;
}

/// Writes `text` as the content of a JSON string to `to`, and returns where it ends. A byte that is
/// not UTF-8 becomes U+FFFD.
char* putJsonContent(char* to, std::string_view text);

/// Writes `json`, a JSON text, in the same way; only what is unsafe in it is replaced.
char* putJson(char* to, std::string_view json);

/// `text` as the content of a JSON string.
std::string jsonContent(std::string_view text);

} // namespace eventsviewer::jsonaccess
