#include "query/event_reading.h"

#include "describe/variables.h"
#include "eventlog/event_line.h"
#include "eventlog/silent_lines.h"
#include "jsonaccess/diagnostics.h"
#include "jsonaccess/json_access.h"
#include "query/messages.h"

#include <cstring>
#include <exception>

namespace eventsviewer::query {

namespace {

constexpr std::int32_t kClockSet = 1227;      // the event that reports a set clock
constexpr Moment kMostAhead = 14 * kDay / 24; // of the terminal's clock, far to the east

struct TooDeep {};

// Called while the library's exception is handled.
[[noreturn]] void throwTooDeep()
{
    try {
        throw;
    } catch (const std::exception& error) {
        if (std::strstr(error.what(), "allocate") != nullptr) {
            endOutOfMemory();
        }
    }
    throw TooDeep();
}

} // namespace

void prepareReading()
{
    jsonaccess::captureDiagnostics();
    jsonaccess::setRuntimeErrorHandler(throwTooDeep);
}

std::unique_ptr<EventRecord> readEvent(const Log& log, std::string_view text, std::uint64_t line,
                                       bool isToReport)
{
    try {
        return parseEventLine(text);
    } catch (const TooDeep&) {
        if (isToReport) {
            log.reportLine(line, "values nested more than 1000 levels deep; left out");
        }
        return nullptr;
    }
}

void addTime(Calendar& calendar, std::uint64_t line, const EventRecord& event)
{
    if (event.code == kClockSet) {
        const Variables variables({event.details.characters(), event.details.length()});
        if (variables.isText("old_time") && variables.isText("new_time")) {
            calendar.addClockSet(line, event.time, variables.text("new_time"));
            return;
        }
    }
    calendar.add(line, event.time);
}

Calendar readTimes(Log& log)
{
    Calendar calendar;
    log.keepForReadingAgain();
    const auto readTime = [&log, &calendar](std::string_view text, std::uint64_t line) {
        const auto time = calendar.mayBeUnset() ? std::nullopt : timeAtAGlance(text);
        if (time) {
            calendar.add(line, *time);
            if (!calendar.mayBeUnset()) {
                return;
            }
        }
        if (const auto event = readEvent(log, text, line, false)) {
            addTime(calendar, line, *event);
            jsonaccess::takeDiagnostics(); // they come again when the event is shown
        }
    };
    log.read(readTime, [] {});
    return calendar;
}

void finish(Calendar& calendar, const Log& log, std::optional<std::int32_t> year)
{
    calendar.finish(year, log.changed() + kMostAhead);
}

Calendar continued(const Calendar& earlier, const Calendar& times, const Log& log,
                   std::optional<std::int32_t> year)
{
    Calendar calendar = times;
    if (earlier.last()) {
        calendar.finishAs(earlier);
    } else {
        finish(calendar, log, year);
    }
    return calendar;
}

} // namespace eventsviewer::query
