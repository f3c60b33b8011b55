#pragma once

#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` for a terminal: what it could take for a command becomes an escape, "\x1b" or "\u202e".
std::string safe(std::string_view text);

/// `text` as the content of an HTML element or of an attribute in quotes. Its lines are kept; else
/// it is as `safe` gives it.
std::string html(std::string_view text);

} // namespace eventsviewer
