#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace eventsviewer {

// What is known of an event, for a list of them.

/// All words about the event with this code: its name, its description with the keys of the
/// variables, and its reasons, one line each.
std::string catalogWords(std::int32_t code);

/// `words` for a person:
///
///     1229 MODEM_OUT_OF_NETWORK
///          This terminal fell out of network.
///          Reason: {out_of_network_reason}
///          - NO_UCP: Failed to receive UCP messages; Last slot was allocated ~%u seconds ago
std::string catalogText(std::int32_t code, std::string_view words);

/// The same as a JSON object: code, event, template, variables, reasons.
std::string catalogJson(std::int32_t code);

} // namespace eventsviewer
