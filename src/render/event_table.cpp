#include "render/event_table.h"

#include "catalog/event_names.h"
#include "describe/describe_event.h"
#include "render/table_memory.h"
#include "text/shared_text.h"

#include <algorithm>
#include <string_view>

namespace eventsviewer {

namespace {

constexpr std::size_t kTimeWidth = 20;
constexpr std::size_t kEventWidth = 30;
constexpr std::size_t kDetailIndent = kTimeWidth + kEventWidth;
constexpr std::size_t kRuleWidth = 80;
constexpr std::size_t kManyRows = 32768; // some megabytes
constexpr std::string_view kColourOn = "\033[1;34m";
constexpr std::string_view kColourOff = "\033[0m";

// A text longer than its field is not cut, and no space follows it.
void appendField(std::string& table, std::string_view text, std::size_t width)
{
    table += text;
    if (text.size() < width) {
        table.append(width - text.size(), ' ');
    }
}

// Continuation lines start under the Detail column.
void appendDetail(std::string& table, std::string_view detail)
{
    for (std::size_t end = 0; (end = detail.find('\n')) != std::string_view::npos;) {
        table += detail.substr(0, end + 1);
        table.append(kDetailIndent, ' ');
        detail.remove_prefix(end + 1);
    }
    table += detail;
}

void appendHeading(std::string& table, const EventStore& events, std::size_t count)
{
    // "events" stays plural for one event.
    table += "Last " + std::to_string(count) + " events from " + events.front()->time + " to " +
             events.back()->time + ":\n\n";
    appendField(table, "Timestamp", kTimeWidth);
    appendField(table, "Event", kEventWidth);
    table += "Detail\n";
    table.append(kRuleWidth, '=');
    table += '\n';
}

void appendRow(std::string& table, const EventRecord& event)
{
    const SharedText description = describeEvent(event.code, event.details);
    appendField(table, event.time, kTimeWidth);
    table += kColourOn;
    appendField(table, eventNameFor(event.code), kEventWidth);
    table += kColourOff;
    appendDetail(table, {description.characters(), description.length()});
    table += "\n\n";
}

} // namespace

std::string renderEventTable(EventStore events, std::uint32_t count)
{
    if (events.empty()) {
        return "No events to display.";
    }
    std::string table;
    appendHeading(table, events, std::min<std::size_t>(count, events.size()));
    std::size_t sizeBefore = table.size(); // before the last kManyRows rows
    for (std::size_t rows = 1; !events.empty(); ++rows) {
        appendRow(table, *events.front());
        events.pop_front();
        if (rows % kManyRows == 0) {
            makeRoom(table, (table.size() - sizeBefore) / kManyRows * events.size());
            sizeBefore = table.size();
        }
    }
    return table;
}

} // namespace eventsviewer
