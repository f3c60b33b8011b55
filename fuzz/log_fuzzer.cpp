// The input is two bytes and a log.
//
// - The low half of the first byte is the count of --show, so that the digit "3" means 3.
// - Its next bit chooses the action that reads the two files joined into one.
// - If both its highest bits are set, the first line is repeated until it fills 1000 bytes.
// - The second byte tells where the log is cut into its two files.
//
// The rules:
//
// - A table and its diagnostics are what the reference makes of each line alone: no line affects
//   another.
// - A table has as many rows as its heading says. Each has one pair of colour escapes, and those
//   that are in the log.
// - The table of the newest N events has the last N rows of the table of all events.
// - The export is the table of all events, without a newline at its end.
// - Two files give the same table as both joined.

#include "app/actions.h"
#include "checks.h"
#include "reference/naive.h"
#include "render/log_export.h"
#include "support/captured_cout.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer::fuzz {

namespace {

// The first byte of an input that only --show reads.
constexpr std::uint8_t kOnlyShow = 0xc0;

// A file that stays open and is overwritten in place: opening a small file and giving it new pages
// takes longer than writing it.
class OpenFile {
public:
    explicit OpenFile(const std::string& path)
        : path_(path), descriptor_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
    }

    const std::string& path() const { return path_; }

    void write(std::string_view content) const
    {
        check(pwrite(descriptor_, content.data(), content.size(), 0) ==
                      static_cast<ssize_t>(content.size()) &&
                  ftruncate(descriptor_, static_cast<off_t>(content.size())) == 0,
              "a log can be written");
    }

    std::string read() const
    {
        std::string content(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
        check(pread(descriptor_, content.data(), content.size(), 0) ==
                  static_cast<ssize_t>(content.size()),
              "an export can be read");
        return content;
    }

private:
    std::string path_;
    int descriptor_;
};

// What the reference makes of a line.
struct ReferenceLine {
    std::string printed; // while it is read
    bool isEvent = false;
    std::string time;
    std::string detail;
    std::string row;
    std::string printedByRow; // while it is described
};

struct ReferenceLog {
    std::vector<const ReferenceLine*> events;
    std::string printed; // while it is read
};

struct Output {
    std::string printed;
    std::string table;
};

std::size_t occurrences(std::string_view text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; ++at) {
        ++count;
    }
    return count;
}

ReferenceLine readByReference(const std::string& text)
{
    ReferenceLine line;
    const CapturedCout printed;
    if (const auto event = reference::eventOf(text)) {
        const CapturedCout printedByRow;
        line.isEvent = true;
        line.time = event->time;
        line.detail = reference::describeEvent(event->code, event->details);
        line.row = reference::rowOf(*event, line.detail);
        line.printedByRow = printedByRow.text();
    }
    line.printed = printed.text();
    return line;
}

// The reference makes new parsers for each line, so `lines` keeps the result for the other tables
// of the log and for equal lines.
ReferenceLog readByReference(std::string_view log, std::map<std::string, ReferenceLine>& lines)
{
    ReferenceLog plain;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find('\n'), log.size());
        const std::string text(log.substr(0, end));
        auto line = lines.find(text);
        if (line == lines.end()) {
            line = lines.emplace(text, readByReference(text)).first;
        }
        plain.printed += line->second.printed;
        if (line->second.isEvent) {
            plain.events.push_back(&line->second);
        }
        log.remove_prefix(std::min(end + 1, log.size()));
    }
    return plain;
}

// What `makeTable` prints, and then its table.
template <typename MakeTable> Output outputOf(MakeTable makeTable)
{
    const CapturedCout printed;
    std::string table = makeTable();
    check(std::cout.good(), "standard output stays good");
    return {printed.text(), std::move(table)};
}

std::string heading(std::size_t count, const std::string& from, const std::string& to)
{
    return "Last " + std::to_string(count) + " events from " + from + " to " + to +
           ":\n\nTimestamp           Event                         Detail\n" +
           std::string(80, '=') + "\n";
}

// Takes the first row off `rows`. It has one pair of colour escapes besides those in the log. The
// bytes of the log never form another one together with the row's.
std::string_view takeRow(std::string_view& rows, const ReferenceLine& event)
{
    const std::string_view row = rows.substr(0, event.row.size());
    for (const std::string_view colour : {"\033[1;34m", "\033[0m"}) {
        check(occurrences(row, colour) ==
                  1 + occurrences(event.time, colour) + occurrences(event.detail, colour),
              "one pair of colours a row");
    }
    rows.remove_prefix(row.size());
    return row;
}

