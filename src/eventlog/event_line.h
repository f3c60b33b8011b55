#pragma once

#include "eventlog/event_record.h"

#include <memory>
#include <string_view>

namespace eventsviewer {

/// The event of a log line (without its newline), or null if it has none. Any text without a "{"
/// may come before the JSON object, which may be cut off: what was read before the cut counts.
/// Prints nothing but the diagnostic for an "id" that is not an integer; leaves std::cout in the
/// good state.
std::unique_ptr<EventRecord> parseEventLine(std::string_view line);

} // namespace eventsviewer
