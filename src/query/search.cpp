#include "query/search.h"

#include "eventlog/silent_lines.h"
#include "eventlog/terminal.h"
#include "jsonaccess/diagnostics.h"
#include "query/event_reading.h"
#include "query/messages.h"

#include <algorithm>
#include <cstdint>
#include <list>
#include <utility>

namespace eventsviewer::query {

namespace {

// Looks through one log.
class Query {
public:
    // What is found is added to `merge`, if there is one, else shown on `display`.
    Query(const Options& options, std::shared_ptr<Log> log, Display& display, Merge* merge)
        : options_(options), log_(std::move(log)), display_(display), merge_(merge)
    {
    }
    bool run(const std::optional<TimeRange>& range, const std::string& path, LogFollower* follower);

private:
    void endHolding();
    bool isNew(std::uint64_t line) const { return line >= known_; }
    bool isInRange(std::uint64_t line, std::string_view time);
    void check(std::string_view text, std::uint64_t line);
    void look(std::string_view text, std::uint64_t line, const Glance& glance);
    void collect(const Place& place, std::string_view text, EventView* view);
    void showHeld(Found found);
    void show(const Place& place, EventView& view);

    const Options& options_;
    std::shared_ptr<Log> log_;
    Display& display_;
    Merge* merge_;
    Calendar calendar_;
    // To know what is found; hasTimes_ only to show it.
    const bool needsTimes_ = options_.hasRange() || merge_ != nullptr;
    const bool hasTimes_ = options_.hasTimes();
    // All that is found, up to the end.
    bool holds_ = (options_.number || options_.reverse) && merge_ == nullptr;
    const std::size_t context_ = static_cast<std::size_t>(options_.context.value_or(0));
    TimeRange range_;
    std::string lastAt_; // of the last event with a time
    bool lastHasTime_ = false;
    std::list<Found> held_;
    std::list<std::uint64_t> matches_; // the events in held_ that match
    std::list<Found> candidates_;      // shown only if a match follows
    std::size_t after_ = 0;            // how many events more are shown after a match
    std::uint64_t events_ = 0;
    // Only of a log that goes on:
    Calendar times_;                   // calendar_ before it was finished
    std::uint64_t known_ = UINT64_MAX; // of lines from this one on calendar_ lacked the times
};

bool Query::run(const std::optional<TimeRange>& range, const std::string& path,
                LogFollower* follower)
{
    if (hasTimes_) {
        calendar_ = times_ = readTimes(*log_);
        finish(calendar_, *log_, options_.year);
        const std::uint64_t last = std::max<std::uint64_t>(log_->lines(), 1) - 1;
        known_ = follower != nullptr ? last : known_; // this one may be incomplete
    }
    if (follower == nullptr || calendar_.last()) { // else what is to come has no bounds yet
        range_ = range.value_or(
            rangeOf(options_.since, options_.until, calendar_.first(), calendar_.last()));
    }
    if (!isPossible(range_, path)) {
        return false;
    }
    display_.begin();
    // Most lines of most searches are passed over without a parse.
    const bool mayPass = options_.events.isGiven() && !needsTimes_ && context_ == 0;
    const bool mayCount = display_.counts().needsCodesOnly() && merge_ == nullptr && !needsTimes_ &&
                          !holds_ && !options_.text.isGiven();
    const bool glances = mayPass || mayCount || holds_;
    const auto lookAt = [this, mayPass, mayCount, glances](std::string_view text,
                                                           std::uint64_t line) {
        if (options_.action == Action::CheckLogs) {
            return check(text, line);
        }
        const bool isGlanced = glances && !isNew(line);
        const Glance glance = isGlanced ? glanceAt(text) : Glance();
        const bool isEvent = glance.kind == LineKind::Event;
        if (mayPass && isEvent && !options_.events.selects(glance.code)) {
            return;
        }
        if (mayCount && isEvent) {
            display_.counts().addCode(glance.code);
        } else if (glance.kind != LineKind::NoEvent) {
            look(text, line, glance);
        }
    };
    if (follower != nullptr) {
        follower->callWhenIdle([this, follower] {
            endHolding();
            flushOutput();
            const std::string note = follower->takeNote();
            report(note.empty() ? note : safe(log_->path().text) + ": " + note);
        });
        log_->follow(*follower, lookAt, flushOutput);
    } else {
        log_->read(lookAt, flushOutput);
    }
    endHolding();
    log_->close();
    if (path.empty() && !display_.anyFound() && (merge_ == nullptr || merge_->isEmpty())) {
        explainNothing(range_, calendar_.first(), calendar_.last());
    }
    display_.counts().addLog(log_->path().text, !log_->failed());
    return !log_->failed();
}

// Shows all that is held.
void Query::endHolding()
{
    while (!held_.empty()) {
        showHeld(std::move(options_.reverse ? held_.back() : held_.front()));
        options_.reverse ? held_.pop_back() : held_.pop_front();
    }
    matches_.clear();
    holds_ = false;
}

// An event without a time belongs to the time before it.
bool Query::isInRange(std::uint64_t line, std::string_view time)
{
    const std::string_view at = calendar_.at(line, time);
    lastHasTime_ = !at.empty();
    if (lastHasTime_) {
        lastAt_ = at;
    }
    return range_.holds(lastAt_);
}

void Query::check(std::string_view text, std::uint64_t line)
{
    const std::unique_ptr<EventRecord> event = readEvent(*log_, text, line, false);
    jsonaccess::takeDiagnostics(); // the findings tell more
    if (event == nullptr ||
        ((!needsTimes_ || isInRange(line, event->time)) && options_.events.selects(event->code))) {
        const std::string_view at = event != nullptr ? calendar_.at(line, event->time) : "";
        display_.check().addLine(*log_, line, text, event.get(), at);
    }
}

void Query::look(std::string_view text, std::uint64_t line, const Glance& glance)
{
    bool matches = false;
    std::optional<EventView> view;
    if (holds_ && glance.kind == LineKind::Event && !needsTimes_ && !options_.text.isGiven()) {
        matches = options_.events.selects(glance.code); // parsed only if it is shown in the end
    } else {
        std::unique_ptr<EventRecord> event = readEvent(*log_, text, line);
        if (event == nullptr) {
            return;
        }
        if (isNew(line)) {
            addTime(times_, line, *event);
            calendar_ = continued(calendar_, times_, *log_, options_.year);
            jsonaccess::takeDiagnostics();
            event = readEvent(*log_, text, line); // once more, for its own diagnostics
        }
        const bool isInTime = !needsTimes_ || isInRange(line, event->time);
        if (isInTime && options_.events.selects(event->code)) {
            view.emplace(std::move(event));
            matches = !options_.text.isGiven() || options_.text.matches(view->words());
        }
    }
    collect({line, events_++, matches}, text, view ? &*view : nullptr);
}

// Shows an event, or holds its line as long as it is not clear whether it is shown.
void Query::collect(const Place& place, std::string_view text, EventView* view)
{
    const bool isAtOnce = !holds_ && context_ == 0;
    if (isAtOnce && place.matches && merge_ == nullptr) {
        return show(place, *view);
    }
    jsonaccess::takeDiagnostics(); // they come again if the event is shown
    if (isAtOnce && !place.matches) {
        return;
    }
    Found found{place, std::string(text), {}, {}};
    if (merge_ != nullptr) {
        found.log = log_;
        found.at = lastAt_;
        found.hasTime = lastHasTime_;
    }
    if (found.matches) {
        if (holds_) {
            matches_.push_back(found.event);
        }
        held_.splice(held_.end(), candidates_);
        after_ = context_;
    } else if (after_ > 0) {
        --after_;
    } else {
        candidates_.push_back(std::move(found));
        if (candidates_.size() > context_) {
            candidates_.pop_front();
        }
        return;
    }
    held_.push_back(std::move(found));
    if (options_.number && matches_.size() > static_cast<std::size_t>(*options_.number)) {
        matches_.pop_front(); // what is not near the next one is too old as well
        while (matches_.front() - held_.front().event > context_) {
            held_.pop_front();
        }
    }
    while (!holds_ && !held_.empty()) {
        showHeld(std::move(held_.front()));
        held_.pop_front();
    }
}

void Query::showHeld(Found found)
{
    if (merge_ != nullptr) {
        merge_->add(std::move(found));
    } else if (std::unique_ptr<EventRecord> event = readEvent(*log_, found.text, found.line)) {
        EventView view(std::move(event));
        show(found, view);
    }
}

void Query::show(const Place& place, EventView& view)
{
    view.at = hasTimes_ ? calendar_.at(place.line, view.time()) : "";
    display_.show(*log_, place, view);
}

} // namespace

bool searchLog(const Options& options, const std::shared_ptr<Log>& log, Display& display,
               Merge* merge, const std::optional<TimeRange>& range, const std::string& path,
               LogFollower* follower)
{
    return Query(options, log, display, merge).run(range, path, follower);
}

} // namespace eventsviewer::query
