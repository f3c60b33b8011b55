#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` for a terminal: what it could take for a command becomes an escape, "\x1b" or "\u202e".
std::string safe(std::string_view text);

/// The columns that `text`, which is safe, takes on a terminal.
std::size_t columnsOf(std::string_view text);

/// How many bytes of `text`, which is safe, fit into `columns`: up to the last space there, which
/// is left out, or as many characters as fit, one at least.
std::size_t fittingLength(std::string_view text, std::size_t columns);

/// The columns of the terminal `descriptor`; 80 if it does not know, as a serial line.
std::size_t terminalWidth(int descriptor);

} // namespace eventsviewer
