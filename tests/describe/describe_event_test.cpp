#include "describe/describe_event.h"

#include "describe/variables.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <string>

namespace eventsviewer {
namespace {

constexpr const char* kNoString =
    "Tarvik workaround: in Json::Value::asCString(): requires stringValue\n";
constexpr const char* kParseError =
    "Tarvik workaround: error occured in IStream in JsonCpp:* Line 1, Column ";

std::string describe(std::int32_t code, const std::string& details)
{
    return describeEvent(code, textFromLiteral(details.c_str())).characters();
}

TEST(DescribeEvent, LeavesSpacesWhereVariablesAreMissing)
{
    EXPECT_EQ("This terminal switched beams and is now in network on iNet  and Beam .",
              describe(1244, "{}"));
}

TEST(DescribeEvent, SaysThatAMissingReasonHasNoDescription)
{
    EXPECT_EQ("This terminal's BUC is not calibrated.\n"
              "Reason: Failed to retrieve description; since noon",
              describe(1217, R"({"detail":"since noon"})"));
}

TEST(DescribeEvent, SaysTheSameOfAReasonThatIsANumberWithoutADiagnostic)
{
    const CapturedCout output;
    EXPECT_EQ("This terminal's BUC is not calibrated.\n"
              "Reason: Failed to retrieve description; since noon",
              describe(1217, R"({"buc_not_calibrated_reason":1,"detail":"since noon"})"));
    EXPECT_EQ("", output.text());
}

TEST(DescribeEvent, PrintsOneDiagnosticForEachVariableThatIsNotAString)
{
    const CapturedCout output;
    EXPECT_EQ("This terminal switched beams and is now in network on iNet  and Beam .",
              describe(1244, R"({"inet_id":12,"beam_id":false})"));
    EXPECT_EQ(std::string(kNoString) + kNoString, output.text());
}

TEST(DescribeEvent, IgnoresVariablesThatItDoesNotShow)
{
    const CapturedCout output;
    EXPECT_EQ("This terminal's modem software is starting up.",
              describe(1225, R"({"inet_id":12})"));
    EXPECT_EQ("This terminal is in network and authenticated on iNet 4.",
              describe(1228, R"({"beam_id":12,"inet_id":"4"})"));
    EXPECT_EQ("", output.text());
}

TEST(DescribeEvent, FormatsNothingInAVariable)
{
    EXPECT_EQ("This terminal is in network and authenticated on iNet %s%n%d.",
              describe(1228, R"({"inet_id":"%s%n%d"})"));
}

TEST(DescribeEvent, ShowsAVariableUpToItsFirstNul)
{
    EXPECT_EQ("This terminal is in network and authenticated on iNet ab.",
              describe(1228, R"({"inet_id":"ab\u0000cd"})"));
}

TEST(DescribeEvent, KeepsNewlinesAndLongValuesOfAVariable)
{
    EXPECT_EQ("This terminal is in network and authenticated on iNet a\nb\r\t.",
              describe(1228, R"({"inet_id":"a\nb\r\t"})"));
    const std::string longText(20000, 'x');
    EXPECT_EQ("This terminal is in network and authenticated on iNet " + longText + ".",
              describe(1228, R"({"inet_id":")" + longText + "\"}"));
}

TEST(DescribeEvent, PrintsOneDiagnosticForDetailsThatDoNotParseWhateverTheCode)
{
    for (const std::int32_t code : {835, 1225, 1228, 1245, 0, 1030, -1}) {
        const CapturedCout output;
        describe(code, "{\"a\":\"b\",}");
        EXPECT_EQ(std::string(kParseError) + "10\n  Missing '}' or object member name\n\n",
                  output.text());
    }
}

TEST(DescribeEvent, FillsInWhatWasReadBeforeTheDetailsBroke)
{
    const CapturedCout output;
    EXPECT_EQ("This terminal failed to switch beams.\nReason: Unknown.",
              describe(1245, R"({"beam_switch_failure_reason":"UNKNOWN" // a comment})"));
    EXPECT_EQ("This terminal switched beams and is now in network on iNet 3 and Beam .",
              describe(1244, R"({"inet_id":"3","beam_id":)"));
    EXPECT_NE("", output.text());
}

TEST(DescribeEvent, TakesAbsentDetailsForEmptyOnes)
{
    for (const SharedText& details : {SharedText(), textFromLiteral("")}) {
        const CapturedCout output;
        EXPECT_STREQ("This terminal failed to come into network.\n"
                     "Reason: Failed to retrieve description; ",
                     describeEvent(1237, details).characters());
        EXPECT_EQ(std::string(kParseError) +
                      "1\n  Syntax error: value, object or array expected.\n\n",
                  output.text());
    }
}

TEST(DescribeEvent, TakesDetailsThatAreNotAnObjectForNoVariables)
{
    for (const char* const details : {"5", "[\"inet_id\"]", "\"inet_id\"", "true"}) {
        const CapturedCout output;
        EXPECT_EQ("This terminal is in network and authenticated on iNet .",
                  describe(1228, details));
        EXPECT_EQ("Tarvik workaround: in Json::Value::find(begin, end): requires objectValue or "
                  "nullValue\n",
                  output.text());
    }
}

TEST(DescribeEvent, ReadsVariablesFromTheTopLevelOnly)
{
    EXPECT_EQ("This terminal is in network and authenticated on iNet .",
              describe(1228, R"({"nested":{"inet_id":"5"}})"));
}

TEST(DescribeEvent, AnswersForVariablesThatAreReadOnce)
{
    const CapturedCout output;
    const Variables variables(R"({"inet_id":"3","beam_id":7,})");
    const std::string parseError = output.text();
    EXPECT_NE("", parseError);
    EXPECT_STREQ("This terminal is in network and authenticated on iNet 3.",
                 describeEvent(findDescription(1228), variables).characters());
    EXPECT_STREQ("Unknown", describeEvent(findDescription(0), variables).characters());
    EXPECT_EQ(parseError, output.text());
    EXPECT_STREQ("This terminal switched beams and is now in network on iNet 3 and Beam .",
                 describeEvent(findDescription(1244), variables).characters());
    EXPECT_EQ(parseError + kNoString, output.text());
}

TEST(DescribeEvent, GivesEachCallerATextOfItsOwn)
{
    const SharedText details = textFromLiteral("{}");
    const SharedText first = describeEvent(835, details);
    const SharedText second = describeEvent(835, details);
    EXPECT_NE(first.characters(), second.characters());
    EXPECT_STREQ("{}", details.characters());
}

} // namespace
} // namespace eventsviewer
