#pragma once

#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` for a terminal: what it could take for a command becomes an escape, "\x1b" or "\u202e".
std::string safe(std::string_view text);

} // namespace eventsviewer
