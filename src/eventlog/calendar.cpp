#include "eventlog/calendar.h"

#include <algorithm>
#include <cstring>

namespace eventsviewer {

namespace {

constexpr int kHalfAYear = 183;
constexpr int kFirstWeek = 7;
constexpr int kLastYear = 9999; // that the form of a time has room for
constexpr int kDaysAfterReturn = 31;

} // namespace

void Calendar::add(std::uint64_t line, std::string_view time)
{
    if (hasLastDate(time)) {
        time.remove_prefix(kDateLength + 1);
        const int second = secondOf(time);
        last_->second = second >= 0 ? second : last_->second;
        return;
    }
    const std::optional<Stamp> stamp = stampOf(time);
    if (!stamp) {
        return;
    }
    lastDate_ = time.substr(0, kDateLength + 1);
    addDate(line, *stamp);
    first_ = first_ ? first_ : stamp;
    last_ = stamp;
}

bool Calendar::hasLastDate(std::string_view time) const
{
    constexpr std::size_t kLength = kDateLength + 1;
    return lastDate_.size() == kLength && time.size() >= kLength &&
           std::memcmp(lastDate_.data(), time.data(), kLength) == 0;
}

void Calendar::addDate(std::uint64_t line, const Stamp& stamp)
{
    constexpr int kLastDay = 366;
    const int day = dayOfYear(stamp);
    const int before = last_ ? dayOfYear(*last_) : 0;
    if (fall_) {
        if (isReturn(stamp)) {
            endFallAsUnset(line);
        } else if (day > kFirstWeek) {
            if (fall_->before) {
                turn(fall_->line, ++year_);
            }
            fall_.reset();
        }
    } else if (day == 1 && before != 1 && before != 2 && before != kLastDay) {
        fall_ = {line, last_};
    } else if (before - day > kHalfAYear) {
        turn(line, ++year_);
    } else if (day == kLastDay && before == 1) {
        turn(line, --year_); // the clock was set back over New Year
    }
    if (!fall_ && stamp.month == 2 && stamp.day == 29) {
        leapDayYear_ = year_;
    }
}

void Calendar::turn(std::uint64_t line, std::optional<int> year)
{
    // A line comes twice if it was incomplete at first.
    while (!turns_.empty() && turns_.back().line >= line) {
        turns_.pop_back();
    }
    turns_.push_back({line, year});
}

bool Calendar::isReturn(const Stamp& stamp) const
{
    if (!fall_->before) {
        return false;
    }
    const int days = dayOfYear(stamp) - dayOfYear(*fall_->before);
    return days >= -1 && days <= kDaysAfterReturn;
}

void Calendar::endFallAsUnset(std::uint64_t end)
{
    turn(fall_->line, std::nullopt);
    turn(end, year_);
    last_ = fall_->before;
    if (!last_) {
        first_.reset();
    }
    lastDate_.clear();
    fall_.reset();
}

void Calendar::addClockSet(std::uint64_t line, std::string_view time, std::string_view newTime)
{
    const std::optional<Stamp> set = stampOf(newTime);
    const std::optional<Stamp> own = stampOf(time);
    const auto isSet = [this](const Stamp& stamp) {
        return dayOfYear(stamp) > kFirstWeek || isReturn(stamp);
    };
    if (!fall_ || (set && !isSet(*set))) {
        add(line, time); // which may be a fall that ends at once
    }
    if (!fall_ || (set && !isSet(*set))) {
        return;
    }
    if (own && isSet(*own)) {
        endFallAsUnset(line);
        add(line, time);
    } else {
        endFallAsUnset(line + 1);
    }
}

void Calendar::endOpenFall()
{
    if (fall_ && fall_->before && fall_->before->month == 12) {
        turn(fall_->line, ++year_);
    } else if (fall_ && fall_->before) {
        endFallAsUnset(UINT64_MAX);
    }
    fall_.reset();
    lastDate_.clear();
}

void Calendar::finish(std::optional<int> year, Moment latest)
{
    endOpenFall();
    lastYear_ = year.value_or(yearOf(latest));
    if (last_ && !year) {
        if (momentOf(lastYear_, *last_) / kDay > latest / kDay) {
            --lastYear_;
        }
        while (leapDayYear_ && !isLeapYear(calendarYear(*leapDayYear_))) {
            --lastYear_;
        }
    }
}

void Calendar::finishAs(const Calendar& earlier)
{
    endOpenFall();
    lastYear_ = earlier.calendarYear(year_);
}

std::string_view Calendar::at(std::uint64_t line, std::string_view time)
{
    if (line < turnBegin_ || line >= turnEnd_ || !hasLastDate(time)) {
        const auto after = std::upper_bound(
            turns_.begin(), turns_.end(), line,
            [](std::uint64_t wanted, const Turn& turn) { return wanted < turn.line; });
        turnBegin_ = after == turns_.begin() ? 0 : std::prev(after)->line;
        turnEnd_ = after == turns_.end() ? UINT64_MAX : after->line;
        lastDate_.clear();
        const std::optional<int> year = after == turns_.begin() ? 0 : std::prev(after)->year;
        const std::optional<Stamp> stamp = stampOf(time);
        const bool leapDay = stamp && stamp->month == 2 && stamp->day == 29;
        const int fullYear = year ? calendarYear(*year) : 0;
        if (!stamp || fullYear < 1 || fullYear > kLastYear || (leapDay && !isLeapYear(fullYear))) {
            return {};
        }
        isoTime_ = isoTime(momentOf(fullYear, *stamp));
        lastDate_ = time.substr(0, kDateLength + 1);
        return isoTime_;
    }
    // Only the clock differs: "2026-11-20T" stays.
    time.remove_prefix(kDateLength + 1);
    if (secondOf(time) < 0) {
        return {};
    }
    std::copy(time.begin(), time.end(), isoTime_.end() - static_cast<std::ptrdiff_t>(time.size()));
    return isoTime_;
}

std::optional<Moment> Calendar::first() const
{
    return first_ ? std::optional(momentOf(calendarYear(0), *first_)) : std::nullopt;
}

std::optional<Moment> Calendar::last() const
{
    return last_ ? std::optional(momentOf(lastYear_, *last_)) : std::nullopt;
}

} // namespace eventsviewer
