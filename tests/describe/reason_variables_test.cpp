#include "describe/reason_variables.h"

#include "describe/describe_event.h"
#include "describe/description_catalog.h"
#include "describe/variables.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace eventsviewer {
namespace {

constexpr std::int32_t kSwitchFailed = 1245; // its description explains the reason
constexpr std::int32_t kOutOfNetwork = 1229; // its description shows the reason's name
constexpr std::int32_t kUndescribed = 5;

// "name: explanation", and "; shown" if the description shows that.
std::string reasonIn(std::int32_t code, const char* details)
{
    const Variables variables(details);
    const CapturedCout output;
    const GivenReason reason = reasonOf(findDescription(code), variables);
    EXPECT_EQ("", output.text());
    return std::string(reason.name) + ": " + std::string(reason.explanation) +
           (reason.shown ? "; shown" : "");
}

TEST(ReasonOf, IsTheOneThatTheDescriptionExplains)
{
    EXPECT_EQ("NO_DOWNSTREAM_LOCK: The modem could not lock onto target beam.; shown",
              reasonIn(kSwitchFailed, R"({"beam_switch_failure_reason":"NO_DOWNSTREAM_LOCK",)"
                                      R"("a":"x","beam_switch_type":"MBB"})"));
    EXPECT_EQ("nope: ; shown", reasonIn(kSwitchFailed, R"({"beam_switch_failure_reason":"nope"})"));
}

TEST(ReasonOf, IsElseTheFirstVariableThatHoldsAReasonInAnyEvent)
{
    const char* const both = R"({"no_service_reason":"NO_TX_UNMUTE","beam_switch_type":"MBB"})";
    EXPECT_EQ("NO_TX_UNMUTE: The transmitter is muted",
              reasonIn(kOutOfNetwork, R"({"no_service_reason":"NO_TX_UNMUTE"})"));
    EXPECT_EQ("NO_TX_UNMUTE: The transmitter is muted",
              reasonIn(kUndescribed, R"({"beam":"x","no_service_reason":"NO_TX_UNMUTE"})"));
    // As the library gives them, they are in order.
    EXPECT_EQ("MBB: Make-Before-Break(MBB) beam switch",
              reasonIn(kUndescribed, (std::string(both, 1) + R"("n":1,)" + (both + 1)).c_str()));
    EXPECT_EQ("NO_TX_UNMUTE: The transmitter is muted",
              reasonIn(kSwitchFailed, R"({"beam_switch_failure_reason":7,)"
                                      R"("no_service_reason":"NO_TX_UNMUTE"})"));
}

TEST(ReasonOf, MayHaveNoExplanation)
{
    EXPECT_EQ("x: ", reasonIn(kUndescribed, R"({"forced_logout_reason":"x"})"));
    EXPECT_EQ(": ", reasonIn(kUndescribed, R"({"no_service_reason":""})"));
    EXPECT_EQ("tx_mute: ", reasonIn(kUndescribed, R"({"no_service_reason":"tx_mute"})"));
}

TEST(ReasonOf, IsEmptyWithoutAStringForIt)
{
    EXPECT_EQ(": ", reasonIn(kUndescribed, "{}"));
    EXPECT_EQ(": ", reasonIn(kUndescribed, "[]"));
    EXPECT_EQ(": ", reasonIn(kSwitchFailed, R"({"beam_switch_failure_reason":null})"));
    EXPECT_EQ(": ", reasonIn(kUndescribed, R"({"reason":"MBB","beam_switch_typ":"MBB"})"));
}

TEST(ReasonsFor, AreThoseOfEachVariableThatADescriptionExplains)
{
    for (const Description& description : DescriptionCatalog) {
        for (const Slot& slot : description.slots) {
            if (slot.reasons != nullptr) {
                EXPECT_EQ(slot.reasons, reasonsFor(slot.key)) << slot.key;
            }
        }
    }
}

TEST(ReasonsFor, AreTheTableOfAVariable)
{
    EXPECT_EQ(&OutOfNetworkReasons, reasonsFor("out_of_network_reason"));
    EXPECT_EQ(&BeamSwitchTypes, reasonsFor("beam_switch_type"));
    EXPECT_EQ(&TransmitIflFaults, reasonsFor("transmit_ifl_fault"));
    EXPECT_EQ(nullptr, reasonsFor("forced_logout_reason"));
    EXPECT_EQ(nullptr, reasonsFor("beam_switch_types"));
    EXPECT_EQ(nullptr, reasonsFor(""));
}

} // namespace
} // namespace eventsviewer
