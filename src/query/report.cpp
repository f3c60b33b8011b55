#include "query/report.h"

#include "query/display.h"
#include "query/messages.h"
#include "timeline/html.h"

#include <algorithm>
#include <set>
#include <string>

namespace eventsviewer::query {

namespace {

constexpr std::string_view kPage =
#include "query/report_page.inc"
    ;
constexpr std::size_t kHeadEnd = kPage.find("<!--row-->");

} // namespace

void Report::addLog(const Log& log)
{
    const std::string& path = log.path().text;
    numbers_[&log] = logs_.size();
    logs_.push_back({'e' + std::to_string(logs_.size() + 1) + '-',
                     log.label().empty() ? path : log.label(), path, Timeline()});
}

void Report::begin([[maybe_unused]] const Options& options, const std::list<Found>& found,
                   std::size_t matches)
{
    std::set<std::string> rows;
    std::size_t shown = 0;
    for (const Found& one : found) {
        rows.insert(logs_[numbers_.at(one.log.get())].id + std::to_string(one.line));
        shown += one.matches ? 1 : 0;
    }
    for (LogOnPage& log : logs_) {
        log.timeline.finish();
    }
    const bool isOne = logs_.size() == 1;
    const std::string newest = "The newest " + std::to_string(shown) + " of ";
    FormValues page = {{"title", isOne ? logs_[0].path : countInWords(logs_.size(), "log")},
                       {"logs", isOne ? "one" : "several"},
#ifdef EVENTS_QUERY_HTML // otherwise no page is written
                       {"command", options.command},
#endif
                       {"shown", (shown < matches ? newest : "All ") +
                                     countInWords(matches, "event") + " that the command finds."}};
    addCharts(page, kPage, logs_, hours_, rows);
    fillForm(output(), kPage.substr(0, kHeadEnd), page, html);
}

void Report::addRow(const Found& found, const EventView& view) const
{
    const LogOnPage& log = logs_[numbers_.at(found.log.get())];
    const auto [file, line] = found.log->placeOf(found.line);
    fillForm(output(), partOf(kPage, "row"),
             {{"id", log.id + std::to_string(found.line)},
              {"time", view.time()},
              {"label", log.label},
              {"name", std::string(view.name())},
              {"detail", view.wholeDetail()},
              {"place", file->text + ", line " + std::to_string(line)},
              {"line", found.text}},
             html);
}

void Report::end()
{
    fillForm(output(), kPage.substr(kHeadEnd), {}, html);
}

} // namespace eventsviewer::query
