#pragma once

#include "text/shared_text.h"

#include <cstddef>

// What the texts under test ask of the C library and the heap, and what these answer.

namespace eventsviewer {

extern int allocations;             // calls of malloc
extern const void* lastFreed;       // until its address is given out again
extern int objects;                 // made with new and not yet deleted
extern std::size_t pretendedLength; // what strlen gives, unless 0

/// What `make` makes when malloc has nothing left.
SharedText withoutMemory(SharedText (*make)());

} // namespace eventsviewer
