#pragma once

#include <cstddef>
#include <string>

namespace eventsviewer {

/// Makes room in `table` for `expected` more bytes, though no more at a time than it would take
/// itself, since the rows to come may be shorter; and gives unused memory back to the system. For a
/// table that grows while the events it shows are destroyed, so that both need little more than
/// one.
void makeRoom(std::string& table, std::size_t expected);

} // namespace eventsviewer
