#include "query/display.h"

#include "jsonaccess/diagnostics.h"
#include "query/messages.h"

#include <tuple>

namespace eventsviewer::query {

Display::Display(const Options& options, const Layout& layout)
    : options_(options), output_(output()), layout_(layout), counts_(options.count),
      check_(output(), options.format)
{
}

void Display::begin()
{
    const bool isFirst = !std::exchange(hasBegun_, true);
    if (isFirst && options_.action == Action::CheckLogs) {
        check_.begin();
    } else if (isFirst && counts_.isEmpty()) {
        output_ += headerOf(options_.format);
    }
    lastLog_ = nullptr;
}

void Display::show(const Log& log, const Place& place, EventView& view)
{
    constexpr std::size_t kMuchOutput = 65536;
    view.log = &log.path();
    view.label = &log.label();
    std::tie(view.file, view.line) = log.placeOf(place.line);
    if (!counts_.isEmpty()) {
        jsonaccess::takeDiagnostics(); // they are about values that are not shown
        counts_.add(view);
        return;
    }
    const bool touches =
        lastLog_ == &log && place.event <= lastEvent_ + 1 && lastEvent_ <= place.event + 1;
    const bool isForPeople = options_.format == Format::Table || options_.format == Format::Lines;
    const bool isApart = std::exchange(anyShown_, true) && !touches;
    if (isApart && isForPeople && options_.context.value_or(0) > 0) {
        output_ += "--\n";
    }
    lastLog_ = &log;
    lastEvent_ = place.event;
    anyFound_ = anyFound_ || place.matches;
    appendEvent(output_, options_.format, layout_, view);
    for (const std::string& diagnostic : jsonaccess::takeDiagnostics()) {
        log.reportLine(place.line, diagnostic);
    }
    if (output_.size() > kMuchOutput) {
        flushOutput();
    }
}

int Display::end()
{
    if (options_.action == Action::CheckLogs) {
        begin();
        anyFound_ = !check_.finish();
    } else if (!counts_.isEmpty()) {
        anyFound_ = counts_.write(output_, options_.format, layout_);
    }
    flushOutput();
    return anyFound_ ? kFound : kNothingFound;
}

} // namespace eventsviewer::query
