#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace eventsviewer::reference {

// The tool's whole job in the plainest way: every line through a string stream and a reader built
// for it, every value copied, every table through a string stream. It shares nothing with the real
// modules but the constant tables, and is what their output is compared with.

/// As recentEventsTable of the program: the table of the newest `count` events, with the same
/// diagnostics on std::cout on the way.
std::string recentEventsTable(const std::string& inputPath, std::size_t count);

/// As allEventsTable of the program.
std::string allEventsTable(const std::string& inputPath);

/// As describeEvent of the program.
std::string describeEvent(std::int32_t code, const std::string& details);

} // namespace eventsviewer::reference
