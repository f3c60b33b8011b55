#include "query/merge.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace eventsviewer::query {

void Merge::add(Found found)
{
    constexpr std::size_t kSpare = 1000; // so that sorting is rare
    matches_ += found.matches ? 1 : 0;
    found_.push_back(std::move(found));
    if (matches_ / 2 > number_ && matches_ > kSpare) {
        sort(false);
    }
}

std::vector<Found> Merge::take()
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
    std::vector<std::size_t> order(found_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
        const int difference = found_[one].at.compare(found_[other].at);
        return difference != 0 ? difference < 0 : one < other;
    });
    std::vector<Found> sorted;
    sorted.reserve(found_.size());
    for (const std::size_t index : order) {
        sorted.push_back(std::move(found_[index]));
    }
    found_ = std::move(sorted);
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
    found_.erase(std::remove_if(found_.begin(), found_.end(), isTooOld), found_.end());
}

} // namespace eventsviewer::query