// The table in `output` has the newest `count` events of `plain`.
void checkTable(const Output& output, const ReferenceLog& plain, std::size_t count)
{
    const std::size_t shown = std::min(count, plain.events.size());
    if (shown == 0) {
        checkSame(output.table, "No events to display.", "a log without events");
        checkSame(output.printed, plain.printed, "diagnostics of a log without events");
        return;
    }
    const std::size_t first = plain.events.size() - shown;
    const std::string above = heading(shown, plain.events[first]->time, plain.events.back()->time);
    checkSame(output.table.substr(0, above.size()), above, "the heading counts the rows");

    std::string_view rest = std::string_view(output.table).substr(above.size());
    std::string printed = plain.printed;
    for (std::size_t i = first; i < plain.events.size(); ++i) {
        const ReferenceLine& event = *plain.events[i];
        checkSame(takeRow(rest, event), event.row, "each line is read as if alone");
        printed += event.printedByRow;
    }
    checkSame(rest, "", "no row but the events'");
    checkSame(output.printed, printed, "the diagnostics are those of the reference");
}

// The part of `table` that has the newest `count` rows of `plain`.
std::string_view newestRows(std::string_view table, const ReferenceLog& plain, std::size_t count)
{
    std::size_t size = 0;
    for (std::size_t i = plain.events.size(); i > 0 && count > 0; --i, --count) {
        size += plain.events[i - 1]->row.size();
    }
    return table.substr(table.size() - std::min(table.size(), size));
}

// The log is in two files at `path`, and in one at `joinedPath`. Each action reads one of them:
// running both actions on both would take twice as long and find nothing more.
Output checkedAll(const std::string& path, const std::string& joinedPath, bool exportJoined,
                  const OpenFile& exportFile)
{
    Output all = outputOf([&] { return allEventsTable(exportJoined ? path : joinedPath); });
    const Output saved = outputOf([&] {
        saveEventTable(exportJoined ? joinedPath : path, exportFile.path());
        return exportFile.read();
    });
    checkSame(saved.table, all.table, "the export is the table of all events, joined or not");
    checkSame(saved.printed, all.printed, "an export prints the diagnostics of all events");
    return all;
}

void checkLog(std::string_view log, std::uint8_t choice, std::size_t cut)
{
    static const TemporaryFolder folder;
    static const OpenFile olderFile(folder.path("log.0"));
    static const OpenFile newerFile(folder.path("log"));
    static const OpenFile joinedFile(folder.path("joined"));
    static const OpenFile exportFile(folder.path("export"));
    const std::size_t count = std::max(choice % 16U, 1U);
    const bool exportJoined = choice / 16 % 2 != 0;

    std::string joined(log);
    if (cut > 0 && log[cut - 1] != '\n') { // inside a line
        joined.insert(cut, "\n");
    }
    olderFile.write(log.substr(0, cut));
    newerFile.write(log.substr(cut));
    joinedFile.write(joined);
    std::map<std::string, ReferenceLine> lines;
    const ReferenceLog plain = readByReference(joined, lines);

    const std::string& path = newerFile.path();
    const Output recent = outputOf([&] { return recentEventsTable(path, count); });
    if (choice < kOnlyShow) {
        const Output all = checkedAll(path, joinedFile.path(), exportJoined, exportFile);
        checkSame(newestRows(recent.table, plain, count), newestRows(all.table, plain, count),
                  "the newest events are the last rows");
        checkTable(all, plain, SIZE_MAX);
    }
    checkTable(recent, plain, count);
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (size < 2 || eventsviewer::fuzz::nestsDeeper(input, 1000)) {
        return 0;
    }
    // The fast path of --show checks up to 1000 bytes at once, and short inputs do not reach that
    // end. The other actions would read the repeated line as they read it the first time.
    std::string_view lines = input.substr(2);
    std::string log;
    if (data[0] >= eventsviewer::fuzz::kOnlyShow) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        const std::string first = std::string(lines.substr(0, end)) + '\n';
        for (std::size_t i = 0; i < 1000 / first.size(); ++i) {
            log += first;
        }
        lines.remove_prefix(std::min(first.size(), lines.size()));
    }
    log += lines;
    eventsviewer::fuzz::checkLog(log, data[0], log.size() * data[1] / 256);
    return 0;
}
