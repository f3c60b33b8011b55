#include "eventlog/time_bound.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace eventsviewer {

namespace {

constexpr Moment kMinute = 60;
constexpr Moment kHour = 60 * kMinute;
constexpr Moment kHalfAYear = 183 * kDay;
constexpr Moment kSoonAfter = 31 * kDay;
constexpr int kLeapYearsApart = 8; // at the most

struct Unit {
    std::string_view name;
    Moment seconds;
};
constexpr Unit kUnits[] = {{"s", 1},     {"sec", 1},  {"m", kMinute}, {"min", kMinute},
                           {"h", kHour}, {"d", kDay}, {"w", 7 * kDay}};

// The seconds of a text such as "2h".
std::optional<Moment> durationOf(const char* text)
{
    char* end = nullptr;
    const long long count = std::strtoll(text, &end, 10);
    for (const Unit& unit : kUnits) {
        if (text[0] >= '0' && text[0] <= '9' && unit.name == end && count <= INT32_MAX) {
            return count * unit.seconds;
        }
    }
    return std::nullopt;
}

Moment startOfDay(Moment moment)
{
    return moment - (moment % kDay + kDay) % kDay;
}

} // namespace

std::optional<TimeBound> TimeBound::parse(const std::string& text)
{
    struct Pattern {
        const char* format; // of strptime
        Form form;
        Moment length;
    };
    constexpr Pattern kPatterns[] = {
        {"%Y-%m-%dT%H:%M:%S", Form::Full, 1},
        {"%Y-%m-%d %H:%M:%S", Form::Full, 1},
        {"%Y-%m-%dT%H:%M", Form::Full, kMinute},
        {"%Y-%m-%d %H:%M", Form::Full, kMinute},
        {"%Y-%m-%d", Form::Full, kDay},
        {"%b %d %H:%M:%S", Form::Date, 1},
        {"%b %d %H:%M", Form::Date, kMinute},
        {"%b %d", Form::Date, kDay},
        {"%H:%M:%S", Form::Clock, 1},
        {"%H:%M", Form::Clock, kMinute},
    };
    TimeBound bound;
    if (text[0] == '-') {
        const std::optional<Moment> duration = durationOf(text.c_str() + 1);
        bound.form_ = Form::BeforeLast;
        bound.length_ = duration.value_or(0);
        return duration ? std::optional(bound) : std::nullopt;
    }
    for (const Pattern& pattern : kPatterns) {
        std::tm time = {};
        time.tm_mday = 1;
        const char* const end = strptime(text.c_str(), pattern.format, &time);
        const bool isShortYear = pattern.form == Form::Full && text.find('-') != 4;
        if (end == nullptr || *end != '\0' || time.tm_sec > 59 || isShortYear) {
            continue;
        }
        bound.form_ = pattern.form;
        bound.length_ = pattern.length;
        bound.year_ = time.tm_year + 1900;
        bound.stamp_ = {time.tm_mon + 1, time.tm_mday,
                        (time.tm_hour * 60 + time.tm_min) * 60 + time.tm_sec};
        const Stamp& day = bound.stamp_;
        const bool exists = dayOfYear(day) <= dayOfYear({day.month + 1, 0, 0}) &&
                            (pattern.form != Form::Full || bound.isIn(bound.year_));
        return exists ? std::optional(bound) : std::nullopt;
    }
    return std::nullopt;
}

bool TimeBound::isIn(int year) const
{
    return stamp_.month != 2 || stamp_.day != 29 || isLeapYear(year);
}

// Not before the first year: what is shown has years of four digits.
Moment TimeBound::beforeLast(Moment last) const
{
    return std::max(last - length_, momentOf(1, {1, 1, 0}));
}

// The latest such time within the log, or else the one nearest to it.
Moment TimeBound::nearestDate(Moment first, Moment last) const
{
    Moment best = 0;
    Moment bestDistance = INT64_MAX;
    for (int year = yearOf(last) + kLeapYearsApart; year >= yearOf(first) - kLeapYearsApart;
         --year) {
        const Moment begin = momentOf(year, stamp_);
        const Moment distance =
            begin > last ? begin - last : std::max<Moment>(first - (begin + length_ - 1), 0);
        if (isIn(year) && distance < bestDistance) {
            best = begin;
            bestDistance = distance;
        }
    }
    return best;
}

// The latest such time within the log, or soon after it, or else before it.
Moment TimeBound::latestDate(Moment first, Moment last) const
{
    const Moment next = firstDate(last + 1);
    int year = yearOf(last);
    while (!isIn(year) || momentOf(year, stamp_) > last) {
        --year;
    }
    const Moment latest = momentOf(year, stamp_);
    return latest + length_ <= first && next <= last + kSoonAfter ? next : latest;
}

// The first such time that does not end before `since`.
Moment TimeBound::firstDate(Moment since) const
{
    int year = yearOf(since);
    while (!isIn(year) || momentOf(year, stamp_) + length_ <= since) {
        ++year;
    }
    return momentOf(year, stamp_);
}

Moment TimeBound::since(Moment first, Moment last) const
{
    const Moment onLastDay = startOfDay(last) + stamp_.second;
    switch (form_) {
    case Form::BeforeLast:
        return beforeLast(last);
    case Form::Full:
        return momentOf(year_, stamp_);
    case Form::Date:
        return latestDate(first, last);
    case Form::Clock:
        break;
    }
    return onLastDay <= last ? onLastDay : onLastDay - kDay;
}

Moment TimeBound::until(std::optional<Moment> since, Moment first, Moment last) const
{
    Moment begin = 0;
    switch (form_) {
    case Form::BeforeLast:
        return beforeLast(last);
    case Form::Full:
        begin = momentOf(year_, stamp_);
        break;
    case Form::Date:
        begin = since ? firstDate(*since) : nearestDate(first, last);
        if (begin > last + kHalfAYear) { // rather the two dates are the wrong way round
            begin = nearestDate(first, last);
        }
        break;
    case Form::Clock:
        begin = startOfDay(since.value_or(last)) + stamp_.second;
        if (since && begin + length_ <= *since) {
            begin += kDay;
        }
        break;
    }
    return begin + length_ - 1;
}

TimeRange rangeOf(const std::optional<TimeBound>& since, const std::optional<TimeBound>& until,
                  std::optional<Moment> first, std::optional<Moment> last)
{
    TimeRange range;
    std::optional<Moment> begin;
    if (since && last) {
        begin = since->since(*first, *last);
    }
    if (since) { // without any time, no event can be said to be late enough
        range.since = begin ? isoTime(*begin) : range.until;
    }
    if (until && last) {
        range.until = isoTime(until->until(begin, *first, *last));
    }
    return range;
}

} // namespace eventsviewer
