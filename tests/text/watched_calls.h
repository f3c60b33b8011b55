#pragma once

#include <cstddef>

// What the texts under test ask of the C library and the heap, and what these answer.

namespace eventsviewer {

extern int allocations;             // calls of malloc
extern const void* lastFreed;       // until its address is given out again
extern int objects;                 // made with new and not yet deleted
extern std::size_t pretendedLength; // what strlen gives, unless 0

extern bool memoryIsExhausted; // then malloc has nothing left

/// What `make` makes when malloc has nothing left.
template <typename Make> auto withoutMemory(Make make)
{
    memoryIsExhausted = true;
    auto made = make();
    memoryIsExhausted = false;
    return made;
}

} // namespace eventsviewer
