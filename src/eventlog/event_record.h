#pragma once

#include "text/shared_text.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace eventsviewer {

/// One event of the log.
struct EventRecord {
    EventRecord(std::int32_t eventCode, std::string timeText, SharedText eventDetails)
        : details(std::move(eventDetails)), code(eventCode), time(std::move(timeText))
    {
    }
    EventRecord(const EventRecord&) = delete;
    EventRecord& operator=(const EventRecord&) = delete;

    std::int32_t reserved = 0; ///< always 0; a field of the fixed form that others may use
    SharedText details;        ///< the variables ("vars" in the log) as compact JSON, "{}" at least
    std::int32_t code;
    std::string time; ///< as the log has it, never parsed; may be empty
};

/// The events of a run, oldest first.
using EventStore = std::deque<std::unique_ptr<EventRecord>>;

} // namespace eventsviewer
