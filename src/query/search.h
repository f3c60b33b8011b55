#pragma once

#include "eventlog/time_bound.h"
#include "query/display.h"
#include "query/merge.h"

#include <memory>
#include <optional>
#include <string>

namespace eventsviewer::query {

/// Looks in one log for the events that `options` ask for. Adds them to `merge`, if there is one,
/// else shows them on `display`. Takes the events in `range`, or, without one, in the range that
/// the options give for this log. Returns false after an error; `path` names the log then.
bool searchLog(const Options& options, const std::shared_ptr<Log>& log, Display& display,
               Merge* merge, const std::optional<TimeRange>& range, const std::string& path);

/// Like searchLog for a log that goes on; shows what comes at once. Returns only after an error.
bool followLog(const Options& options, Display& display);

} // namespace eventsviewer::query
