#pragma once

#include "describe/line_check.h"
#include "eventlog/event_record.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// What is wrong with the line `text`, which gives `event`, or null; nothing if it is as it should
/// be. Without data, the line was too long. If nothing is wrong, what is remarkable in the event is
/// added to `notes`, unless that is null.
std::optional<Finding> findingOfLine(std::string_view text, const EventRecord* event,
                                     std::vector<Note>* notes);

/// The beginning of the line `text`, for a terminal.
std::string beginOf(std::string_view text);

} // namespace eventsviewer
