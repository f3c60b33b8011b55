#pragma once

#include "eventlog/log.h"
#include "report/charts.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace eventsviewer {

/// A row of a page: an event that was found.
struct PageRow {
    const Log& log;
    std::uint64_t line; ///< of the log, from 0 on
    std::string_view text;
    std::string time;
    std::string name;
    std::string detail;
};

/// A page that shows what happened; page.html is its form.
class Page {
public:
    /// Has to be called before the lines of a log.
    void addLog(const Log& log);

    /// Adds a line, whether its event matches or not, which may be null. `at` is the time of the
    /// event with its year, empty if that is not known. May print JSON diagnostics on std::cout.
    void addLine(std::uint64_t line, std::string_view text, const EventRecord* event,
                 std::string_view at);

    /// Has to be called for each row before the page begins: links lead to it.
    void expectRow(const Log& log, std::uint64_t line) { rows_.insert(idOf(log, line)); }

    /// Adds the page up to its rows to `out`. Says in words what `command` made it, and which of
    /// the events are `shown`.
    void begin(std::string& out, const std::string& command, const std::string& shown);

    /// Adds a row.
    void addRow(std::string& out, const PageRow& row) const;

    /// Adds what comes after the rows.
    static void end(std::string& out);

private:
    struct FindingOnPage {
        std::string row; // its id
        std::string place;
        std::string text;
    };

    std::string idOf(const Log& log, std::uint64_t line) const
    {
        return logs_[numbers_.at(&log)].id + std::to_string(line);
    }

    std::deque<LogOnPage> logs_;
    std::map<const Log*, std::size_t> numbers_; // in logs_
    EventsAnHour hours_;
    std::uint64_t findings_ = 0;
    std::deque<FindingOnPage> newestFindings_;
    std::set<std::string> rows_;
};

} // namespace eventsviewer
