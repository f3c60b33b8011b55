#include "report/network_bands.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace eventsviewer {
namespace {

constexpr std::int32_t kIn = 1228;
constexpr std::int32_t kOut = 1229;
constexpr std::int32_t kReset = 946;
constexpr std::int32_t kStart = 1225;
constexpr std::int32_t kFailed = 1237;
constexpr std::int32_t kOther = 1231;
constexpr std::nullopt_t kNoTime = std::nullopt;

// The bands of a log with one event a line.
class Bands {
public:
    Bands& add(std::int32_t code, std::optional<std::int64_t> moment)
    {
        bands_.add(code, line_++, moment);
        return *this;
    }
    Bands& addClockStep(std::int64_t seconds)
    {
        bands_.addClockStep(seconds);
        return *this;
    }

    // Such as "out 100-160 60s": the state, the times and the length, with a + if it is at least
    // this.
    std::string text()
    {
        constexpr const char* kStates[] = {"unknown", "in", "out"};
        bands_.finish();
        std::string text;
        for (const NetworkBand& band : bands_.bands()) {
            text += text.empty() ? "" : ", ";
            text += kStates[static_cast<int>(band.state)];
            text += ' ' + number(band.since) + '-' + number(band.until);
            text += band.length() ? ' ' + number(band.length()) + 's' : "";
            text += band.isAtLeast ? "+" : "";
        }
        return text;
    }
    const NetworkBands& bands() const { return bands_; }

private:
    static std::string number(std::optional<std::int64_t> value)
    {
        return value ? std::to_string(*value) : "?";
    }

    NetworkBands bands_;
    std::uint64_t line_ = 0;
};

TEST(NetworkBands, BeginAndEndWithTheEventsThatSaySo)
{
    Bands bands;
    bands.add(kOther, 100).add(kIn, 110).add(kOut, 200).add(kOther, 210).add(kIn, 260);
    bands.add(kOther, 300);
    EXPECT_EQ("unknown 100-110 10s, in 110-200 90s, out 200-260 60s, in 260-300 40s", bands.text());
    const NetworkBand& out = bands.bands().bands()[2];
    EXPECT_EQ(kOut, out.first->code);
    EXPECT_EQ(2U, out.firstLine);
    EXPECT_EQ(kIn, out.last->code);
    EXPECT_EQ(4U, out.lastLine);
    EXPECT_EQ(nullptr, bands.bands().bands()[0].first);
    EXPECT_EQ(nullptr, bands.bands().bands()[3].last);
}

TEST(NetworkBands, OfALogWithoutEventsAreNone)
{
    EXPECT_EQ("", Bands().text());
}

TEST(NetworkBands, OfALogThatSaysNothingAreNotKnown)
{
    EXPECT_EQ("unknown 5-9 4s", Bands().add(kOther, 5).add(kOther, 9).text());
}

TEST(NetworkBands, AreNotKnownFromAResetOn)
{
    EXPECT_EQ("unknown 1-1 0s, in 1-10 9s, unknown 10-30 20s, in 30-30 0s",
              Bands().add(kIn, 1).add(kReset, 10).add(kStart, 20).add(kIn, 30).text());
}

TEST(NetworkBands, AreNotKnownFromTheLastEventBeforeAStartOn)
{
    EXPECT_EQ("unknown 1-1 0s, in 1-10 9s+, unknown 10-90 80s, in 90-90 0s",
              Bands().add(kIn, 1).add(kOther, 10).add(kStart, 70).add(kIn, 90).text());
}

TEST(NetworkBands, OutOfNetworkDoNotEndWithARestart)
{
    EXPECT_EQ("unknown 1-1 0s, out 1-50 49s, in 50-50 0s",
              Bands().add(kOut, 1).add(kReset, 10).add(kStart, 20).add(kIn, 50).text());
}

TEST(NetworkBands, DoNotEndWithTheSameStateOnceMore)
{
    EXPECT_EQ("unknown 1-1 0s, out 1-9 8s",
              Bands().add(kOut, 1).add(kFailed, 5).add(kOut, 9).text());
}

TEST(NetworkBands, AreNotKnownAroundAnEventWithoutATime)
{
    EXPECT_EQ("unknown 1-1 0s, out 1-5 4s+, unknown 5-20 15s, in 20-30 10s+", Bands()
                                                                                  .add(kOut, 1)
                                                                                  .add(kOther, 5)
                                                                                  .add(kIn, kNoTime)
                                                                                  .add(kOther, 20)
                                                                                  .add(kOther, 30)
                                                                                  .text());
}

TEST(NetworkBands, AreNotKnownWhileTheClockIsNotSetAfterAStart)
{
    EXPECT_EQ("unknown 1-1 0s, in 1-5 4s+, unknown 5-20 15s, in 20-30 10s+",
              Bands()
                  .add(kIn, 1)
                  .add(kOther, 5)
                  .add(kStart, kNoTime)
                  .add(kIn, kNoTime)
                  .add(kOther, 20)
                  .add(kOther, 30)
                  .text());
}

TEST(NetworkBands, WithoutAnyTimeHaveNone)
{
    EXPECT_EQ("unknown ?-?+, in ?-?+, out ?-?",
              Bands().add(kOther, kNoTime).add(kIn, kNoTime).add(kOut, kNoTime).text());
}

TEST(NetworkBands, LastWithoutTheStepsOfTheClock)
{
    Bands bands;
    bands.add(kOut, 100).add(kOther, 110).addClockStep(3600).add(kIn, 3720);
    EXPECT_EQ("unknown 100-100 0s, out 100-3720 20s, in 3720-3720 0s", bands.text());
    Bands back;
    back.add(kOut, 5000).add(kOther, 5010).addClockStep(-3600).add(kIn, 1420);
    EXPECT_EQ("unknown 5000-5000 0s, out 5000-1420 20s, in 1420-1420 0s", back.text());
}

TEST(NetworkBands, HaveNoLengthIfTheTimeGoesBackWithoutAWord)
{
    EXPECT_EQ("unknown 50-50 0s, out 50-20, in 20-20 0s",
              Bands().add(kOut, 50).add(kIn, 20).text());
}

TEST(NetworkBands, HaveNoLengthBeforeTheyEnd)
{
    NetworkBands bands;
    const NetworkBand* const out = bands.add(kOut, 0, 100);
    EXPECT_EQ(100, out->since);
    EXPECT_EQ(std::nullopt, out->length());
}

TEST(NetworkBands, GiveReasonsToTheBandThatIsNotInNetwork)
{
    NetworkBands bands;
    EXPECT_EQ(nullptr, bands.add(kIn, 0, 1));
    EXPECT_EQ(nullptr, bands.add(kOther, 1, 2));
    NetworkBand* const out = bands.add(kOut, 2, 3);
    ASSERT_NE(nullptr, out);
    EXPECT_EQ(kOut, out->first->code);
    EXPECT_EQ(out, bands.add(kFailed, 3, 4));
    EXPECT_EQ(nullptr, bands.add(kReset, 4, 5));
}

TEST(NetworkBands, LeaveOutTheOldestOfTooMany)
{
    NetworkBands bands;
    for (std::size_t i = 0; i <= NetworkBands::kMostBands; ++i) {
        bands.add(i % 2 == 0 ? kIn : kOut, i, static_cast<std::int64_t>(i));
    }
    EXPECT_EQ(NetworkBands::kMostBands, bands.bands().size());
    EXPECT_EQ(2U, bands.leftOut());
    EXPECT_EQ(1U, bands.bands().front().firstLine);
}

} // namespace
} // namespace eventsviewer
