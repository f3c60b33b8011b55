#include "render/table_memory.h"

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace eventsviewer {

void makeRoom(std::string& table, std::size_t expected)
{
    // Early, while there is little to copy: a string that grows is in memory twice for a moment.
    const std::size_t size = table.size() + expected;
    if (table.capacity() < size) {
        table.reserve(std::min(size + size / 8, 2 * table.capacity()));
    }
#ifdef __GLIBC__
    malloc_trim(0); // the C library keeps small pieces for more of their size
#endif
}

} // namespace eventsviewer
