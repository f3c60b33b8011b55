#pragma once

#include <cstddef>
#include <string_view>

namespace eventsviewer {

// A log line is silent if parseEventLine is guaranteed to return and to print nothing for it.

/// How many bytes at the beginning of `lines` are whole lines that are silent. The next line may
/// still be silent.
std::size_t silentLength(std::string_view lines);

/// What is known of a silent line without parsing it.
enum class LineKind {
    NoEvent, ///< no event
    Event,   ///< an event
    Unclear, ///< only parseEventLine can tell
};

/// The kind of `line`, which must be silent.
LineKind kindOfSilentLine(std::string_view line);

} // namespace eventsviewer
