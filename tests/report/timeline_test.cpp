#include "report/timeline.h"

#include "eventlog/event_line.h"

#include <gtest/gtest.h>

#include <string>

namespace eventsviewer {
namespace {

// The timeline of events in the year 2026.
class Events {
public:
    Events& add(const std::string& code, const std::string& time, const std::string& variables = "")
    {
        const auto event = parseEventLine(R"({"id":)" + code + R"(,"time":")" + time +
                                          R"(","vars":{)" + variables + "}}");
        const auto stamp = stampOf(time);
        timeline_.add(*event, line_++, stamp ? isoTime(momentOf(2026, *stamp)) : "", hours_);
        return *this;
    }
    const NetworkBand& lastOutage()
    {
        timeline_.finish();
        const auto& bands = timeline_.bands().bands();
        auto band = bands.rbegin();
        while (band->state != NetworkState::Out) {
            ++band;
        }
        return *band;
    }
    const Timeline& timeline() const { return timeline_; }
    const EventsAnHour& hours() const { return hours_; }

private:
    Timeline timeline_;
    EventsAnHour hours_;
    std::uint64_t line_ = 0;
};

TEST(Timeline, CountsTheEventsOfEachHour)
{
    Events events;
    events.add("1231", "Nov 20 08:59:59").add("1231", "Nov 20 09:00:00");
    events.add("1231", "Nov 20 09:59:59").add("1231", "no time");
    const Moment eight = momentOf(2026, {11, 20, 8 * 3600});
    EXPECT_EQ((EventsAnHour{{eight, 1}, {eight + 3600, 2}}), events.hours());
    EXPECT_EQ(4U, events.timeline().events());
    EXPECT_EQ(eight + 3599, events.timeline().first());
    EXPECT_EQ(eight + 7199, events.timeline().last());
}

TEST(Timeline, KeepsTheReasonsThatAnOutageGives)
{
    Events events;
    events.add("1229", "Nov 20 08:00:00", R"("out_of_network_reason":"ACQ_DISABLE")");
    events.add("1237", "Nov 20 08:01:00", R"("no_service_reason":"NO_TX_UNMUTE")");
    events.add("1237", "Nov 20 08:02:00", R"("no_service_reason":"NO_TX_UNMUTE")");
    events.add("1228", "Nov 20 08:03:00");
    EXPECT_EQ("ACQ_DISABLE: Received command from terminal to stop acquisition\n"
              "NO_TX_UNMUTE: The transmitter is muted",
              events.lastOutage().reason);
    EXPECT_EQ(180, events.lastOutage().length());
}

TEST(Timeline, KeepsAReasonThatNothingExplains)
{
    Events events;
    events.add("1232", "Nov 20 08:00:00", R"("forced_logout_reason":"OPERATOR_REQUEST")");
    EXPECT_EQ("OPERATOR_REQUEST", events.lastOutage().reason);
}

TEST(Timeline, KeepsAsManyReasonsAsFitInAThousandBytes)
{
    const std::string first(600, 'A');
    const std::string second(398, 'B');
    Events events;
    for (const std::string& reason : {first, second, std::string("C")}) {
        events.add("1237", "Nov 20 08:00:00", R"("no_service_reason":")" + reason + '"');
    }
    EXPECT_EQ(first + '\n' + second, events.lastOutage().reason);
}

TEST(Timeline, TakesNoReasonFromAnEventWithoutOne)
{
    Events events;
    events.add("1229", "Nov 20 08:00:00");
    EXPECT_EQ("", events.lastOutage().reason);
}

// The length of an outage of five minutes in which the clock is set, at the event with `time`.
std::optional<std::int64_t> lengthAround(const std::string& time, const std::string& oldTime,
                                         const std::string& newTime, const std::string& end)
{
    Events events;
    events.add("1229", "Nov 20 08:00:00");
    events.add("1227", time, R"("old_time":")" + oldTime + R"(","new_time":")" + newTime + '"');
    events.add("1228", end);
    return events.lastOutage().length();
}

