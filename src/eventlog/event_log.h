#pragma once

#include "eventlog/event_record.h"

#include <cstddef>
#include <string>

namespace eventsviewer {

// A log at the path P is two files: its predecessor P.0, which is older, and P itself. A file that
// cannot be opened counts as empty; one that cannot be read to its end counts up to the error.

// Both functions leave std::cout in the state in which the last line with a "{" leaves it.

/// Every event of the log at `inputPath`.
EventStore loadAllEvents(const std::string& inputPath);

/// The newest `count` events of the log at `inputPath`, or all if there are fewer. Never holds more
/// than `count`, which is at least 1.
EventStore loadRecentEvents(const std::string& inputPath, std::size_t count);

} // namespace eventsviewer
