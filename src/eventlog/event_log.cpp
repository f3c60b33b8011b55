#include "eventlog/event_log.h"

#include "eventlog/event_line.h"
#include "eventlog/line_kind.h"
#include "eventlog/line_reader.h"

#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer {

namespace {

// Calls `use` with each line of the log, oldest first.
template <typename Use> void forEachLine(const std::string& inputPath, Use use)
{
    for (const std::string& path : {inputPath + ".0", inputPath}) {
        LineReader reader(path);
        std::string_view line;
        while (reader.next(line)) {
            use(line);
        }
    }
}

// An event that may turn out to be among the newest: parsed already, or still as its line.
struct Candidate {
    std::unique_ptr<EventRecord> record;
    std::string line;
};

} // namespace

EventStore loadAllEvents(const std::string& inputPath)
{
    EventStore store;
    forEachLine(inputPath, [&store](std::string_view line) {
        if (auto record = parseEventLine(line)) {
            store.push_back(std::move(record));
        }
    });
    return store;
}

EventStore loadRecentEvents(const std::string& inputPath, std::size_t count)
{
    // Most lines are too old to be shown. They are parsed only where parsing them might print
    // something; a plain event waits as a line until it is known to be among the newest.
    std::vector<Candidate> newest;
    std::size_t oldest = 0; // its place, once `count` are held
    forEachLine(inputPath, [&](std::string_view line) {
        const LineKind kind = kindOfLine(line);
        std::unique_ptr<EventRecord> record;
        if (kind == LineKind::Unclear) {
            record = parseEventLine(line);
            line = {};
        }
        if (kind == LineKind::NoEvent || (kind == LineKind::Unclear && record == nullptr)) {
            return;
        }
        if (newest.size() < count) {
            newest.push_back({std::move(record), std::string(line)});
            return;
        }
        newest[oldest].record = std::move(record);
        newest[oldest].line = line;
        oldest = oldest + 1 < count ? oldest + 1 : 0;
    });

    EventStore store;
    for (std::size_t i = 0; i < newest.size(); ++i) {
        Candidate candidate = std::move(newest[(oldest + i) % newest.size()]);
        store.push_back(candidate.record != nullptr ? std::move(candidate.record)
                                                    : parseEventLine(candidate.line));
    }
    return store;
}

} // namespace eventsviewer
