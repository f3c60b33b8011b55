#include "query/query.h"

#include "catalog/event_names.h"
#include "describe/catalog_list.h"
#include "eventlog/log_files.h"
#include "eventlog/reading_progress.h"
#include "eventlog/terminal.h"
#include "query/event_reading.h"
#include "query/messages.h"
#include "query/search.h"
#include "report/html.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <list>
#include <memory>
#include <vector>

namespace eventsviewer::query {

namespace {

void beginPage(Page& page, const std::list<Found>& found, std::size_t matches,
               const std::string& command)
{
    std::size_t shown = 0;
    for (const Found& one : found) {
        page.expectRow(*one.log, one.line);
        shown += one.matches ? 1 : 0;
    }
    const std::string newest =
        shown < matches ? "The newest " + std::to_string(shown) + " of " : "All ";
    page.begin(output(), command,
               newest + countInWords(matches, "event") + " that the command finds.");
}

void showMerged(Display& display, Merge& merge, const Options& options)
{
    std::list<Found> found = merge.take();
    if (options.reverse) {
        found.reverse();
    }
    Page* const page = display.page();
    if (page != nullptr) {
        beginPage(*page, found, merge.added(), options.command);
    }
    for (const Found& one : found) {
        EventView view(readEvent(*one.log, one.text, one.line)); // not for the first time
        view.at = one.hasTime ? std::string_view(one.at) : "";
        if (page != nullptr) {
            page->addRow(output(), {*one.log, one.line, one.text, view.time(),
                                    std::string(view.name()), view.wholeDetail()});
        }
        display.show(*one.log, one, view);
    }
    if (page != nullptr) {
        Page::end(output());
    }
}

// The range for all logs together. The logs that cannot be opened once more are put into `logs`.
TimeRange commonRange(const Options& options, const std::vector<std::string>& paths,
                      const std::vector<std::string>& labels,
                      std::vector<std::shared_ptr<Log>>& logs)
{
    std::optional<Moment> first;
    std::optional<Moment> last;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto log = std::make_shared<Log>(paths[i], labels[i], nullptr);
        Calendar calendar = readTimes(*log);
        finish(calendar, *log, options.year);
        if (calendar.last()) {
            first = std::min(first.value_or(*calendar.first()), *calendar.first());
            last = std::max(last.value_or(*calendar.last()), *calendar.last());
        }
        if (log->isOnlyHere()) {
            log->reportBy(report);
            logs[i] = log;
        }
    }
    return rangeOf(options.since, options.until, first, last);
}

// Shows also what comes. Returns only after an error.
int followLog(const Options& options)
{
    Display display(options, options.layout);
    const std::string& path = options.logs.front();
    LogFollower follower(path, STDOUT_FILENO);
    const auto log = std::make_shared<Log>(path, follower, report);
    if (searchLog(options, log, display, nullptr, std::nullopt, "", &follower)) {
        std::raise(SIGPIPE); // nobody reads the output
    }
    return kError;
}

} // namespace

int showEvents(const Options& options)
{
    prepareReading();
    if (options.follow) {
        return followLog(options);
    }
    const FoundLogs found = findLogs(options.logs, options.name);
    for (const FoundLogs::Error& error : found.errors) {
        report(safe(error.path + ": " + error.text));
    }
    const std::size_t count = found.paths.size();
    const bool isMergeOfRange = options.merge && options.hasRange();
    startProgress(options.progress, count, found.bytes,
                  1U + (options.hasTimes() ? 1U : 0U) + (isMergeOfRange ? 1U : 0U));
    const std::vector<std::string> labels = distinctParts(found.paths);
    std::vector<std::shared_ptr<Log>> logs(count);
    std::optional<TimeRange> range;
    if (options.merge) {
        range = isMergeOfRange ? commonRange(options, found.paths, labels, logs) : TimeRange();
        if (!isPossible(*range, "")) {
            return kError;
        }
    }
    Layout layout = options.layout;
    for (const std::string& label : labels) {
        layout.logWidth = std::max(layout.logWidth, columnsOf(safe(label)));
    }
    Display display(options, layout);
    Merge merge(options.number ? static_cast<std::size_t>(*options.number) : SIZE_MAX,
                static_cast<std::size_t>(options.context.value_or(0)),
                display.page() != nullptr && count == 1);
    bool failed = !found.errors.empty();
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& path = found.paths[i];
        const auto log = logs[i] != nullptr ? std::move(logs[i])
                                            : std::make_shared<Log>(path, labels[i], report);
        Merge* const target = options.merge ? &merge : nullptr;
        if (Page* const page = display.page()) {
            page->addLog(*log);
        }
        failed = !searchLog(options, log, display, target, range, count > 1 ? path : "") || failed;
        countLog();
    }
    showMerged(display, merge, options);
    hideProgress(false);
    const int status = display.end();
    return failed ? kError : status;
}

int listCatalog(const Options& options)
{
    bool anyFound = false;
    for (const std::int32_t code : knownEventCodes()) {
        const std::string words = catalogWords(code);
        if (options.events.selects(code) && options.text.matches(words)) {
            output() += options.format == Format::Json ? catalogJson(code) + '\n'
                                                       : catalogText(code, words);
            anyFound = true;
        }
    }
    flushOutput();
    return anyFound ? kFound : kNothingFound;
}

} // namespace eventsviewer::query
