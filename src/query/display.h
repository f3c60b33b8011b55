#pragma once

#include "eventlog/log.h"
#include "query/check.h"
#include "query/counts.h"
#include "query/event_view.h"
#include "query/options.h"
#include "report/page.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace eventsviewer::query {

/// Where an event is in its log.
struct Place {
    std::uint64_t line = 0;
    std::uint64_t event = 0; ///< how many events come before it
    bool matches = false;    ///< or it is only near one that does
};

/// A line that is held because its event is or may be shown.
struct Found : Place {
    std::string text;

    // Only of an event that is merged with those of other logs:
    std::shared_ptr<const Log> log;
    std::string at;       ///< its time, or that of the event before it
    bool hasTime = false; ///< whether it is its own
};

/// The output of a run.
class Display {
public:
    Display(const Options& options, const Layout& layout);

    /// What the events are added to if they are counted; has no key if they are shown.
    Counts& counts() { return counts_; }

    /// What the lines are added to if they are checked.
    Check& check() { return check_; }

    /// Has to be called before the events of a log, or of all merged logs. Shows what comes before
    /// all events, unless it is shown already.
    void begin();

    /// Shows the event at `place` in `log`. `view` has its time.
    void show(const Log& log, const Place& place, EventView& view);

    /// Whether an event that matches was shown.
    bool anyFound() const { return anyFound_; }

    /// Shows what comes after all events. Returns the status of the run.
    int end();

    /// The page that is shown; null in other formats.
    Page* page() { return options_.isPage() ? page_.data() : nullptr; }

private:
    const Options& options_;
    std::string& output_;
    Layout layout_;
    Counts counts_;
    Check check_;
    bool hasBegun_ = false;
    bool anyFound_ = false;
    bool anyShown_ = false;
    const Log* lastLog_ = nullptr; // null at the beginning of a log
    std::uint64_t lastEvent_ = 0;
    std::array<Page, kHasPages ? 1 : 0> page_;
};

} // namespace eventsviewer::query
