#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
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

// The same for lines that need not be silent. What is told is what parseEventLine would give.

/// What a look at a line tells.
struct Glance {
    LineKind kind = LineKind::Unclear;
    std::int32_t code = 0; ///< of an event
};

/// What is known of `line` without parsing it.
Glance glanceAt(std::string_view line);

/// The time of the event of `line`, or nothing if only parseEventLine can tell.
std::optional<std::string_view> timeAtAGlance(std::string_view line);

} // namespace eventsviewer
