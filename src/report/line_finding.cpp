#include "report/line_finding.h"

#include "describe/describe_event.h"
#include "eventlog/lines.h"
#include "eventlog/terminal.h"

#include <algorithm>
#include <cstddef>

namespace eventsviewer {

std::optional<Finding> findingOfLine(std::string_view text, const EventRecord* event,
                                     std::vector<Note>* notes)
{
    constexpr std::string_view kOuter("\r\0 \t", 4);
    if (text.data() == nullptr) {
        return Finding{"too long", "no event is shown"};
    }
    const std::string_view object = text.substr(std::min(firstBrace(text), text.size()));
    if (event == nullptr) {
        const bool areZeros = text.find_first_not_of(kOuter) == std::string_view::npos &&
                              text.find('\0') != std::string_view::npos;
        return areZeros ? std::nullopt : findingOf(object, nullptr);
    }
    const Variables variables({event->details.characters(), event->details.length()});
    const LineEvent given = {event->code, event->time, variables, findDescription(event->code)};
    std::optional<Finding> finding = findingOf(object, &given);
    if (!finding && notes != nullptr) {
        *notes = notesOf(given);
    }
    return finding;
}

std::string beginOf(std::string_view text)
{
    constexpr std::size_t kMostBytes = 60;
    return safe(text.substr(0, kMostBytes)) + (text.size() > kMostBytes ? "..." : "");
}

} // namespace eventsviewer
