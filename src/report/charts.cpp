#include "report/charts.h"

#include "catalog/event_names.h"
#include "report/html.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

namespace eventsviewer {

namespace {

constexpr Moment kHour = kDay / 24;
// Of "2026-11-20T08:00:00", without the year.
constexpr std::size_t kDateBegin = 5, kDateEnd = 10, kMinuteEnd = 16;

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

std::string timeInWords(std::optional<Moment> moment)
{
    return moment ? isoTime(*moment).replace(kDateEnd, 1, " ") : "not known";
}

void fill(std::string& out, std::string_view form, std::string_view part, const FormValues& values)
{
    fillForm(out, partOf(form, part), values, html);
}

std::string rangeInWords(std::optional<Moment> first, std::optional<Moment> last)
{
    return first ? timeInWords(first) + " to " + timeInWords(last) : "no time is known";
}

// The time that a chart shows. Places and lengths are percents of it.
class Axis {
public:
    // From the hour of `first` to the end of that of `last`.
    Axis(Moment first, Moment last) : first_(hourOf(first)), last_(hourOf(last) + kHour) {}

    std::string percentOf(Moment seconds) const
    {
        return percent(static_cast<double>(seconds), static_cast<double>(last_ - first_));
    }
    std::string placeOf(Moment moment) const { return percentOf(moment - first_); }

    std::string ticks(std::string_view form) const;
    std::string bars(std::string_view form, const EventsAnHour& hours) const;
    std::string scale(const EventsAnHour& hours) const; // of the bars, in words

private:
    // How many hours share a bar, which is as high as the highest of them.
    Moment hoursABar() const
    {
        constexpr Moment kMostBars = 400;
        return (last_ - first_) / kHour / kMostBars + 1;
    }

    Moment first_;
    Moment last_;
};

std::string Axis::ticks(std::string_view form) const
{
    constexpr Moment kMostTicks = 7;
    Moment step = kHour;
    for (const Moment hours : {3, 6, 12, 24, 48, 168, 336, 720, 2184, 8760}) {
        step = (last_ - first_) / step > kMostTicks ? hours * kHour : step;
    }
    while ((last_ - first_) / step > kMostTicks) {
        step *= 2;
    }
    std::string ticks;
    for (Moment at = first_ + (step - first_ % step) % step; at < last_; at += step) {
        const std::string time = timeInWords(at);
        fill(ticks, form, "tick",
             {{"x", placeOf(at)},
              {"time", step < kDay ? time.substr(kDateBegin, kMinuteEnd - kDateBegin)
                                   : time.substr(0, kDateEnd)}});
    }
    return ticks;
}

std::string Axis::bars(std::string_view form, const EventsAnHour& hours) const
{
    const Moment width = hoursABar() * kHour;
    const auto most = static_cast<double>(mostOf(hours));
    std::string bars;
    for (auto hour = hours.begin(); hour != hours.end();) {
        const Moment bar = first_ + (hour->first - first_) / width * width;
        auto highest = hour;
        for (; hour != hours.end() && hour->first < bar + width; ++hour) {
            highest = hour->second > highest->second ? hour : highest;
        }
        const auto events = static_cast<double>(highest->second);
        fill(bars, form, "hour",
             {{"x", placeOf(bar)},
              {"width", percentOf(width)},
              {"y", percent(most - events, most)},
              {"height", percent(events, most)},
              {"title", "one hour from " + timeInWords(highest->first) + ": " +
                            countInWords(highest->second, "event")}});
    }
    return bars;
}

std::string Axis::scale(const EventsAnHour& hours) const
{
    std::string text = "At most " + countInWords(mostOf(hours), "event") + " in one hour.";
    if (hoursABar() > 1) {
        text +=
            " Each bar is the hour with the most events of " + std::to_string(hoursABar()) + '.';
    }
    return text;
}

// A band in words, and as one string its "title".
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
    return {{"state", state}, {"name", name},       {"since", since},
            {"until", until}, {"length", duration}, {"why", why},
            {"first", first}, {"last", last},       {"title", title}};
}

// What is told of all bands together.
struct Sums {
    std::uint64_t outages = 0;
    Moment length = 0;
    std::uint64_t leftOut = 0;
};

// Adds the bands of `log` to `drawn`, and those out of network or not known to `listed`.
void addBands(const LogOnPage& log, std::string_view form, const Axis& axis,
              const std::set<std::string>& rows, std::string& drawn, std::string& listed,
              Sums& sums)
{
    const auto target = [&rows, &log](std::uint64_t line) {
        const auto row = rows.find(log.id + std::to_string(line));
        return row != rows.end() ? *row : "events";
    };
    for (const NetworkBand& band : log.timeline.bands().bands()) {
        if (band.state == NetworkState::NotKnown && band.length() == 0) {
            continue;
        }
        FormValues values = bandInWords(band);
        values.insert(values.end(), {{"row", target(band.firstLine)},
                                     {"end", target(band.lastLine)},
                                     {"id", log.id},
                                     {"from", std::to_string(band.firstLine)},
                                     {"to", std::to_string(band.lastLine)},
                                     {"label", log.label}});
        if (band.since) {
            const std::string width =
                axis.percentOf(std::max<Moment>(0, *band.until - *band.since));
            values.insert(values.end(), {{"x", axis.placeOf(*band.since)}, {"width", width}});
            fill(drawn, form, "band", values);
        }
        if (band.state != NetworkState::In) {
            fill(listed, form, "outage", values);
        }
        const bool isOut = band.state == NetworkState::Out;
        sums.outages += isOut ? 1 : 0;
        sums.length += isOut ? band.length().value_or(0) : 0;
    }
    sums.leftOut += log.timeline.bands().leftOut();
}

} // namespace

void addCharts(FormValues& page, std::string_view form, const std::deque<LogOnPage>& logs,
               const EventsAnHour& hours, const std::set<std::string>& rows)
{
    std::optional<Moment> first;
    std::optional<Moment> last;
    std::uint64_t events = 0;
    for (const LogOnPage& log : logs) {
        events += log.timeline.events();
        if (log.timeline.first()) {
            first = std::min(first.value_or(*log.timeline.first()), *log.timeline.first());
            last = std::max(last.value_or(*log.timeline.last()), *log.timeline.last());
        }
    }
    const Axis axis(first.value_or(0), last.value_or(0));
    Sums sums;
    std::string terminals;
    std::string listed;
    for (const LogOnPage& log : logs) {
        std::string drawn;
        addBands(log, form, axis, rows, drawn, listed, sums);
        fill(terminals, form, "terminal",
             {{"label", log.label},
              {"path", log.path == log.label ? "" : log.path + ": "},
              {"range", rangeInWords(log.timeline.first(), log.timeline.last())},
              {"events", countInWords(log.timeline.events(), "event")},
              {"band", drawn}});
    }
    const std::string sum = "Out of network " + countInWords(sums.outages, "time") + ", for " +
                            lengthInWords(sums.length) + " in all.";
    const std::string left = "Older ones are left out: " + std::to_string(sums.leftOut) + '.';
    page.insert(page.end(),
                {{"range", rangeInWords(first, last)},
                 {"events", std::to_string(events)},
                 {"sum", sums.outages > 0 ? sum : "No event tells of a terminal out of network."},
                 {"left", sums.leftOut > 0 ? left : ""},
                 {"scale", axis.scale(hours)},
                 {"hour", axis.bars(form, hours)},
                 {"tick", first ? axis.ticks(form) : ""},
                 {"terminal", terminals},
                 {"outage", listed}});
}

} // namespace eventsviewer
