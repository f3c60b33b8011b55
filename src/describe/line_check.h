#pragma once

#include "describe/variables.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

struct Description;

/// What a line gives, damaged or not.
struct LineEvent {
    std::int32_t code;
    std::string_view time;
    const Variables& variables;
    const Description* description; ///< null if there is none
};

/// What is wrong with a line: a kind such as "cut off", and what that does to the event.
struct Finding {
    const char* kind;
    std::string effect;
};

/// The first thing that is wrong with a line whose object is `object`, which begins at the first
/// brace and goes on to the end of the line; `event` is what it gives, or null. Nothing if a strict
/// parser would read the object, and its members are what a log has.
std::optional<Finding> findingOf(std::string_view object, const LineEvent* event);

/// What is remarkable in an event without being wrong: a kind such as "unknown reason", and a
/// value.
struct Note {
    const char* kind;
    std::string value;
};

/// The notes for an event that has no finding.
std::vector<Note> notesOf(const LineEvent& event);

} // namespace eventsviewer
