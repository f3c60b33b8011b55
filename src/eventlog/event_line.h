#pragma once

#include "eventlog/event_record.h"

#include <memory>
#include <string_view>

namespace eventsviewer {

/// The event that a log line (without its line feed) carries, or null if it carries none. The JSON
/// object may stand behind any text without a "{", and may be cut off: what was read before the cut
/// counts. Prints nothing but the diagnostic for an "id" that is no integer; leaves std::cout in
/// the good state.
std::unique_ptr<EventRecord> parseEventLine(std::string_view line);

} // namespace eventsviewer
