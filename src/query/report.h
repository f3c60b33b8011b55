#pragma once

#include "eventlog/event_record.h"
#include "query/options.h"
#include "timeline/charts.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <string_view>

namespace eventsviewer {

class Log;

namespace query {

class EventView;
struct Found;

/// A page that shows what happened; report/page.html is its form.
class Report {
public:
    /// Has to be called before the events of a log.
    void addLog(const Log& log);

    /// Adds an event, whether it matches or not. `at` is its time with the year, empty if that is
    /// not known.
    void addEvent(const EventRecord& event, std::uint64_t line, std::string_view at)
    {
        logs_.back().timeline.add(event, line, at, hours_);
    }

    /// Adds the page up to its rows to the output. `found` are the newest of `matches` events.
    void begin(const Options& options, const std::list<Found>& found, std::size_t matches);

    /// Adds the row of an event that was found.
    void addRow(const Found& found, const EventView& view) const;

    /// Adds what comes after the rows.
    static void end();

private:
    std::deque<LogOnPage> logs_;
    std::map<const Log*, std::size_t> numbers_; // in logs_
    EventsAnHour hours_;
};

} // namespace query
} // namespace eventsviewer
