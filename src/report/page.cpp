#include "report/page.h"

#include "report/html.h"
#include "report/line_finding.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace eventsviewer {

namespace {

constexpr std::size_t kMostFindings = 1000;
constexpr std::string_view kPage =
#include "report/page.inc"
    ;
constexpr std::size_t kHeadEnd = kPage.find("<!--row-->");

std::string placeOf(const Log& log, std::uint64_t line)
{
    const auto [file, number] = log.placeOf(line);
    return file->text + ", line " + std::to_string(number);
}

// The labels of the first logs, and how many more there are.
std::string labelsOf(const std::deque<LogOnPage>& logs)
{
    constexpr std::size_t kMostLabels = 20;
    std::string labels;
    for (std::size_t i = 0; i < std::min(logs.size(), kMostLabels); ++i) {
        labels += (i == 0 ? "" : ", ") + logs[i].label;
    }
    return logs.size() <= kMostLabels
               ? labels
               : labels + " and " + std::to_string(logs.size() - kMostLabels) + " more";
}

} // namespace

void Page::addLog(const Log& log)
{
    const std::string path = log.path().text == "-" ? "standard input" : log.path().text;
    numbers_[&log] = logs_.size();
    logs_.push_back({'e' + std::to_string(logs_.size() + 1) + '-',
                     log.label().empty() ? path : log.label(), path, Timeline(), &log});
}

void Page::addLine(std::uint64_t line, std::string_view text, const EventRecord* event,
                   std::string_view at)
{
    LogOnPage& log = logs_.back();
    if (event != nullptr) {
        log.timeline.add(*event, line, at, hours_);
    }
    if (const std::optional<Finding> finding = findingOfLine(text, event, nullptr)) {
        ++findings_;
        newestFindings_.push_back(
            {log.id + std::to_string(line), placeOf(*log.log, line),
             std::string(finding->kind) + ": " + finding->effect + ": " + beginOf(text)});
        if (newestFindings_.size() > kMostFindings) {
            newestFindings_.pop_front();
        }
    }
}

void Page::begin(std::string& out, const std::string& command, const std::string& shown)
{
    for (LogOnPage& log : logs_) {
        log.timeline.finish();
    }
    std::string findings;
    for (const auto& [row, place, text] : newestFindings_) {
        const bool isShown = rows_.find(row) != rows_.end();
        fillForm(findings, partOf(kPage, "finding"),
                 {{"row", isShown ? row : "findings"}, {"place", place}, {"text", text}}, html);
    }
    const bool isOne = logs_.size() == 1;
    const std::string number = std::to_string(findings_);
    FormValues page = {{"title", isOne ? logs_[0].path : countInWords(logs_.size(), "log")},
                       {"logs", isOne ? "one" : "several"},
                       {"labels", labelsOf(logs_)},
                       {"command", command},
                       {"shown", shown},
                       {"findings", number},
                       {"finding", findings},
                       {"damage", findings_ == 0 ? "No line is damaged."
                                  : findings_ > kMostFindings
                                      ? "The newest 1000 of " + number + '.'
                                      : "What is wrong with the lines of the log, and "
                                        "what that does to their events."}};
    addCharts(page, kPage, logs_, hours_, rows_);
    fillForm(out, kPage.substr(0, kHeadEnd), page, html);
}

void Page::addRow(std::string& out, const PageRow& row) const
{
    fillForm(out, partOf(kPage, "row"),
             {{"id", idOf(row.log, row.line)},
              {"time", row.time},
              {"label", logs_[numbers_.at(&row.log)].label},
              {"name", row.name},
              {"detail", row.detail},
              {"place", placeOf(row.log, row.line)},
              {"line", std::string(row.text)}},
             html);
}

void Page::end(std::string& out)
{
    fillForm(out, kPage.substr(kHeadEnd), {}, html);
}

} // namespace eventsviewer
