// The input is a log behind two bytes: the first is the count of --show (the digit "3" stands for
// 3), the second tells where the log is cut into its two files.
//
// - The table of all events is its heading, and one row for each line that is an event when it is
//   read alone: no line's fate depends on its neighbours.
// - Each row has one pair of colour escapes besides those that the log brings along.
// - The table of the newest N events has the last N rows.
// - The export is the table of all events, without a line feed at its end.
// - Two files are the same log as both joined.
// - Tables and diagnostics are what the plainest way of making them gives.

#include "app/actions.h"
#include "catalog/event_names.h"
#include "checks.h"
#include "describe/describe_event.h"
#include "eventlog/event_line.h"
#include "reference/naive.h"
#include "render/event_table.h"
#include "render/log_export.h"
#include "support/captured_cout.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer::fuzz {

namespace {

constexpr std::string_view kNoEvents = "No events to display.";
constexpr std::string_view kColourOn = "\033[1;34m";
constexpr std::string_view kColourOff = "\033[0m";

struct Row {
    std::string time;
    std::string text;
};

std::size_t occurrences(std::string_view text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; ++at) {
        ++count;
    }
    return count;
}

// What stands between the parts of a heading.
std::string heading(std::size_t count, const std::string& from, const std::string& to)
{
    return "Last " + std::to_string(count) + " events from " + from + " to " + to +
           ":\n\nTimestamp           Event                         Detail\n" +
           std::string(80, '=') + "\n";
}

Row rowOf(std::unique_ptr<EventRecord> event)
{
    const std::string details = describeEvent(event->code, event->details).characters();
    const std::string time = event->time;
    const std::string name = eventNameFor(event->code).characters();
    EventStore store;
    store.push_back(std::move(event));
    const std::string table = renderEventTable(std::move(store), 1);

    const std::string above = heading(1, time, time);
    checkSame(table.substr(0, above.size()), above, "the heading of one event");
    Row row = {time, table.substr(above.size())};
    for (const std::string_view colour : {kColourOn, kColourOff}) {
        // The log may bring escapes along, but its bytes never make one together with ours.
        check(occurrences(row.text, colour) ==
                  1 + occurrences(time, colour) + occurrences(details, colour),
              "one pair of colours a row");
    }
    check(row.text.substr(std::max<std::size_t>(time.size(), 20), kColourOn.size() + name.size()) ==
              std::string(kColourOn) + name,
          "the name stands behind the time, in colour");
    return row;
}

std::vector<Row> rowsOf(std::string_view log)
{
    std::vector<Row> rows;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find('\n'), log.size());
        if (auto event = parseEventLine(log.substr(0, end))) {
            rows.push_back(rowOf(std::move(event)));
        }
        log.remove_prefix(std::min(end + 1, log.size()));
    }
    return rows;
}

std::string tableOf(const std::vector<Row>& rows, std::size_t count)
{
    if (rows.empty()) {
        return std::string(kNoEvents);
    }
    const std::size_t first = rows.size() - std::min(count, rows.size());
    std::string table = heading(rows.size() - first, rows[first].time, rows.back().time);
    for (std::size_t i = first; i < rows.size(); ++i) {
        table += rows[i].text;
    }
    return table;
}

// What `makeTable` prints, and then its table.
template <typename MakeTable> std::pair<std::string, std::string> outputOf(MakeTable makeTable)
{
    const CapturedCout printed;
    std::string table = makeTable();
    return {printed.text(), std::move(table)};
}

void checkLog(std::string_view older, std::string_view newer, std::size_t count)
{
    static const TemporaryFolder folder;
    folder.write("log.0", std::string(older));
    const std::string path = folder.write("log", std::string(newer));
    const bool cutInsideALine = !older.empty() && older.back() != '\n';
    const std::string joined =
        std::string(older) + (cutInsideALine ? "\n" : "") + std::string(newer);
    const std::vector<Row> rows = [&joined] {
        const CapturedCout silence;
        return rowsOf(joined);
    }();

    const auto all = outputOf([&path] { return allEventsTable(path); });
    checkSame(all.second, tableOf(rows, rows.size()), "each line is read as if alone");
    const auto naiveAll = outputOf([&path] { return reference::allEventsTable(path); });
    checkSame(all.second, naiveAll.second, "all events the plain way");
    checkSame(all.first, naiveAll.first, "diagnostics of all events the plain way");

    const auto recent = outputOf([&path, count] { return recentEventsTable(path, count); });
    checkSame(recent.second, tableOf(rows, count), "the newest events are the last rows");
    const auto naiveRecent =
        outputOf([&path, count] { return reference::recentEventsTable(path, count); });
    checkSame(recent.second, naiveRecent.second, "the newest events the plain way");
    checkSame(recent.first, naiveRecent.first, "diagnostics of the newest events the plain way");

    const auto saved = outputOf([&path] {
        saveEventTable(path, folder.path("export"));
        return folder.read("export");
    });
    checkSame(saved.second, all.second, "the export is the table of all events");
    checkSame(saved.first, all.first, "an export prints the diagnostics of all events");

    const std::string joinedPath = folder.write("joined", joined);
    const auto one = outputOf([&joinedPath] { return allEventsTable(joinedPath); });
    checkSame(one.second, all.second, "two files are one log");
    checkSame(one.first, all.first, "the diagnostics of two files are those of one log");
    check(std::cout.good(), "standard output stays good");
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view log(reinterpret_cast<const char*>(data), size);
    if (size < 2 || eventsviewer::fuzz::nestsDeeper(log, 1000)) {
        return 0;
    }
    const std::size_t count = std::max<std::size_t>(data[0] % 16, 1);
    log.remove_prefix(2);
    const std::size_t cut = log.size() * data[1] / 256;
    eventsviewer::fuzz::checkLog(log.substr(0, cut), log.substr(cut), count);
    return 0;
}