TEST(Timeline, TakesAStepOfTheClockFromTheLength)
{
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Nov 20 10:01:00",
                                "Nov 20 10:05:00"));
    EXPECT_EQ(300, lengthAround("Nov 20 10:01:00", "Nov 20 08:01:00", "Nov 20 10:01:00",
                                "Nov 20 10:05:00"));
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Nov 20 07:01:00",
                                "Nov 20 07:05:00"));
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Nov 21 08:01:00",
                                "Nov 21 08:05:00"));
}

TEST(Timeline, DoesNotCountAClockThatWasNotSetBefore)
{
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Jan  1 00:00:30", "Nov 20 08:01:00",
                                "Nov 20 08:05:00"));
    EXPECT_EQ(300,
              lengthAround("Nov 20 08:01:00", "no time", "Nov 20 08:01:00", "Nov 20 08:05:00"));
}

constexpr std::int64_t kTwoHours = 7200;

TEST(Timeline, TakesStepsOfUpToAMonth)
{
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Dec 21 08:01:00",
                                "Dec 21 08:05:00"));
    EXPECT_EQ(32 * kDay + 300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Dec 22 08:01:00",
                                            "Dec 22 08:05:00"));
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Oct 20 08:01:00",
                                "Oct 20 08:05:00"));
    EXPECT_EQ(std::nullopt, lengthAround("Nov 20 08:01:00", "Nov 20 08:01:00", "Oct 19 08:01:00",
                                         "Oct 19 08:05:00"));
}

TEST(Timeline, TakesAStepUpToAMonthAfterTheEventBefore)
{
    EXPECT_EQ(31 * kDay + 300, lengthAround("Dec 21 08:01:00", "Dec 21 08:01:00", "Dec 21 10:01:00",
                                            "Dec 21 10:05:00"));
    EXPECT_EQ(32 * kDay + kTwoHours + 300, lengthAround("Dec 22 08:01:00", "Dec 22 08:01:00",
                                                        "Dec 22 10:01:00", "Dec 22 10:05:00"));
}

TEST(Timeline, TakesAStepFromADayBeforeTheEventBefore)
{
    EXPECT_EQ(300, lengthAround("Nov 20 08:01:00", "Nov 19 08:01:00", "Nov 20 08:01:00",
                                "Nov 21 08:05:00"));
    EXPECT_EQ(2 * kDay + 300, lengthAround("Nov 20 08:01:00", "Nov 18 08:01:00", "Nov 20 08:01:00",
                                           "Nov 22 08:05:00"));
}

// The length of an outage of five minutes in which the clock is put forward by two hours, at an
// event with `variables`.
std::optional<std::int64_t> lengthWith(const std::string& variables)
{
    Events events;
    events.add("1229", "Nov 20 08:00:00").add("1227", "Nov 20 08:01:00", variables);
    return events.add("1228", "Nov 20 10:05:00").lastOutage().length();
}

TEST(Timeline, TakesNoStepWithoutBothItsTimes)
{
    const std::string oldTime = R"("old_time":"Nov 20 08:01:00")";
    const std::string newTime = R"("new_time":"Nov 20 10:01:00")";
    EXPECT_EQ(300, lengthWith(oldTime + ',' + newTime));
    for (const std::string& variables :
         {std::string(), oldTime, newTime, oldTime + R"(,"new_time":"no time")",
          oldTime + R"(,"new_time":10)", newTime + R"(,"old_time":[])"}) {
        EXPECT_EQ(kTwoHours + 300, lengthWith(variables)) << variables;
    }
}

TEST(Timeline, TakesNoStepAtOrAfterAnEventWithoutATime)
{
    const std::string set = R"("old_time":"Nov 20 08:01:00","new_time":"Nov 20 10:01:00")";
    Events at;
    at.add("1229", "Nov 20 08:00:00").add("1227", "no time", set).add("1228", "Nov 20 10:05:00");
    EXPECT_EQ(kTwoHours + 300, at.lastOutage().length());
    Events after;
    after.add("1229", "Nov 20 08:00:00").add("1231", "no time");
    after.add("1227", "Nov 20 08:01:00", set).add("1228", "Nov 20 10:05:00");
    EXPECT_EQ(kTwoHours + 300, after.lastOutage().length());
}

} // namespace
} // namespace eventsviewer
