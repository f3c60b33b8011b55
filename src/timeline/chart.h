#pragma once

#include "eventlog/stamp.h"
#include "text/form.h"
#include "timeline/network_bands.h"
#include "timeline/timeline.h"

#include <string>
#include <vector>

namespace eventsviewer {

// What a chart over time shows, as values for the parts of its form. Places and lengths are percents
// of the chart.

/// The time that a chart shows.
class Axis {
public:
    /// From the hour of `first` to the end of that of `last`.
    Axis(Moment first, Moment last);

    std::string percentOf(Moment seconds) const;
    std::string placeOf(Moment moment) const { return percentOf(moment - first_); }

    /// At most seven "x" with a "time".
    std::vector<FormValues> ticks() const;

    /// A bar for each hour, or, if that would be too many, for the hour with the most events of
    /// several: "x", "y", "width", "height" and a "title".
    std::vector<FormValues> bars(const EventsAnHour& hours) const;

    /// What bars shows, in words.
    std::string scale(const EventsAnHour& hours) const;

private:
    Moment hoursABar() const;

    Moment first_;
    Moment last_;
};

/// `moment` in the form "2026-11-20 08:15:02"; "not known" without one.
std::string timeInWords(std::optional<Moment> moment);

/// A number and what it counts, such as "1 event" or "2 events".
std::string countInWords(std::uint64_t number, const char* what);

/// A band as its "state", that in words as "name", "since", "until", "length", "why", the names of
/// the events "first" and "last", and all of this as its "title".
FormValues bandInWords(const NetworkBand& band);

} // namespace eventsviewer
