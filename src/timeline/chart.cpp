#include "timeline/chart.h"

#include "catalog/event_names.h"

#include <algorithm>
#include <cstdio>

namespace eventsviewer {

namespace {

constexpr Moment kHour = kDay / 24;
constexpr std::size_t kDateBegin = 5; // of "2026-11-20T08:00:00", without the year
constexpr std::size_t kDateEnd = 10;
constexpr std::size_t kMinuteEnd = 16;

std::string percent(double part, double whole)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", 100.0 * part / whole);
    return text;
}

std::string nameOf(const NetworkChange* change, const char* otherwise)
{
    return change != nullptr ? std::string(knownEventName(change->code)) : otherwise;
}

std::uint64_t mostOf(const EventsAnHour& hours)
{
    std::uint64_t most = 0;
    for (const auto& [hour, events] : hours) {
        most = std::max(most, events);
    }
    return most;
}

} // namespace

Axis::Axis(Moment first, Moment last) : first_(hourOf(first)), last_(hourOf(last) + kHour) {}

std::string Axis::percentOf(Moment seconds) const
{
    return percent(static_cast<double>(seconds), static_cast<double>(last_ - first_));
}

std::vector<FormValues> Axis::ticks() const
{
    constexpr Moment kMostTicks = 7;
    Moment step = kHour;
    for (const Moment hours : {3, 6, 12, 24, 48, 168, 336, 720, 2184, 8760}) {
        step = (last_ - first_) / step > kMostTicks ? hours * kHour : step;
    }
    while ((last_ - first_) / step > kMostTicks) {
        step *= 2;
    }
    std::vector<FormValues> ticks;
    for (Moment at = first_ + (step - first_ % step) % step; at < last_; at += step) {
        const std::string time = isoTime(at);
        ticks.push_back({{"x", placeOf(at)},
                         {"time", step < kDay ? time.substr(kDateBegin, kMinuteEnd - kDateBegin)
                                              : time.substr(0, kDateEnd)}});
        std::string& text = ticks.back().back().second;
        std::replace(text.begin(), text.end(), 'T', ' ');
    }
    return ticks;
}

Moment Axis::hoursABar() const
{
    constexpr Moment kMostBars = 400;
    return (last_ - first_) / kHour / kMostBars + 1;
}

std::vector<FormValues> Axis::bars(const EventsAnHour& hours) const
{
    const Moment width = hoursABar() * kHour;
    const auto most = static_cast<double>(mostOf(hours));
    std::vector<FormValues> bars;
    for (auto hour = hours.begin(); hour != hours.end();) {
        const Moment bar = first_ + (hour->first - first_) / width * width;
        auto highest = hour;
        for (; hour != hours.end() && hour->first < bar + width; ++hour) {
            highest = hour->second > highest->second ? hour : highest;
        }
        const auto events = static_cast<double>(highest->second);
        bars.push_back({{"x", placeOf(bar)},
                        {"width", percentOf(width)},
                        {"y", percent(most - events, most)},
                        {"height", percent(events, most)},
                        {"title", timeInWords(highest->first) + ", one hour: " +
                                      countInWords(highest->second, "event")}});
    }
    return bars;
}

std::string Axis::scale(const EventsAnHour& hours) const
{
    std::string text = "At most " + countInWords(mostOf(hours), "event") + " in one hour.";
    if (hoursABar() > 1) {
        text += " Each bar is the hour with the most events of " + std::to_string(hoursABar()) + '.';
    }
    return text;
}

std::string timeInWords(std::optional<Moment> moment)
{
    return moment ? isoTime(*moment).replace(kDateEnd, 1, " ") : "not known";
}

std::string countInWords(std::uint64_t number, const char* what)
{
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

FormValues bandInWords(const NetworkBand& band)
{
    constexpr std::pair<const char*, const char*> kStates[] = {
        {"unknown", "Not known"}, {"in", "In network"}, {"out", "Out of network"}};
    const auto& [state, name] = kStates[static_cast<std::size_t>(band.state)];
    const auto length = band.length();
    std::string duration =
        length ? (band.isAtLeast ? "at least " : "") + lengthInWords(*length) : "not known";
    duration += band.clockSteps != 0 ? " (the clock was set)" : "";
    const std::string why = !band.reason.empty()    ? band.reason
                            : band.first != nullptr ? band.first->why
                                                    : "no event before it tells";
    const std::string first = nameOf(band.first, "the beginning of the log");
    const std::string last = nameOf(band.last, "the end of the log");
    const std::string since = timeInWords(band.since);
    const std::string until = timeInWords(band.until);
    const std::string title = name + (" from " + since) + " to " + until + ", " + duration +
                              ". Begins with " + first + ", ends with " + last + ". Why: " + why;
    return {{"state", state},   {"name", name}, {"since", since}, {"until", until},
            {"length", duration}, {"why", why},   {"first", first}, {"last", last},
            {"title", title}};
}

} // namespace eventsviewer
