#include "render/log_export.h"

#include "eventlog/event_log.h"
#include "render/event_table.h"

#include <algorithm>
#include <cstdint>
#include <fstream>

namespace eventsviewer {

std::string allEventsTable(const std::string& inputPath)
{
    const EventStore events = loadAllEvents(inputPath);
    return renderEventTable(
        events, static_cast<std::uint32_t>(std::min<std::size_t>(events.size(), UINT32_MAX)));
}

void saveEventTable(const std::string& inputPath, const std::string& outputPath)
{
    std::ofstream file(outputPath);
    if (!file.good()) {
        return;
    }
    // cppcheck-suppress stlcstrStream // the same characters that puts would print
    file << allEventsTable(inputPath).c_str();
}

} // namespace eventsviewer
