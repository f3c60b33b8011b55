#include "eventlog/stamp.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace eventsviewer {

namespace {

constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
constexpr int kDaysBefore[] = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

// The number of two digits at `text`; -1 if there is none.
int twoDigits(const char* text)
{
    const bool digits = text[0] >= '0' && text[0] <= '9' && text[1] >= '0' && text[1] <= '9';
    return digits ? (text[0] - '0') * 10 + (text[1] - '0') : -1;
}

// The days from 1970-01-01 to the first of January of `year`.
Moment daysBeforeYear(int year)
{
    const Moment before = year - 1;
    return before * 365 + before / 4 - before / 100 + before / 400 - 719162;
}

} // namespace

int secondOf(std::string_view clock)
{
    constexpr std::string_view kForm = "08:15:02";
    if (clock.size() != kForm.size() || clock[2] != ':' || clock[5] != ':') {
        return -1;
    }
    const int hour = twoDigits(&clock[0]);
    const int minute = twoDigits(&clock[3]);
    const int second = twoDigits(&clock[6]);
    const bool exists =
        hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    return exists ? (hour * 60 + minute) * 60 + second : -1;
}

std::optional<Stamp> stampOf(std::string_view text)
{
    if (text.size() <= kDateLength || text[3] != ' ' || text[kDateLength] != ' ') {
        return std::nullopt;
    }
    const std::size_t month = kMonths.find(text.substr(0, 3));
    const int day = text[4] == ' ' ? text[5] - '0' : twoDigits(&text[4]); // "Nov  2" is as usual
    const int second = secondOf(text.substr(kDateLength + 1));
    if (month == std::string_view::npos || month % 3 != 0 || second < 0 || day < 1 ||
        day > kDaysBefore[month / 3 + 1] - kDaysBefore[month / 3]) {
        return std::nullopt;
    }
    return Stamp{static_cast<int>(month / 3 + 1), day, second};
}

int dayOfYear(const Stamp& stamp)
{
    return kDaysBefore[stamp.month - 1] + stamp.day;
}

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

Moment momentOf(int year, const Stamp& stamp)
{
    const int lacking = !isLeapYear(year) && stamp.month > 2 ? 1 : 0;
    return (daysBeforeYear(year) + dayOfYear(stamp) - 1 - lacking) * kDay + stamp.second;
}

int yearOf(Moment moment)
{
    auto year = static_cast<int>(1970 + moment / (365 * kDay + kDay / 4));
    year += momentOf(year + 1, {}) <= moment ? 1 : 0;
    return momentOf(year, {}) > moment ? year - 1 : year;
}

std::string isoTime(Moment moment)
{
    const int year = yearOf(moment);
    auto day = static_cast<int>((moment - momentOf(year, {})) / kDay) + 1;
    day += !isLeapYear(year) && day > kDaysBefore[2] - 1 ? 1 : 0;
    const auto month = std::lower_bound(std::begin(kDaysBefore), std::end(kDaysBefore), day) - 1;
    const auto second = static_cast<int>((moment % kDay + kDay) % kDay);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", year,
                  static_cast<int>(month - std::begin(kDaysBefore)) + 1, day - *month,
                  second / 3600, second / 60 % 60, second % 60);
    return text;
}

std::string lengthInWords(Moment seconds)
{
    constexpr std::pair<Moment, const char*> kUnits[] = {
        {kDay, " d"}, {kDay / 24, " h"}, {60, " min"}, {1, " s"}};
    auto unit = std::begin(kUnits);
    while (unit->first > 1 && unit->first > seconds) {
        ++unit;
    }
    std::string text = std::to_string(seconds / unit->first) + unit->second;
    if (unit->first > 1) {
        const auto& [size, name] = unit[1];
        text += ' ' + std::to_string(seconds % unit->first / size) + name;
    }
    return text;
}

std::vector<std::string> periodsBetween(std::string_view before, std::string_view after)
{
    constexpr Moment kLongestGap = 31 * kDay;
    if (before.size() != after.size() || before.size() < kIsoDayLength) {
        return {};
    }
    const bool isHour = before.size() == kIsoHourLength;
    const auto momentAt = [isHour](std::string_view period) {
        const int year = twoDigits(&period[0]) * 100 + twoDigits(&period[2]);
        const int second = isHour ? twoDigits(&period[kIsoDayLength + 1]) * 3600 : 0;
        const int month =
            std::clamp(twoDigits(&period[5]), 1, 12); // which the analyser cannot know
        return momentOf(year, {month, twoDigits(&period[8]), second});
    };
    const Moment step = isHour ? kDay / 24 : kDay;
    const Moment end = momentAt(after);
    Moment moment = momentAt(before) + step;
    if (end - moment > kLongestGap) {
        return {"..."};
    }
    std::vector<std::string> periods;
    for (; moment < end; moment += step) {
        periods.push_back(isoTime(moment).substr(0, before.size()));
    }
    return periods;
}

} // namespace eventsviewer
