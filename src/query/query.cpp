#include "query/query.h"

#include "eventlog/silent_lines.h"
#include "query/event_reading.h"
#include "query/messages.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <memory>
#include <utility>

namespace eventsviewer::query {

namespace {

constexpr const char* kAfterAll = "~"; // follows every time
constexpr std::size_t kMuchOutput = 65536;

// A line whose event is or may be shown.
struct Found {
    std::uint64_t line = 0;  // of the log
    std::uint64_t event = 0; // how many events come before it
    bool matches = false;    // or it is only near one that does
    std::string text;
};

class Query {
public:
    explicit Query(const Options& options)
        : options_(options), log_(options.log), hasRange_(options.since || options.until),
          hasTimes_(hasRange_ || options.format == Format::Csv || options.format == Format::Json),
          holds_(options.number || options.reverse),
          context_(static_cast<std::size_t>(options.context.value_or(0)))
    {
    }
    int run();

private:
    bool setRange();
    void reportRange() const;
    bool isInRange(std::uint64_t line, const std::string& time);
    void look(std::string_view text, std::uint64_t line, const Glance& glance);
    void collect(Found found, std::string_view text, EventView* view);
    void showHeld(const Found& found);
    void show(const Found& found, EventView& view);

    const Options& options_;
    Log log_;
    Calendar calendar_;
    const bool hasRange_;
    const bool hasTimes_;
    const bool holds_; // all that is found, up to the end
    const std::size_t context_;
    std::string since_;
    std::string until_ = kAfterAll;
    std::string lastAt_; // of the last event with a time
    std::deque<Found> held_;
    std::deque<std::uint64_t> matches_; // the events in held_ that match
    std::deque<Found> candidates_;      // shown only if a match follows
    std::size_t after_ = 0;             // how many events more are shown after a match
    std::uint64_t events_ = 0;
    std::optional<std::uint64_t> lastShown_;
    bool anyFound_ = false;
};

int Query::run()
{
    if (hasTimes_) {
        calendar_ = readYears(log_, options_.year);
    }
    if (!setRange()) {
        return kError;
    }
    output() += headerOf(options_.format);
    // Most lines of most searches are passed over without a parse.
    const bool mayPass = options_.events.isGiven() && !hasRange_ && context_ == 0;
    const bool glances = mayPass || holds_;
    const auto lookAt = [this, mayPass, glances](std::string_view text, std::uint64_t line) {
        const Glance glance = glances ? glanceAt(text) : Glance();
        const bool passes =
            mayPass && glance.kind == LineKind::Event && !options_.events.selects(glance.code);
        if (!passes && glance.kind != LineKind::NoEvent) {
            look(text, line, glance);
        }
    };
    log_.read(lookAt, flushOutput);
    while (!held_.empty()) {
        showHeld(options_.reverse ? held_.back() : held_.front());
        options_.reverse ? held_.pop_back() : held_.pop_front();
    }
    flushOutput();
    if (!anyFound_) {
        reportRange();
    }
    return log_.failed() ? kError : anyFound_ ? kFound : kNothingFound;
}

// Returns false if nothing can be in the range.
bool Query::setRange()
{
    const std::optional<Moment> first = calendar_.first();
    const std::optional<Moment> last = calendar_.last();
    std::optional<Moment> since;
    if (options_.since && last) {
        since = options_.since->since(*first, *last);
    }
    if (options_.since) { // without any time, no event can be said to be late enough
        since_ = since ? isoTime(*since) : kAfterAll;
    }
    if (options_.until && last) {
        until_ = isoTime(options_.until->until(since, *first, *last));
    }
    if (since_ > until_) {
        report("-S is " + since_ + ", which is after -U, " + until_);
        return false;
    }
    return true;
}

// Says why nothing can be in the range.
void Query::reportRange() const
{
    const std::string first = calendar_.first() ? isoTime(*calendar_.first()) : "";
    const std::string last = calendar_.last() ? isoTime(*calendar_.last()) : kAfterAll;
    if (since_ > last) {
        report("-S is " + since_ + ", after the last event, " + last);
    } else if (until_ < first) {
        report("-U is " + until_ + ", before the first event, " + first);
    }
}

// An event without a time belongs to the time before it.
bool Query::isInRange(std::uint64_t line, const std::string& time)
{
    const std::string_view at = calendar_.at(line, time);
    if (!at.empty()) {
        lastAt_ = at;
    }
    return lastAt_ >= since_ && lastAt_ <= until_;
}

void Query::look(std::string_view text, std::uint64_t line, const Glance& glance)
{
    bool matches = false;
    std::optional<EventView> view;
    if (holds_ && glance.kind == LineKind::Event && !hasRange_ && !options_.text.isGiven()) {
        matches = options_.events.selects(glance.code); // parsed only if it is shown in the end
    } else {
        std::unique_ptr<EventRecord> event = readEvent(log_, text, line);
        if (event == nullptr) {
            return;
        }
        const bool isInTime = !hasRange_ || isInRange(line, event->time);
        if (isInTime && options_.events.selects(event->code)) {
            view.emplace(std::move(event));
            matches = !options_.text.isGiven() || options_.text.matches(view->words());
        }
    }
    collect({line, events_++, matches, {}}, text, view ? &*view : nullptr);
}

// Shows an event, or holds its line as long as it is not clear whether it is shown.
void Query::collect(Found found, std::string_view text, EventView* view)
{
    if (!holds_ && context_ == 0 && found.matches) {
        show(found, *view);
        return;
    }
    takeDiagnostics(); // they come again if the event is shown
    if (!holds_ && context_ == 0) {
        return;
    }
    found.text = text;
    if (found.matches) {
        matches_.push_back(found.event);
        std::move(candidates_.begin(), candidates_.end(), std::back_inserter(held_));
        candidates_.clear();
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
        showHeld(held_.front());
        held_.pop_front();
    }
}

void Query::showHeld(const Found& found)
{
    if (std::unique_ptr<EventRecord> event = readEvent(log_, found.text, found.line)) {
        EventView view(std::move(event));
        show(found, view);
    }
}

void Query::show(const Found& found, EventView& view)
{
    view.at = hasTimes_ ? calendar_.at(found.line, view.time()) : "";
    view.log = &log_.path();
    view.file = &log_.fileOf(found.line);
    view.line = log_.lineInFile(found.line);
    const std::uint64_t last = lastShown_.value_or(found.event);
    const bool touches = found.event <= last + 1 && last <= found.event + 1;
    const bool isForPeople = options_.format == Format::Table || options_.format == Format::Lines;
    output() += context_ > 0 && isForPeople && !touches ? "--\n" : "";
    lastShown_ = found.event;
    anyFound_ = anyFound_ || found.matches;
    appendEvent(output(), options_.format, options_.layout, view);
    for (const std::string& diagnostic : takeDiagnostics()) {
        log_.report(found.line, diagnostic);
    }
    if (output().size() > kMuchOutput) {
        flushOutput();
    }
}

} // namespace

int showEvents(const Options& options)
{
    prepareReading();
    return Query(options).run();
}

} // namespace eventsviewer::query
