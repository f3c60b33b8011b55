#pragma once

#include "eventlog/event_record.h"
#include "query/options.h"
#include "timeline/timeline.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer::query {

class Log;
struct Found;

/// A page that shows what happened; report/page.html is its form.
class Report {
public:
    /// Has to be called before the events of a log.
    void begin(std::shared_ptr<Log> log) { logs_.push_back({std::move(log), {}}); }

    /// Adds an event, whether it matches or not. `at` is its time with the year, empty if that is
    /// not known.
    void add(const EventRecord& event, std::uint64_t line, std::string_view at)
    {
        logs_.back().second.add(event, line, at, hours_);
    }

    /// Adds the page to the output. `found` are the newest of `matches` events, in any order.
    void write(const Options& options, const std::vector<Found>& found, std::size_t matches);

private:
    std::deque<std::pair<std::shared_ptr<Log>, Timeline>> logs_;
    EventsAnHour hours_;
};

} // namespace eventsviewer::query
