#pragma once

#include "eventlog/event_record.h"
#include "eventlog/stamp.h"
#include "report/network_bands.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

namespace eventsviewer {

/// How many events there are in each hour, by its first second.
using EventsAnHour = std::map<Moment, std::uint64_t>;

/// The first second of the hour of `moment`.
Moment hourOf(Moment moment);

/// What happened to the terminal over the time of its log.
class Timeline {
public:
    /// Adds the next event, which is on `line`. `at` is its time with the year, empty if that is
    /// not known. Counts it in `hours`. May print JSON diagnostics on std::cout.
    void add(const EventRecord& event, std::uint64_t line, std::string_view at,
             EventsAnHour& hours);

    /// To be called after the last event.
    void finish() { bands_.finish(); }

    std::uint64_t events() const { return events_; }
    std::optional<Moment> first() const { return first_; }
    std::optional<Moment> last() const { return last_; }
    const NetworkBands& bands() const { return bands_; }

private:
    void addClockSet(const EventRecord& event);

    NetworkBands bands_;
    std::uint64_t events_ = 0;
    std::optional<Moment> first_; // of the events whose time is known
    std::optional<Moment> last_;
    std::optional<Stamp> before_; // the time of the last event, if it is known
};

} // namespace eventsviewer
