#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace eventsviewer {

/// `text` as the content of an HTML element or of an attribute in quotes. Its lines are kept; else
/// it is as safe() gives it.
std::string html(std::string_view text);

/// A number and what it counts, such as "1 event" or "2 events".
std::string countInWords(std::uint64_t number, const char* what);

} // namespace eventsviewer
