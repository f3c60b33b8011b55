#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace eventsviewer {

/// Starts to show on standard error how far the reading has come, in a line that is written over:
///
///     12 of 300 logs, 4512 of 30000 kB: logs/4417/events_report
///
/// All `logs` are read `times` times, and have `bytes` bytes. If the line `isWanted` it is shown at
/// once, else only on a terminal and after two seconds.
void startProgress(bool isWanted, std::size_t logs, std::uint64_t bytes, unsigned times);

/// Counts `bytes` more, which were read of `file`, and shows how far that is. `file` has to be
/// safe.
void showProgress(const std::string& file, std::uint64_t bytes);

/// Counts a log as done, after its last reading.
void countLog();

/// Takes the line away before something else is written. If `isOutput`, it does not come back
/// where it would be in the way of the output.
void hideProgress(bool isOutput);

} // namespace eventsviewer
