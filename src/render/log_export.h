#pragma once

#include <string>

namespace eventsviewer {

/// The table of every event of the log at `inputPath`. May print JSON diagnostics on std::cout.
std::string allEventsTable(const std::string& inputPath);

/// Writes allEventsTable(inputPath) into the file at `outputPath`, which is created or truncated
/// before the log is read. Does not report whether that worked.
void saveEventTable(const std::string& inputPath, const std::string& outputPath);

} // namespace eventsviewer
