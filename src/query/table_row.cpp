#include "eventlog/terminal.h"
#include "query/writers.h"

#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

namespace eventsviewer::query {

namespace {

constexpr std::size_t kTimeWidth = 16;
constexpr std::size_t kNameWidth = 31;
constexpr std::size_t kWideTerminal = 100; // from here on the detail has a column of its own
constexpr std::size_t kIndentBelow = 4;
constexpr std::size_t kLeastDetail = 20; // a detail is never broken into shorter lines than this
constexpr std::string_view kColourOn = "\033[1;34m";
constexpr std::string_view kColourOff = "\033[0m";

// Adds `detail`, each of whose lines begins in the column `indent`; the first is there already.
void appendDetail(std::string& out, std::string_view detail, std::size_t indent, std::size_t width)
{
    const std::size_t columns = std::max(width, indent + kLeastDetail) - indent;
    std::size_t begin = 0;
    for (bool more = true; more;) {
        const std::size_t end = detail.find('\n');
        more = end != std::string_view::npos;
        const std::string line = safe(detail.substr(0, end));
        detail.remove_prefix(more ? end + 1 : detail.size());
        std::string_view rest = line;
        do {
            const std::size_t length = width != 0 ? fittingLength(rest, columns) : rest.size();
            out.append(length > 0 ? begin : 0, ' ');
            out += rest.substr(0, length);
            rest.remove_prefix(std::min(rest.size(), length));
            rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(' ')));
            out += '\n';
            begin = indent;
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

Layout layoutOfTerminal(bool colour)
{
    if (isatty(STDOUT_FILENO) == 0) {
        return {0, colour, 0};
    }
    const char* const columns = std::getenv("COLUMNS");
    const long width = columns != nullptr ? std::strtol(columns, nullptr, 10) : 0;
    // For the widths of characters. The patterns of the options compare bytes in the "C" locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    return {width > 0 ? static_cast<std::size_t>(width) : terminalWidth(STDOUT_FILENO), colour, 0};
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
