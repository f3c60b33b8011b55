#pragma once

#include "report/timeline.h"
#include "text/form.h"

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <string_view>

namespace eventsviewer {

class Log;

/// What a page shows of a log.
struct LogOnPage {
    std::string id; ///< what the ids of its rows begin with, such as "e1-"; the line follows
    std::string label;
    std::string path;
    Timeline timeline;
    const Log* log; ///< valid while its lines are added
};

/// Adds what happened to all terminals to `page`, as values for `form`. Links lead to the rows with
/// the ids `rows`, which the page has, or to its list of events.
void addCharts(FormValues& page, std::string_view form, const std::deque<LogOnPage>& logs,
               const EventsAnHour& hours, const std::set<std::string>& rows);

} // namespace eventsviewer
