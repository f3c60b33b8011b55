#pragma once

#include "eventlog/event_record.h"
#include "eventlog/log.h"
#include "query/writers.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace eventsviewer::query {

/// Tells what is wrong with the lines of a log, then what is remarkable, then how much of all:
///
///     log:45: cut off: no event is shown: {"id":
///     log:7: note: code without a name: 1350 (2 times)
///     lines: 172
class Check {
public:
    /// All rows are added to `out`.
    Check(std::string& out, Format format) : out_(out), format_(format) {}

    /// Adds what comes before all rows.
    void begin();

    /// Adds a row if something is wrong with the line `text`, line `line` of `log`, which gives
    /// `event`, or null. Without data, the line was too long. `isClockSet` tells whether the time
    /// of the event is known.
    void addLine(const Log& log, std::uint64_t line, std::string_view text,
                 const EventRecord* event, std::string_view at);

    /// Adds the notes and the summary. Returns whether there was a finding.
    bool finish();

private:
    struct LinePlace {
        std::string log;
        std::string file;
        std::uint64_t line = 0; // of the file
    };
    struct Noted {
        LinePlace first;
        std::uint64_t count = 0;
    };
    using Counts = std::map<std::string, std::uint64_t>;

    void addNote(const LinePlace& place, const char* kind, const std::string& value);
    void addRow(const char* type, const std::string& kind, std::uint64_t count,
                const std::string& effect, const std::string& text, const LinePlace& place);
    void addSummary(const char* name, const Counts& kinds);

    std::string& out_;
    Format format_;
    std::uint64_t lines_ = 0;
    std::uint64_t events_ = 0;
    Counts findings_; // by kind
    std::map<std::pair<std::string, std::string>, Noted> notes_;
};

} // namespace eventsviewer::query
