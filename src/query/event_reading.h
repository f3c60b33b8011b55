#pragma once

#include "eventlog/calendar.h"
#include "eventlog/event_record.h"
#include "eventlog/log.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace eventsviewer::query {

/// Has to be called once before the functions below.
void prepareReading();

/// The event of the line `text`, which is line `line` of `log`; null if it has none. A line whose
/// values are nested too deep is left out, and named on standard error if it `isToReport`.
std::unique_ptr<EventRecord> readEvent(const Log& log, std::string_view text, std::uint64_t line,
                                       bool isToReport = true);

/// Adds the time of `event`, which is on `line`, to `calendar`.
void addTime(Calendar& calendar, std::uint64_t line, const EventRecord& event);

/// The times of the events of `log`, which are read once for that.
Calendar readTimes(Log& log);

/// Finishes `calendar`, which has the times of `log`. The last event is in the year `year`, if that
/// is given.
void finish(Calendar& calendar, const Log& log, std::optional<std::int32_t> year);

/// `times`, to which events of `log` were added since `earlier` was finished, in the same years.
Calendar continued(const Calendar& earlier, const Calendar& times, const Log& log,
                   std::optional<std::int32_t> year);

} // namespace eventsviewer::query
