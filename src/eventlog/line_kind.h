#pragma once

#include <string_view>

namespace eventsviewer {

/// What can be told of a log line without parsing it.
enum class LineKind {
    NoEvent,    ///< surely carries no event, and parsing it surely prints nothing
    PlainEvent, ///< surely carries an event, and parsing it surely prints nothing
    Unclear,    ///< only parseEventLine can tell
};

LineKind kindOfLine(std::string_view line);

} // namespace eventsviewer
