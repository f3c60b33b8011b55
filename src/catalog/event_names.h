#pragma once

#include <cstdint>
#include <string>

namespace eventsviewer {

/// The name of the event `code`, such as "MODEM_IN_NETWORK". A code without a name gives
/// "UNRECOGNIZED_EVENT_CODE_" and the code's 32 bits as an unsigned number.
std::string eventNameFor(std::int32_t code);

} // namespace eventsviewer
