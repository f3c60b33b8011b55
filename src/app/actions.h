#pragma once

#include "app/options.h"

#include <cstddef>
#include <string>

namespace eventsviewer {

/// What the entry point returns; the shell sees the second as 255.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitUsageError = -1;

/// The table of the newest `count` events of the log at `inputPath`. May print JSON diagnostics on
/// std::cout.
std::string recentEventsTable(const std::string& inputPath, std::size_t count);

/// Carries out the action of `options`; the help page calls the program `programName`. Returns the
/// status of the run: a failed export and a missing action are successes too.
int runAction(const Options& options, const char* programName);

} // namespace eventsviewer
