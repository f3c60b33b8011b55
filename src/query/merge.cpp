#include "query/merge.h"

#include <algorithm>
#include <set>
#include <utility>

namespace eventsviewer::query {

void Merge::add(Found found)
{
    constexpr std::size_t kSpare = 1000; // so that sorting is rare
    matches_ += found.matches ? 1 : 0;
    added_ += found.matches ? 1 : 0;
    found_.push_back(std::move(found));
    if (matches_ / 2 > number_ && matches_ > kSpare) {
        sort(false);
    }
}

std::list<Found> Merge::take()
{
    sort(true);
    return std::move(found_);
}

// Also drops what is too old. Unless this `isComplete`, an event near the last one may still be
// near the next.
void Merge::sort(bool isComplete)
{
    using Event = std::pair<const Log*, std::uint64_t>;
    std::set<Event> shown;
    if (!isComplete) {
        shown.emplace(found_.back().log.get(), found_.back().event);
    }
    // Events of the same time stay in their order.
    if (!oneLog_) {
        found_.sort([](const Found& one, const Found& other) { return one.at < other.at; });
    }
    matches_ = 0;
    for (auto found = found_.rbegin(); found != found_.rend(); ++found) {
        found->matches = found->matches && matches_ < number_;
        matches_ += found->matches ? 1 : 0;
        if (found->matches && context_ > 0) {
            shown.emplace(found->log.get(), found->event);
        }
    }
    const auto isTooOld = [this, &shown](const Found& found) {
        const std::uint64_t first = found.event - std::min<std::uint64_t>(found.event, context_);
        const auto near = shown.lower_bound({found.log.get(), first});
        return !found.matches && (near == shown.end() || near->first != found.log.get() ||
                                  near->second > found.event + context_);
    };
    found_.remove_if(isTooOld);
}

} // namespace eventsviewer::query
