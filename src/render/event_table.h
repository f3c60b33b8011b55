#pragma once

#include "eventlog/event_record.h"

#include <cstdint>
#include <string>

namespace eventsviewer {

/// The table of all `events`, with the heading stating the smaller of `count` and their number.
/// `count` is part of the fixed form of this call: no caller needs another number than theirs.
///
///     Last 1 events from Nov 20 08:15:02 to Nov 20 08:15:02:
///
///     Timestamp           Event                         Detail
///     ================================================================================
///     Nov 20 08:15:02     MODEM_OUT_OF_NETWORK          This terminal fell out of network.
///                                                       Reason: NO_UCP
///
/// Each event name is inside colour escapes, each row is followed by an empty line. Without events
/// the text is "No events to display.", with no newline. Each event is destroyed as soon as its row
/// is written, so that a long table takes their memory. Describing the events may print JSON
/// diagnostics on std::cout.
std::string renderEventTable(EventStore events, std::uint32_t count);

} // namespace eventsviewer
