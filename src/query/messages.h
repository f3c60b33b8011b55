#pragma once

#include "eventlog/time_bound.h"

#include <optional>
#include <string>

namespace eventsviewer::query {

/// The statuses of a run.
constexpr int kFound = 0;
constexpr int kNothingFound = 1;
constexpr int kError = 2;

/// Prints one line on standard error that begins with "events-query: ". What was buffered for
/// standard output is written first. What comes from outside has to be safe. Nothing without a
/// message.
void report(const std::string& message);

/// Whether there can be events in `range`. If not, says so, of `log` if that is given.
bool isPossible(const TimeRange& range, const std::string& log);

/// Says so if `range` lies outside a log with events from `first` to `last`, or without any.
void explainNothing(const TimeRange& range, std::optional<Moment> first,
                    std::optional<Moment> last);

/// Says that the memory is exhausted and ends the process with kError.
[[noreturn]] void endOutOfMemory();

/// What goes to standard output, for the writers to append to.
std::string& output();

/// Writes the output. If that fails, says so and ends the process with kError.
void flushOutput();

} // namespace eventsviewer::query
