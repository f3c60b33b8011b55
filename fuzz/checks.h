#pragma once

#include <cstddef>
#include <string_view>

namespace eventsviewer::fuzz {

/// If `actual` is not `expected`, prints both with the broken `rule`, and aborts.
void checkSame(std::string_view actual, std::string_view expected, const char* rule);

/// If the `rule` does not hold, prints it and aborts.
void check(bool holds, const char* rule);

/// Whether `text` may nest more than `limit` objects and arrays; reading that ends the process on
/// purpose. All lines count together, since a newline among variables is only whitespace.
bool nestsDeeper(std::string_view text, std::ptrdiff_t limit);

} // namespace eventsviewer::fuzz
