#include "query/report.h"

#include "eventlog/escapes.h"
#include "query/display.h"
#include "query/event_reading.h"
#include "query/messages.h"
#include "text/form.h"
#include "timeline/chart.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace eventsviewer::query {

namespace {

constexpr std::string_view kPage =
#include "query/report_page.inc"
    ;

void append(std::string& out, std::string_view part, const FormValues& values)
{
    fillForm(out, partOf(kPage, part), values, html);
}

std::string all(std::string_view part, const std::vector<FormValues>& rows)
{
    std::string out;
    for (const FormValues& values : rows) {
        append(out, part, values);
    }
    return out;
}

std::string rangeInWords(std::optional<Moment> first, std::optional<Moment> last)
{
    return first ? timeInWords(first) + " to " + timeInWords(last) : "no event has a known time";
}

std::string labelOf(const Log& log)
{
    return log.label().empty() ? log.path().text : log.label();
}

} // namespace

void Report::write(const Options& options, const std::vector<Found>& found, std::size_t matches)
{
    constexpr std::size_t kMuchOutput = 65536;
    std::string& out = output();
    std::map<const Log*, std::string> ids; // what the rows of a log begin with
    std::optional<Moment> first;
    std::optional<Moment> last;
    std::uint64_t events = 0;
    for (auto& [log, timeline] : logs_) {
        ids[log.get()] = 'e' + std::to_string(ids.size() + 1) + '-';
        timeline.finish();
        events += timeline.events();
        if (timeline.first()) {
            first = std::min(first.value_or(*timeline.first()), *timeline.first());
            last = std::max(last.value_or(*timeline.last()), *timeline.last());
        }
    }
    std::set<std::string> rows;
    for (const Found& one : found) {
        rows.insert(ids[one.log.get()] + std::to_string(one.line));
    }
    const Axis axis(first.value_or(0), last.value_or(0));
    std::string terminals;
    std::string outages;
    std::size_t times = 0;
    std::size_t leftOut = 0;
    Moment length = 0;
    for (const auto& [log, timeline] : logs_) {
        const std::string& id = ids[log.get()];
        const auto target = [&rows, &id](std::uint64_t line) {
            const auto row = rows.find(id + std::to_string(line));
            return row != rows.end() ? *row : "events";
        };
        std::string bands;
        for (const NetworkBand& band : timeline.bands().bands()) {
            FormValues values = bandInWords(band);
            values.insert(values.end(), {{"row", target(band.firstLine)},
                                         {"end", target(band.lastLine)},
                                         {"id", id},
                                         {"from", std::to_string(band.firstLine)},
                                         {"to", std::to_string(band.lastLine)},
                                         {"label", labelOf(*log)}});
            if (band.since && band.until) {
                const Moment drawn = std::max<Moment>(0, *band.until - *band.since);
                values.insert(values.end(), {{"x", axis.placeOf(*band.since)},
                                             {"width", axis.percentOf(drawn)}});
                append(bands, "band", values);
            }
            const bool isOut = band.state == NetworkState::Out;
            times += isOut ? 1 : 0;
            length += isOut ? band.length().value_or(0) : 0;
            if (isOut || (band.state == NetworkState::NotKnown && band.length() != 0)) {
                append(outages, "outage", values);
            }
        }
        leftOut += timeline.bands().leftOut();
        append(terminals, "terminal",
               {{"label", labelOf(*log)},
                {"path", log->path().text},
                {"range", rangeInWords(timeline.first(), timeline.last())},
                {"events", countInWords(timeline.events(), "event")},
                {"band", bands}});
    }
    const auto shown = static_cast<std::size_t>(std::count_if(
        found.begin(), found.end(), [](const Found& one) { return one.matches; }));
    const FormValues page = {
        {"title", logs_.size() == 1 ? logs_[0].first->path().text
                                    : countInWords(logs_.size(), "log")},
        {"logs", logs_.size() == 1 ? "one" : "several"},
        {"sum", times == 0 ? "No event says that a terminal was out of network."
                           : "Out of network " + countInWords(times, "time") + ", for " +
                                 lengthInWords(length) + " in all."},
        {"range", rangeInWords(first, last)},
        {"events", std::to_string(events)},
        {"command", options.command},
        {"scale", axis.scale(hours_)},
        {"hour", all("hour", axis.bars(hours_))},
        {"tick", first ? all("tick", axis.ticks()) : ""},
        {"terminal", terminals},
        {"outage", outages},
        {"left", leftOut == 0 ? "" : "Older ones are left out: " + std::to_string(leftOut) + '.'},
        {"shown", (shown < matches ? "The newest " + std::to_string(shown) + " of " : "All ") +
                      countInWords(matches, "event") + " that the command chooses."}};
    const std::string_view row = partOf(kPage, "row"); // begins after the mark of the part
    const std::string_view mark = "<!--row-->";
    fillForm(out, kPage.substr(0, kPage.find(mark)), page, html);
    for (const Found& one : found) {
        EventView view(readEvent(*one.log, one.text, one.line)); // not for the first time
        const auto [file, line] = one.log->placeOf(one.line);
        fillForm(out, row,
                 {{"id", ids[one.log.get()] + std::to_string(one.line)},
                  {"time", view.time()},
                  {"label", labelOf(*one.log)},
                  {"name", std::string(view.name())},
                  {"detail", view.wholeDetail()},
                  {"place", file->text + ", line " + std::to_string(line)},
                  {"line", one.text}},
                 html);
        takeDiagnostics(); // Display reports them
        if (out.size() > kMuchOutput) {
            flushOutput();
        }
    }
    fillForm(out, kPage.substr(kPage.find(mark)), page, html);
}

} // namespace eventsviewer::query
