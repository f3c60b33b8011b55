#include "render/log_export.h"

#include "eventlog/event_log.h"
#include "render/event_table.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <utility>

namespace eventsviewer {

std::string allEventsTable(const std::string& inputPath)
{
    EventStore events = loadAllEvents(inputPath);
    const std::size_t count = std::min<std::size_t>(events.size(), UINT32_MAX);
    return renderEventTable(std::move(events), static_cast<std::uint32_t>(count));
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
