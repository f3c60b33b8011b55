// The years of a log, which has none. The order of its lines tells them:
//
// - A step back by more than half a year is New Year. Any other leaves the year as it is.
// - A fall to Jan 01 may be New Year or a clock that has started anew and is not set yet. It was
//   not set if the fall ends within a week by an event that reports a set clock, or by a return to
//   about the earlier date (from one day before it to 31 days after it), or not at all. A fall from
//   Dec 31, and a fall from December that does not end, is New Year.
// - The last event's year is given, or the latest one in which it is not after the file's date. A
//   day Feb 29 moves it to a year in which that day existed.

#pragma once

#include "eventlog/stamp.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// Gives the events of a log their year. Takes the times of all events in their order first.
class Calendar {
public:
    /// The time of the event on the line `line`, which counts the lines of the log.
    void add(std::uint64_t line, std::string_view time);

    /// Whether the clock may not be set. Then the calendar has to know of each event that sets it.
    bool mayBeUnset() const { return fall_.has_value(); }

    /// An event like add, which reports that the clock was set to `newTime`.
    void addClockSet(std::uint64_t line, std::string_view time, std::string_view newTime);

    /// Ends the log. The last event is in the year `year`, or, without one, not after the day of
    /// `latest`.
    void finish(std::optional<int> year, Moment latest);

    /// Ends the log in the years that `earlier` has, the calendar of the same log up to an earlier
    /// line.
    void finishAs(const Calendar& earlier);

    /// The time of the event on `line` in the form "2026-11-20T08:15:02"; empty if it has none, or
    /// was written by a clock that was not set. Valid until the next call.
    std::string_view at(std::uint64_t line, std::string_view time);

    /// The times of the first and the last event; nothing if no event has one.
    std::optional<Moment> first() const;
    std::optional<Moment> last() const;

private:
    // From a line on the events are in this year (counted from the first event's), or not in any.
    struct Turn {
        std::uint64_t line;
        std::optional<int> year;
    };
    struct Fall {
        std::uint64_t line;
        std::optional<Stamp> before;
    };

    bool hasLastDate(std::string_view time) const;
    void addDate(std::uint64_t line, const Stamp& stamp);
    void turn(std::uint64_t line, std::optional<int> year);
    bool isReturn(const Stamp& stamp) const;
    void endFallAsUnset(std::uint64_t end);
    void endOpenFall();
    int calendarYear(int year) const { return lastYear_ - year_ + year; }

    std::vector<Turn> turns_;
    std::optional<Fall> fall_;
    int year_ = 0; // of the last event, counted from the first event's
    int lastYear_ = 0;
    std::optional<Stamp> first_;
    std::optional<Stamp> last_;
    std::optional<int> leapDayYear_;

    std::string lastDate_; // "Nov 20 ": most events have the date of the event before them
    std::string isoTime_;
    std::uint64_t turnBegin_ = 1; // the lines for which isoTime_ holds: none yet
    std::uint64_t turnEnd_ = 0;
};

} // namespace eventsviewer
