#pragma once

#include <cstddef>
#include <string_view>

namespace eventsviewer::fuzz {

/// Where `actual` is not `expected`, shows both with the `rule` that is broken, and aborts.
void checkSame(std::string_view actual, std::string_view expected, const char* rule);

/// Where the `rule` is broken, names it and aborts.
void check(bool holds, const char* rule);

/// Whether `text` may nest more than `limit` objects and arrays. Reading that ends the process on
/// purpose. The text may go on behind a line feed, which is a blank among variables.
bool nestsDeeper(std::string_view text, std::ptrdiff_t limit);

} // namespace eventsviewer::fuzz
