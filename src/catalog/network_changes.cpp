// Which events say whether the terminal is in network. An event that only says what the terminal or
// its modem tries ends what was known: it would not try if it were in network. Events about other
// terminals, parts of the hub, cables, the antenna and the transmitter are no statement: if the
// network is lost by them, an event of this table follows.

#include "catalog/network_changes.h"

#include "catalog/find_code.h"
#include "catalog/table_checks.h"

namespace eventsviewer {

namespace {

constexpr NetworkState kIn = NetworkState::In;
constexpr NetworkState kOut = NetworkState::Out;
constexpr NetworkState kNotKnown = NetworkState::NotKnown;

// clang-format off
constexpr NetworkChange kNetworkChanges[] = {
    { 736, kOut,      "its acquisition failed"},
    { 737, kOut,      "its acquisition failed without coverage"},
    { 738, kOut,      "the network did not authenticate it"},
    { 739, kOut,      "its acquisition was refused: no service plan"},
    { 740, kOut,      "its acquisition was refused: the service plan is barred"},
    { 741, kOut,      "its acquisition was refused: barred"},
    { 830, kOut,      "it fell out of network"},
    { 864, kIn,       "it entered an iNet"},
    { 866, kOut,      "it left its iNet"},
    { 946, kNotKnown, "the modem is reset"},
    { 949, kNotKnown, "the system of the modem is restarted"},
    { 954, kOut,      "it was logged off: its identity does not match"},
    {1032, kOut,      "its authentication failed"},
    {1073, kOut,      "it was logged off: no coverage by the service area"},
    {1074, kOut,      "it was logged off: no coverage by a beam"},
    {1075, kOut,      "it was logged off: its access class"},
    {1086, kOut,      "it does not transmit in recovery mode"},
    {1225, kNotKnown, "the modem starts; since when it was off is not known", true},
    {1226, kNotKnown, "the modem searches a carrier"},
    {1228, kIn,       "it is in network"},
    {1229, kOut,      "it fell out of network"},
    {1232, kOut,      "it was forced to log out"},
    {1233, kOut,      "it finds no carrier to receive a beam map on"},
    {1234, kNotKnown, "the modem tries to get a beam map"},
    {1235, kOut,      "it finds no carrier for an acquisition"},
    {1236, kNotKnown, "the modem tries to come into network"},
    {1237, kOut,      "it failed to come into network"},
    {1240, kNotKnown, "it tries to switch to another satellite"},
    {1244, kIn,       "it is in network after a switch of beams"},
};
// clang-format on

static_assert(codesAscend(kNetworkChanges), "kNetworkChanges: codes must ascend and not repeat");

} // namespace

const NetworkChange* findNetworkChange(std::int32_t code)
{
    return findCode(kNetworkChanges, code);
}

} // namespace eventsviewer
