#pragma once

#include <cstddef>
#include <string>

namespace eventsviewer {

/// Makes room in `table` for `expected` more bytes, and gives unused memory back to the system. It
/// adds no more at a time than the string would by itself, since the next rows may be shorter. For
/// a table that grows while the events it shows are destroyed: both together then need little more
/// memory than one.
void makeRoom(std::string& table, std::size_t expected);

} // namespace eventsviewer
