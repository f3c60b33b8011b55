#include "report/timeline.h"

#include "describe/describe_event.h"
#include "describe/reason_variables.h"
#include "describe/variables.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace eventsviewer {

namespace {

constexpr std::int32_t kClockSet = 1227;   // the event that reports a set clock
constexpr std::size_t kMostReasons = 1000; // bytes; an outage may last long

std::string_view detailsOf(const EventRecord& event)
{
    return {event.details.characters(), event.details.length()};
}

void addReason(NetworkBand& band, const EventRecord& event)
{
    const Variables variables(detailsOf(event));
    const GivenReason given = reasonOf(findDescription(event.code), variables);
    std::string reason(given.name);
    reason += given.explanation.empty() ? "" : ": ";
    reason += given.explanation;
    const bool isNew = band.reason.find(reason) == std::string::npos; // which "" never is
    if (isNew && band.reason.size() + reason.size() < kMostReasons) {
        band.reason += (band.reason.empty() ? "" : "\n") + reason;
    }
}

} // namespace

Moment hourOf(Moment moment)
{
    constexpr Moment kHour = kDay / 24;
    return moment - (moment % kHour + kHour) % kHour;
}

void Timeline::add(const EventRecord& event, std::uint64_t line, std::string_view at,
                   EventsAnHour& hours)
{
    const std::optional<Stamp> stamp = at.empty() ? std::nullopt : stampOf(event.time);
    std::optional<Moment> moment;
    if (stamp) {
        moment = momentOf(std::atoi(std::string(at.substr(0, 4)).c_str()), *stamp);
        first_ = std::min(first_.value_or(*moment), *moment);
        last_ = std::max(last_.value_or(*moment), *moment);
        ++hours[hourOf(*moment)];
    }
    ++events_;
    if (NetworkBand* const band = bands_.add(event.code, line, moment)) {
        addReason(*band, event);
    }
    if (event.code == kClockSet && stamp && before_) {
        addClockSet(event);
    }
    before_ = stamp;
}

// A clock that was not set before does not count: what it showed has no part in a length.
void Timeline::addClockSet(const EventRecord& event)
{
    constexpr int kMostDaysSilent = 31;
    const Variables variables(detailsOf(event));
    const std::optional<Stamp> old = stampOf(variables.text("old_time"));
    const std::optional<Stamp> set = stampOf(variables.text("new_time"));
    if (!old || !set) {
        return;
    }
    const int silent = dayOfYear(*old) - dayOfYear(*before_);
    const int step = dayOfYear(*set) - dayOfYear(*old);
    if (silent >= -1 && silent <= kMostDaysSilent && std::abs(step) <= kMostDaysSilent) {
        bands_.addClockStep(step * kDay + set->second - old->second);
    }
}

} // namespace eventsviewer
