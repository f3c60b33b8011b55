#pragma once

#include "catalog/event_filter.h"
#include "eventlog/time_bound.h"
#include "query/counts.h"
#include "query/writers.h"
#include "text/text_filter.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace eventsviewer::query {

/// What a run does.
enum class Action { ShowEvents, CheckLogs, ListCatalog, ShowHelp, ShowVersion };

/// The settings of one run.
struct Options {
    Action action = Action::ShowEvents;
    std::vector<std::string> logs = {"/common/events_report"}; ///< where the terminal writes it
    std::string name = "events_report";                        ///< of a log in a folder
    EventFilter events;
    TextFilter text;
    std::optional<TimeBound> since;
    std::optional<TimeBound> until;
    std::optional<std::int32_t> year;
    std::optional<std::int32_t> number;  ///< at least 1
    std::optional<std::int32_t> context; ///< at least 0
    bool reverse = false;
    bool merge = false;
    bool follow = false;
    bool progress = false;
    std::vector<CountKey> count; ///< shown instead of the events unless it is empty
    Format format = Format::Table;
    std::string colour = "auto";
    Layout layout;
    std::string command; ///< the command line, for a shell; only with pages

    /// Whether times are asked for.
    bool hasRange() const { return since || until; }

    /// Whether the events are shown on a page.
    bool isPage() const { return format == Format::Html; }

    /// Whether the years of each log are needed.
    bool hasTimes() const
    {
        const bool isData = format == Format::Csv || format == Format::Json;
        return hasRange() || merge || action == Action::CheckLogs ||
               (count.empty() ? isData : std::any_of(count.begin(), count.end(), isTime));
    }
};

/// The settings that a command line asks for. A usage error is reported on standard error and ends
/// the process. Reorders `argv` as getopt does, and can be called once in a process.
Options parseOptions(int argc, char** argv);

} // namespace eventsviewer::query
