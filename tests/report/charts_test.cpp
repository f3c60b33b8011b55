#include "report/charts.h"

#include "eventlog/event_line.h"

#include <gtest/gtest.h>

#include <deque>
#include <initializer_list>
#include <string>

namespace eventsviewer {
namespace {

constexpr std::string_view kForm =
    "<!--hour-->{{x}}+{{width}} {{y}}+{{height}} {{title}}\n<!--/hour-->"
    "<!--tick--><!--/tick-->"
    "<!--terminal-->{{range}}:<!--band--> {{x}}+{{width}}<!--/band--><!--/terminal-->"
    "<!--outage--><!--/outage-->";

// What the charts of the events at `times`, in the year 2026, have as the value `name` of the form.
std::string valueOf(const std::string& name, std::initializer_list<std::string> times)
{
    std::deque<LogOnPage> logs;
    logs.push_back({"e1-", "log", "log", Timeline(), nullptr});
    EventsAnHour hours;
    std::uint64_t line = 0;
    for (const std::string& time : times) {
        const auto event = parseEventLine(R"({"id":1231,"time":")" + time + "\"}");
        logs[0].timeline.add(*event, line++, "2026", hours);
    }
    logs[0].timeline.finish();
    FormValues page;
    addCharts(page, kForm, logs, hours, {});
    for (const auto& [key, value] : page) {
        if (key == name) {
            return value;
        }
    }
    return "no such value";
}

TEST(Charts, ShowTheHourWithTheMostEventsOfEachBar)
{
    const std::initializer_list<std::string> times = {
        "Jan  1 00:10:00", "Jan  1 01:10:00", "Jan  1 01:20:00",
        "Jan  1 02:10:00", "Jan  1 02:20:00", "Jan  1 03:10:00",
        "Jan  1 04:10:00", "Jan  1 05:10:00", "Jan 21 00:10:00"};
    EXPECT_EQ("0.000+0.416 0.000+100.000 one hour from 2026-01-01 01:00:00: 2 events\n"
              "0.416+0.416 0.000+100.000 one hour from 2026-01-01 02:00:00: 2 events\n"
              "0.832+0.416 50.000+50.000 one hour from 2026-01-01 04:00:00: 1 event\n"
              "99.792+0.416 50.000+50.000 one hour from 2026-01-21 00:00:00: 1 event\n",
              valueOf("hour", times));
    EXPECT_EQ("At most 2 events in one hour. Each bar is the hour with the most events of 2.",
              valueOf("scale", times));
}

TEST(Charts, DrawTheBandsWhoseTimesAreKnown)
{
    EXPECT_EQ("2026-01-01 00:15:00 to 2026-01-01 00:45:00: 25.000+50.000",
              valueOf("terminal", {"Jan  1 00:15:00", "Jan  1 00:45:00"}));
    EXPECT_EQ("no time is known:", valueOf("terminal", {"no time"}));
}

} // namespace
} // namespace eventsviewer
