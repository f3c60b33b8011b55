#include "describe/describe_event.h"

#include "reference/naive.h"
#include "reference/samples.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

/// Expects for each sample the description and the diagnostics of the reference.
void expectReferenceAgrees(const std::vector<reference::Sample>& samples)
{
    ASSERT_FALSE(samples.empty());
    for (const reference::Sample& sample : samples) {
        SCOPED_TRACE(std::to_string(sample.code) + " " + sample.variables);
        std::string expected;
        std::string expectedOutput;
        {
            const CapturedCout output;
            expected = reference::describeEvent(sample.code, sample.variables);
            expectedOutput = output.text();
        }
        const CapturedCout output;
        EXPECT_EQ(expected, describe(sample.code, sample.variables));
        EXPECT_EQ(expectedOutput, output.text());
    }
}

TEST(DescribeEvent, DescribesNoOtherCode)
{
    expectReferenceAgrees(reference::everyCode());
}

TEST(DescribeEvent, FillsEveryDescriptionWithAllItsVariables)
{
    expectReferenceAgrees(reference::everyDescription());
}

TEST(DescribeEvent, FillsEveryDescriptionWithoutVariablesAndWithEachOneMissingOrNotAString)
{
    expectReferenceAgrees(reference::everyDescriptionWithWrongVariables());
}

TEST(DescribeEvent, ExplainsEveryReasonByItsExactNameAndByNothingElse)
{
    expectReferenceAgrees(reference::everyReason());
}

TEST(DescribeEvent, PrintsThePercentSignAfterTheRollOffFactor)
{
    EXPECT_EQ("The downstream this modem is receiving from has been updated:\n"
              "Carrier frequency: 1200000 kHz\n"
              "Symbol rate: 45000 KSps\n"
              "Roll off factor: 20%\n"
              "polarization(rx): RHCP",
              describe(1242, R"({"freq":"1200000","symrate":"45000","rolloff":"20",)"
                             R"("pol":"RHCP"})"));
}

TEST(DescribeEvent, TellsOfATimeAdjustmentForCode1227)
{
    EXPECT_EQ("This terminal is adjusting system time by 5 seconds\nOld: 10:00:00\nNew: 10:00:05",
              describe(1227, R"({"delta_time":"5","old_time":"10:00:00","new_time":"10:00:05"})"));
}

TEST(DescribeEvent, KeepsBothSpacesBeforeAnOptionsError)
{
    EXPECT_EQ("This terminal is misconfigured.\nReason:  The BUC options update was rejected; "
              "incompatible with the BUC calibration file.",
              describe(1283, R"({"options_error_reason":"BUC_OPTIONS_UPDATE_REJECTED"})"));
}

TEST(DescribeEvent, ShowsTheReasonForLeavingTheNetworkAsItIs)
{
    EXPECT_EQ("This terminal fell out of network.\nReason: NO_UCP",
              describe(1229, R"({"out_of_network_reason":"NO_UCP"})"));
    EXPECT_EQ("This terminal was forced to logout; NO_UCP",
              describe(1232, R"({"forced_logout_reason":"NO_UCP"})"));
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

TEST(DescribeEvent, ReadsTheConfigurationHashUnderItsMisspeltKeyOnly)
{
    EXPECT_EQ("This terminal failed to install its terminal configuration.  The configuration had "
              "filename = f, version = v, and hash = .",
              describe(1027, R"({"terminal_configuration_filename":"f",)"
                             R"("terminal_configuration_version":"v",)"
                             R"("terminal_configuration_hash":"h"})"));
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
