#include "eventlog/escapes.h"
#include "jsonaccess/json_content.h"
#include "query/writers.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace eventsviewer::query {

namespace {

constexpr std::size_t kTimeWidth = 16;
constexpr std::size_t kNameWidth = 31;
constexpr std::size_t kWideTerminal = 100; // from here on the detail has a column of its own
constexpr std::size_t kIndentBelow = 4;
constexpr std::size_t kLeastDetail = 20; // a detail is never broken into shorter lines than this
constexpr std::string_view kColourOn = "\033[1;34m";
constexpr std::string_view kColourOff = "\033[0m";

// The columns that the first character of a text takes.
std::size_t widthOf(const jsonaccess::Character& character)
{
    const int columns = character.code < 0x80 ? 1 : wcwidth(static_cast<wchar_t>(character.code));
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

// How many bytes of `text` fit into `columns`: up to the last space there, which is left out, or as
// many characters as fit, one at least.
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

// Adds `detail`, each of whose lines begins in the column `indent`; the first is there already.
void appendDetail(std::string& out, std::string_view detail, std::size_t indent, std::size_t width)
{
    const std::size_t columns = std::max(width, indent + kLeastDetail) - indent;
    for (bool more = true; more;) {
        const std::size_t end = detail.find('\n');
        more = end != std::string_view::npos;
        const std::string line = safe(detail.substr(0, end));
        detail.remove_prefix(more ? end + 1 : detail.size());
        std::string_view rest = line;
        do {
            const std::size_t length = width != 0 ? fittingLength(rest, columns) : rest.size();
            out += rest.substr(0, length);
            rest.remove_prefix(std::min(rest.size(), length));
            rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(' ')));
            out += '\n';
            out.append(more || !rest.empty() ? indent : 0, ' ');
        } while (!rest.empty());
    }
}

// Adds `text` and at least one space, up to the column `end`; returns the column that is reached.
std::size_t appendField(std::string& out, const std::string& text, std::size_t begin,
                        std::size_t end)
{
    const std::size_t used = begin + columnsOf(text) + 1;
    out += text;
    out.append(used < end ? end - used + 1 : 1, ' ');
    return std::max(used, end);
}

} // namespace

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

Layout layoutOfTerminal(bool colour)
{
    if (isatty(STDOUT_FILENO) == 0) {
        return {0, colour, 0};
    }
    const char* const columns = std::getenv("COLUMNS");
    long width = columns != nullptr ? std::strtol(columns, nullptr, 10) : 0;
    winsize size = {};
    if (width <= 0) {
        ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
        width = size.ws_col; // 0 on a serial line
    }
    // For the widths of characters. The patterns of the options compare bytes in the "C" locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    return {width > 0 ? static_cast<std::size_t>(width) : kUsualWidth, colour, 0};
}

void appendTableRow(std::string& out, const Layout& layout, const EventView& event)
{
    const std::size_t nameBegin = kTimeWidth + layout.logWidth + (layout.logWidth > 0 ? 1 : 0);
    const bool below = layout.width != 0 && layout.width < kWideTerminal + layout.logWidth;
    const std::size_t indent = below ? kIndentBelow : nameBegin + kNameWidth;
    std::size_t column = appendField(out, safe(event.time()), 0, kTimeWidth);
    if (layout.logWidth > 0) {
        column = appendField(out, safe(*event.label), column, nameBegin);
    }
    out += layout.colour ? kColourOn : "";
    std::size_t end = column + event.name().size();
    out += event.name();
    out += layout.colour ? kColourOff : "";
    const std::string detail = event.wholeDetail();
    if (below || (layout.width != 0 && end >= indent)) {
        out += '\n';
        end = 0;
    }
    out.append(std::max(indent, end + 1) - end, ' ');
    appendDetail(out, detail, indent, layout.width);
}

} // namespace eventsviewer::query
