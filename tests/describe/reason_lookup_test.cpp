#include "describe/reason_lookup.h"

#include "jsonaccess/json_access.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <string>

namespace eventsviewer {
namespace {

constexpr const char* kFailed = "Failed to retrieve description";

std::string explain(const Json::Value& reason, const ReasonTable& table)
{
    Json::Value root;
    root["reason"] = reason;
    const std::string details = jsonaccess::writeString(root);
    const CapturedCout output;
    std::string explanation =
        lookupReasonExplanation(Variables(details), "reason", table).characters();
    EXPECT_EQ("", output.text());
    return explanation;
}

TEST(LookupReasonExplanation, TellsTheKindsOfBeamSwitch)
{
    EXPECT_EQ("Make-Before-Break(MBB) beam switch", explain("MBB", BeamSwitchTypes));
    EXPECT_EQ(kFailed, explain("mbb", BeamSwitchTypes));
}

TEST(LookupReasonExplanation, AnswersFromTheTableThatItIsGiven)
{
    EXPECT_EQ("The modem could not lock onto target beam.",
              explain("NO_DOWNSTREAM_LOCK", BeamSwitchFailureReasons));
    EXPECT_EQ("failed to lock to signaling carrier",
              explain("NO_DOWNSTREAM_LOCK", NoServiceCarrierReasons));
    EXPECT_EQ("The modem failed to get downstream lock",
              explain("NO_DOWNSTREAM_LOCK", NoServiceReasons));
    EXPECT_EQ("short circuit", explain("SHORT_CIRCUIT", TransmitIflFaults));
    EXPECT_EQ("short circuit", explain("SHORT_CIRCUIT", ReceiveIflFaults));
    EXPECT_EQ(kFailed, explain("OPEN_CIRCUIT", TransmitIflFaults));
    EXPECT_EQ(kFailed, explain("INSUFFICIENT_POWER", ReceiveIflFaults));
    EXPECT_EQ("no visible carrier(s) in constellation file",
              explain("NONE_VISIBLE", NoSignalingCarrierReasons));
    EXPECT_EQ("no visible carrier(s) in OTA beam map",
              explain("NONE_VISIBLE", NoServiceCarrierReasons));
}

TEST(LookupReasonExplanation, KeepsATrailingSpace)
{
    EXPECT_EQ("no carrier(s) found ", explain("NO_CARRIER_FOUND", NoSignalingCarrierReasons));
    EXPECT_EQ("no carrier(s) found", explain("NO_CARRIER_FOUND", NoServiceCarrierReasons));
}

TEST(LookupReasonExplanation, TakesTheFirstOfTwoRowsWithOneName)
{
    static constexpr Reason kRows[] = {
        {"OTHER", "another"}, {"TWICE", "the first"}, {"TWICE", "the second"}};
    const ReasonTable table = {kRows, kRows + 3};
    EXPECT_EQ("the first", explain("TWICE", table));
}

TEST(LookupReasonExplanation, FindsNothingInAnEmptyTable)
{
    const ReasonTable table = {nullptr, nullptr};
    EXPECT_EQ(kFailed, explain("UNKNOWN", table));
}

TEST(LookupReasonExplanation, SharesTheTextOfTheTable)
{
    const Variables variables(R"({"reason":"MBB"})");
    const SharedText text = lookupReasonExplanation(variables, "reason", BeamSwitchTypes);
    EXPECT_EQ(BeamSwitchTypes.begin()[0].explanation, text.characters());
}

TEST(LookupReasonExplanation, ReadsTheNameUpToItsFirstNul)
{
    EXPECT_EQ("Make-Before-Break(MBB) beam switch",
              explain(Json::Value(std::string("MBB\0X", 5)), BeamSwitchTypes));
}

TEST(LookupReasonExplanation, ExplainsNoValueThatIsNotAString)
{
    Json::Value array;
    array.append("MBB");
    Json::Value object;
    object["MBB"] = "MBB";
    for (const Json::Value& value :
         {Json::Value(), Json::Value(0), Json::Value(0.0), Json::Value(true),
          Json::Value(Json::UInt64{1}), array, object}) {
        EXPECT_EQ(kFailed, explain(value, BeamSwitchTypes));
    }
}

TEST(LookupReasonExplanation, ComparesTheWholeKey)
{
    const Variables variables(R"({"reason":"MBB"})");
    const auto explanationFor = [&variables](std::string_view key) {
        return std::string(lookupReasonExplanation(variables, key, BeamSwitchTypes).characters());
    };
    EXPECT_EQ("Make-Before-Break(MBB) beam switch", explanationFor("reason"));
    EXPECT_EQ(kFailed, explanationFor("Reason"));
    EXPECT_EQ(kFailed, explanationFor("reaso"));
    EXPECT_EQ(kFailed, explanationFor("reasons"));
    EXPECT_EQ(kFailed, explanationFor(std::string_view("reason\0", 7)));
    EXPECT_EQ(kFailed, explanationFor(""));
}

TEST(LookupReasonExplanation, FindsNothingInDetailsThatAreNotAnObject)
{
    for (const char* const details : {"null", "\"reason\"", "1", "[\"reason\"]"}) {
        const Variables variables(details);
        const CapturedCout output;
        const SharedText text = lookupReasonExplanation(variables, "reason", BeamSwitchTypes);
        EXPECT_STREQ(kFailed, text.characters());
        EXPECT_EQ("", output.text());
    }
}

} // namespace
} // namespace eventsviewer
