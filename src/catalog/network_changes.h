#pragma once

#include <cstdint>

namespace eventsviewer {

/// What the log says of the terminal.
enum class NetworkState { NotKnown, In, Out };

/// What an event says of the network.
struct NetworkChange {
    std::int32_t code;
    NetworkState state; ///< from this event on
    const char* why;
    /// Only of NotKnown: whether the state before may have ended earlier, without an event.
    bool isBelated = false;
};

/// What the event `code` says of the network; null if nothing.
const NetworkChange* findNetworkChange(std::int32_t code);

} // namespace eventsviewer
