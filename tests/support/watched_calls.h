#pragma once

#include <cstddef>

// Counts the calls that SharedText makes to the C library and the heap, and changes their results.

namespace eventsviewer {

extern int allocations;             // calls of malloc
extern const void* lastFreed;       // until its address is given out again
extern int objects;                 // made with new and not yet deleted
extern std::size_t pretendedLength; // what strlen gives, unless 0

extern bool memoryIsExhausted; // malloc then fails

/// What `make` returns when malloc fails.
template <typename Make> auto withoutMemory(Make make)
{
    memoryIsExhausted = true;
    auto made = make();
    memoryIsExhausted = false;
    return made;
}

} // namespace eventsviewer
