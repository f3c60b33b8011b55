#pragma once

#include "query/display.h"

#include <cstddef>
#include <cstdint>
#include <list>

namespace eventsviewer::query {

/// The events of several logs in one order of time. Events of the same time are in the order in
/// which they were added. Holds little more than what is shown.
class Merge {
public:
    /// Only the newest `number` events that match are shown, each with `context` events before and
    /// after it in its log. The events of only `oneLog` stay in its order.
    Merge(std::size_t number, std::size_t context, bool oneLog)
        : number_(number), context_(context), oneLog_(oneLog)
    {
    }

    bool isEmpty() const { return found_.empty(); }

    /// Adds an event. Those of a log come one after the other in their order.
    void add(Found found);

    /// The events that are shown, oldest first.
    std::list<Found> take();

    /// How many events that match were added.
    std::size_t added() const { return added_; }

private:
    void sort(bool isComplete);

    std::size_t number_;
    std::size_t context_;
    bool oneLog_;
    std::list<Found> found_;
    std::size_t matches_ = 0;
    std::size_t added_ = 0;
};

} // namespace eventsviewer::query
