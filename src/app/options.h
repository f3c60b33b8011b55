#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace eventsviewer {

/// What a run does. The C library's option parser writes it, so it is an integer.
using Action = int;
inline constexpr Action kActionNone = 0;
inline constexpr Action kActionShow = 1;
inline constexpr Action kActionAll = 2;
inline constexpr Action kActionLog = 3;
inline constexpr Action kActionHelp = 4;

/// The settings of one run.
struct Options {
    Action action = kActionNone;
    std::string inputPath = "/common/events_report";
    std::string outputPath = "/tmp/events_report";
    std::size_t count = 10; ///< events to show, at least 1
};

/// The settings that a command line asks for; if an option is given twice the last one wins.
/// Nothing after a usage error, which is reported on standard error. Reorders `argv` as getopt
/// does, and can be called once in a process.
std::optional<Options> parseOptions(int argc, char** argv);

} // namespace eventsviewer
