#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// A time as the terminal writes it, "Nov 20 08:15:02": of its own clock, without year and zone.
struct Stamp {
    int month = 1;  ///< 1 to 12
    int day = 1;    ///< 1 to 31
    int second = 0; ///< of the day
};

/// Seconds from 1970-01-01T00:00:00 on, of the terminal's clock.
using Moment = std::int64_t;

constexpr Moment kDay = 86400;

constexpr std::size_t kDateLength = 6; ///< of "Nov 20"

/// The time that `text` is; nothing if it has another form or there is no such day in any year.
std::optional<Stamp> stampOf(std::string_view text);

/// The second of the day that `clock` is, in the form "08:15:02"; -1 if it has another form.
int secondOf(std::string_view clock);

/// The day of a leap year, 1 to 366.
int dayOfYear(const Stamp& stamp);

/// Whether the year has a Feb 29.
bool isLeapYear(int year);

/// When `stamp` is in the year `year`.
Moment momentOf(int year, const Stamp& stamp);

/// The year in which `moment` is.
int yearOf(Moment moment);

/// `moment` in the form "2026-11-20T08:15:02".
std::string isoTime(Moment moment);

/// `seconds` in its two largest units, such as "6 min 54 s".
std::string lengthInWords(Moment seconds);

constexpr std::size_t kIsoDayLength = 10;  ///< of "2026-11-20"
constexpr std::size_t kIsoHourLength = 13; ///< of "2026-11-20T08"

/// The days or hours between the days or hours `before` and `after`, in the same form; "..." if
/// they are more than 31 days. None if one of the two has another form.
std::vector<std::string> periodsBetween(std::string_view before, std::string_view after);

} // namespace eventsviewer
