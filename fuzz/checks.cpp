#include "checks.h"

#include "support/printable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace eventsviewer::fuzz {

namespace {

void printEscaped(const char* title, std::string_view text)
{
    std::fprintf(stderr, "-- %s, %zu bytes:\n%s\n", title, text.size(), printable(text).c_str());
}

} // namespace

void checkSame(std::string_view actual, std::string_view expected, const char* rule)
{
    if (actual != expected) {
        printEscaped("actual", actual);
        printEscaped("expected", expected);
        check(false, rule);
    }
}

void check(bool holds, const char* rule)
{
    if (!holds) {
        std::fprintf(stderr, "Broken rule: %s\n", rule);
        std::abort();
    }
}

bool nestsDeeper(std::string_view text, std::ptrdiff_t limit)
{
    return std::count_if(text.begin(), text.end(), [](char c) { return c == '{' || c == '['; }) >
           limit;
}

} // namespace eventsviewer::fuzz
