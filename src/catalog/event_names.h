#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// The name of the event `code`, such as "MODEM_IN_NETWORK"; empty if it has none.
std::string_view knownEventName(std::int32_t code);

/// Every code that has a name, in ascending order.
std::vector<std::int32_t> knownEventCodes();

/// The name of the event `code`, such as "MODEM_IN_NETWORK". A code without a name gives
/// "UNRECOGNIZED_EVENT_CODE_" and the code's 32 bits as an unsigned number.
std::string eventNameFor(std::int32_t code);

} // namespace eventsviewer
