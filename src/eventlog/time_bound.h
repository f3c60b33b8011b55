#pragma once

#include "eventlog/stamp.h"

#include <optional>
#include <string>

namespace eventsviewer {

/// One end of a range of times as the command line gives it, such as "Nov 20" or "-2h".
class TimeBound {
public:
    /// What `text` means; nothing if it has no known form or there is no such day.
    static std::optional<TimeBound> parse(const std::string& text);

    /// The first second from which on events are shown, in a log from `first` to `last`.
    Moment since(Moment first, Moment last) const;

    /// The last second up to which events are shown. A time that the text leaves open is the first
    /// one that does not end before `since`, if that is given.
    Moment until(std::optional<Moment> since, Moment first, Moment last) const;

private:
    enum class Form { BeforeLast, Full, Date, Clock };

    bool isIn(int year) const;
    Moment beforeLast(Moment last) const;
    Moment nearestDate(Moment first, Moment last) const;
    Moment firstDate(Moment since) const;

    Form form_ = Form::Full;
    Moment length_ = 1; // the seconds that the text means
    int year_ = 0;
    Stamp stamp_;
};

/// The times that are shown, in the form of Calendar::at.
struct TimeRange {
    std::string since;
    std::string until = "~"; ///< which follows every time

    bool holds(const std::string& at) const { return at >= since && at <= until; }
};

/// The range from `since` to `until`, of which either may be missing, in a log from `first` to
/// `last`. It may be the wrong way round.
TimeRange rangeOf(const std::optional<TimeBound>& since, const std::optional<TimeBound>& until,
                  std::optional<Moment> first, std::optional<Moment> last);

} // namespace eventsviewer
