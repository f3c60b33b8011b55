#include "eventlog/event_log.h"

#include "eventlog/event_line.h"
#include "eventlog/line_reader.h"
#include "eventlog/lines.h"
#include "eventlog/silent_lines.h"

#include <iostream>
#include <list>
#include <memory>
#include <string_view>
#include <utility>

namespace eventsviewer {

namespace {

// Calls `use` with the lines of the log, some at a time, oldest first.
template <typename Use> void forLinesOf(const std::string& inputPath, Use use)
{
    for (const std::string& path : {inputPath + ".0", inputPath}) {
        FileBytes file(path);
        LineReader reader(file);
        std::string_view lines;
        while (reader.next(lines)) {
            use(lines);
        }
    }
}

// An event that may turn out to be among the newest: parsed already, or still as its line.
struct Candidate {
    std::unique_ptr<EventRecord> record;
    std::string line;
};

void dropOldestOf(std::list<Candidate>& newest, std::size_t count)
{
    if (newest.size() == count) {
        newest.pop_front();
    }
}

// Adds the newest events of silent lines. These can be judged from the last one backwards, and none
// needs to be parsed before it is known to be among the newest of all.
void addSilentLines(std::list<Candidate>& newest, std::size_t count, std::string_view lines)
{
    // As parsing each would do, even if an earlier diagnostic could not be written.
    if (lines.find('{') != std::string_view::npos) {
        std::cout.clear();
    }
    std::list<Candidate> added;
    while (!lines.empty() && added.size() < count) {
        const std::string_view line = takeLastLine(lines);
        Candidate candidate;
        switch (kindOfSilentLine(line)) {
        case LineKind::NoEvent:
            continue;
        case LineKind::Event:
            candidate.line = line;
            break;
        case LineKind::Unclear:
            candidate.record = parseEventLine(line);
            if (candidate.record == nullptr) {
                continue;
            }
            break;
        }
        dropOldestOf(newest, count - added.size());
        added.push_front(std::move(candidate));
    }
    newest.splice(newest.end(), added);
}

void addParsed(EventStore& store, std::unique_ptr<EventRecord> record)
{
    if (record != nullptr) {
        store.push_back(std::move(record));
    }
}

} // namespace

EventStore loadAllEvents(const std::string& inputPath)
{
    EventStore store;
    forLinesOf(inputPath, [&store](std::string_view lines) {
        while (!lines.empty()) {
            addParsed(store, parseEventLine(takeFirstLine(lines)));
        }
    });
    return store;
}

EventStore loadRecentEvents(const std::string& inputPath, std::size_t count)
{
    // Most lines are too old to be shown: only those are parsed that might print something.
    std::list<Candidate> newest;
    forLinesOf(inputPath, [&newest, count](std::string_view lines) {
        for (;;) {
            const std::size_t silent = silentLength(lines);
            addSilentLines(newest, count, lines.substr(0, silent));
            lines.remove_prefix(silent);
            if (lines.empty()) {
                return;
            }
            if (auto record = parseEventLine(takeFirstLine(lines))) {
                dropOldestOf(newest, count);
                newest.push_back({std::move(record), {}});
            }
        }
    });

    // Parsing silent lines so late must not make std::cout good: the last diagnostic of the log may
    // be one that could not be written.
    const std::ios_base::iostate state = std::cout.rdstate();
    EventStore store;
    while (!newest.empty()) {
        Candidate& oldest = newest.front();
        addParsed(store, oldest.record != nullptr ? std::move(oldest.record)
                                                  : parseEventLine(oldest.line));
        newest.pop_front();
    }
    std::cout.clear(state);
    return store;
}

} // namespace eventsviewer
