#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace eventsviewer {

/// The files that may hold the log `path`, oldest first: for L these are L.0.gz, L.0, L.gz and L.
/// "-" is standard input and has no other file.
std::vector<std::string> fileNamesOf(const std::string& path);

/// What findLogs has found.
struct FoundLogs {
    struct Error {
        std::string path;
        std::string text;
    };
    std::vector<std::string> paths;
    std::uint64_t bytes = 0;   ///< of all their files
    std::vector<Error> errors; ///< of the folders that could not be searched, or had no log
};

/// The logs at `paths`, in their order. In place of a folder come the logs below it whose names
/// match the shell pattern `name`, in the order of their names. A log whose files all belong to
/// other logs as well is left out; one without files stays.
FoundLogs findLogs(const std::vector<std::string>& paths, const std::string& name);

/// What tells each path from the others, all of which differ: as many of its last names as that
/// takes, without those at the end that all paths have in common.
std::vector<std::string> distinctParts(const std::vector<std::string>& paths);

} // namespace eventsviewer
