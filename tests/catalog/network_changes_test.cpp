#include "catalog/event_names.h"
#include "catalog/network_changes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace eventsviewer {
namespace {

// The names of all events after which the terminal is in this state.
std::vector<std::string> namesOf(NetworkState state)
{
    std::vector<std::string> names;
    for (const std::int32_t code : knownEventCodes()) {
        const NetworkChange* const change = findNetworkChange(code);
        if (change != nullptr && change->state == state) {
            names.emplace_back(knownEventName(code));
        }
    }
    return names;
}

TEST(NetworkChanges, TellWhichEventsSayThatTheTerminalIsInNetwork)
{
    EXPECT_EQ((std::vector<std::string>{"TERMINAL_ENTERED_INET", "MODEM_IN_NETWORK",
                                        "MODEM_BEAM_SWITCH_SUCCEEDED"}),
              namesOf(NetworkState::In));
}

TEST(NetworkChanges, TellWhichEventsSayThatItIsOutOfNetwork)
{
    EXPECT_EQ((std::vector<std::string>{
                  "ACQ_FAILURE_WITH_COVERAGE", "ACQ_FAILURE_WITHOUT_COVERAGE",
                  "TERMINAL_FAILED_AUTH_NETWORK", "TERMINAL_ACQ_NO_SERVICE_PLAN",
                  "TERMINAL_ACQ_BARRED_SERVICE_PLAN", "TERMINAL_ACQ_BARRED_REG",
                  "TERMINAL_OUT_OF_NETWORK", "TERMINAL_EXITED_INET", "TERMINAL_ID_NO_MATCH_LOGOFF",
                  "TERMINAL_AUTHENTICATION_FAILURE", "TERMINAL_LOGOFF_NO_SA_COVERAGE",
                  "TERMINAL_LOGOFF_NO_BEAM_COVERAGE", "TERMINAL_LOGOFF_ACCESS_CLASS",
                  "MODEM_RECOVERY_MODE", "MODEM_OUT_OF_NETWORK", "MODEM_FORCED_LOGOUT",
                  "MODEM_NO_SIGNALING_CARRIER", "MODEM_NO_SERVICE_CARRIER", "MODEM_NO_SERVICE"}),
              namesOf(NetworkState::Out));
}

TEST(NetworkChanges, TellWhichEventsOnlyEndThatItIsInNetwork)
{
    EXPECT_EQ(
        (std::vector<std::string>{"MODEM_RESET", "MODEM_OS_RESTART", "MODEM_STARTING_UP",
                                  "MODEM_STARTING_SEARCH_CYCLE", "MODEM_TRYING_SIGNALING_CARRIER",
                                  "MODEM_TRYING_SERVICE_CHANNEL", "MODEM_SATELLITE_SWITCH"}),
        namesOf(NetworkState::NotKnown));
}

TEST(NetworkChanges, GiveAReasonForEach)
{
    for (const std::int32_t code : knownEventCodes()) {
        const NetworkChange* const change = findNetworkChange(code);
        EXPECT_TRUE(change == nullptr || !std::string(change->why).empty()) << code;
    }
}

} // namespace
} // namespace eventsviewer
