#pragma once

#include <cstddef>
#include <string_view>

namespace eventsviewer {

// A log line is quiet if parseEventLine surely prints nothing for it and surely returns.

/// How many bytes at the beginning of `lines` are whole lines that are quiet. Where it stops, the
/// next line may be quiet all the same.
std::size_t quietLength(std::string_view lines);

/// What can be told of a quiet line without parsing it.
enum class LineKind {
    NoEvent, ///< surely carries no event
    Event,   ///< surely carries an event
    Unclear, ///< only parseEventLine can tell
};

/// The kind of `line`, which must be quiet.
LineKind kindOfQuietLine(std::string_view line);

} // namespace eventsviewer
