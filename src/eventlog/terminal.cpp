#include "eventlog/terminal.h"

#include "jsonaccess/json_content.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>

namespace eventsviewer {

namespace {

// The columns that the first character of a text takes.
std::size_t widthOf(const jsonaccess::Character& character)
{
    const int columns = character.code < 0x80 ? 1 : wcwidth(static_cast<wchar_t>(character.code));
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

} // namespace

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

std::size_t columnsOf(std::string_view text)
{
    std::size_t columns = 0;
    while (!text.empty()) {
        const jsonaccess::Character character = jsonaccess::firstCharacter(text);
        columns += widthOf(character);
        text.remove_prefix(character.bytes);
    }
    return columns;
}

std::size_t fittingLength(std::string_view text, std::size_t columns)
{
    std::size_t used = 0;
    std::size_t at = 0;
    std::size_t lastSpace = 0;
    while (at < text.size()) {
        const jsonaccess::Character character = jsonaccess::firstCharacter(text.substr(at));
        if (text[at] == ' ') {
            lastSpace = at;
        }
        used += widthOf(character);
        if (used > columns) {
            return lastSpace > 0 ? lastSpace : std::max(at, character.bytes);
        }
        at += character.bytes;
    }
    return at;
}

std::size_t terminalWidth(int descriptor)
{
    constexpr std::size_t kUsualWidth = 80;
    winsize size = {};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualWidth;
}

} // namespace eventsviewer
