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
/// the options give for this log. Returns false after an error; `path` names the log then. With a
/// `follower` it shows what comes as well, up to an error or until nobody reads the output.
bool searchLog(const Options& options, const std::shared_ptr<Log>& log, Display& display,
               Merge* merge, const std::optional<TimeRange>& range, const std::string& path,
               LogFollower* follower = nullptr);

} // namespace eventsviewer::query
