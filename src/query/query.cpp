#include "query/query.h"

#include "eventlog/escapes.h"
#include "eventlog/log_files.h"
#include "eventlog/reading_progress.h"
#include "query/event_reading.h"
#include "query/messages.h"
#include "query/search.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace eventsviewer::query {

namespace {

void showMerged(Display& display, Merge& merge, const Options& options)
{
    std::vector<Found> found = merge.take();
    if (options.reverse) {
        std::reverse(found.begin(), found.end());
    }
    Report* const report = display.report();
    if (report != nullptr) {
        report->begin(options, found, merge.added());
    }
    for (const Found& one : found) {
        EventView view(readEvent(*one.log, one.text, one.line)); // not for the first time
        view.at = one.hasTime ? std::string_view(one.at) : "";
        if (report != nullptr) {
            report->addRow(one, view);
        }
        display.show(*one.log, one, view);
    }
    if (report != nullptr) {
        Report::end();
    }
}

// The range for all logs together. The logs that cannot be opened once more are put into `logs`.
TimeRange commonRange(const Options& options, const std::vector<std::string>& paths,
                      std::vector<std::shared_ptr<Log>>& logs)
{
    std::optional<Moment> first;
    std::optional<Moment> last;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto log = std::make_shared<Log>(paths[i], "", true);
        Calendar calendar = readTimes(*log);
        finish(calendar, *log, options.year);
        if (calendar.last()) {
            first = std::min(first.value_or(*calendar.first()), *calendar.first());
            last = std::max(last.value_or(*calendar.last()), *calendar.last());
        }
        if (log->isOnlyHere()) {
            log->endSilence();
            logs[i] = log;
        }
    }
    return rangeOf(options.since, options.until, first, last);
}

} // namespace

int showEvents(const Options& options)
{
    prepareReading();
    if (options.follow) {
        Display display(options, options.layout);
        followLog(options, display);
        return kError;
    }
    const FoundLogs found = findLogs(options.logs, options.name);
    for (const FoundLogs::Error& error : found.errors) {
        report(safe(error.path) + ": " + error.text);
    }
    const std::size_t count = found.paths.size();
    const bool isMergeOfRange = options.merge && options.hasRange();
    startProgress(options.progress, count, found.bytes,
                  1U + (options.hasTimes() ? 1U : 0U) + (isMergeOfRange ? 1U : 0U));
    std::vector<std::shared_ptr<Log>> logs(count);
    std::optional<TimeRange> range;
    if (options.merge) {
        range = isMergeOfRange ? commonRange(options, found.paths, logs) : TimeRange();
        if (!isPossible(*range, "")) {
            return kError;
        }
    }
    const std::vector<std::string> labels = distinctParts(found.paths);
    Layout layout = options.layout;
    for (const std::string& label : labels) {
        layout.logWidth = std::max(layout.logWidth, columnsOf(safe(label)));
    }
    Display display(options, layout);
    Merge merge(options.number ? static_cast<std::size_t>(*options.number) : SIZE_MAX,
                static_cast<std::size_t>(options.context.value_or(0)),
                display.report() != nullptr && count == 1);
    bool failed = !found.errors.empty();
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& path = found.paths[i];
        const auto log =
            logs[i] != nullptr ? std::move(logs[i]) : std::make_shared<Log>(path, labels[i]);
        Merge* const target = options.merge ? &merge : nullptr;
        if (Report* const report = display.report()) {
            report->addLog(*log);
        }
        failed = !searchLog(options, log, display, target, range, count > 1 ? path : "") || failed;
        countLog();
    }
    showMerged(display, merge, options);
    hideProgress(false);
    flushOutput();
    return failed ? kError : display.anyFound() ? kFound : kNothingFound;
}

} // namespace eventsviewer::query
