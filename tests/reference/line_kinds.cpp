#include "reference/line_kinds.h"

#include <cstdio>

namespace eventsviewer::reference {

namespace {

constexpr const char* kKinds[] = {
    "no brace",          "1000 bytes or more", "escaped letter",     "surely no event",
    "two times \"id\"",  "\"id\" not first",   "no colon behind it", "no number of 1 to 9 digits",
    "number not closed", "surely an event",
};

std::size_t skipBlanks(std::string_view line, std::size_t from)
{
    const std::size_t at = line.find_first_not_of(" \t\r", from);
    return at == std::string_view::npos ? line.size() : at;
}

std::string kindOf(std::string_view line)
{
    constexpr std::string_view kIdKey = "\"id\"";
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return "no brace";
    }
    if (line.size() >= 1000) {
        return "1000 bytes or more";
    }
    if (line.find("\\u006") != std::string_view::npos) {
        return "escaped letter";
    }
    const std::size_t id = line.find(kIdKey);
    if (id == std::string_view::npos) {
        return "surely no event";
    }
    if (line.find(kIdKey, id + 1) != std::string_view::npos) {
        return "two times \"id\"";
    }
    if (id != skipBlanks(line, brace + 1)) {
        return "\"id\" not first";
    }
    const std::size_t colon = skipBlanks(line, id + kIdKey.size());
    if (line.substr(colon, 1) != ":") {
        return "no colon behind it";
    }
    const std::size_t number = skipBlanks(line, colon + 1);
    const std::size_t end = line.find_first_not_of("0123456789", number);
    if (end == std::string_view::npos || end == number || end - number > 9) {
        return "no number of 1 to 9 digits";
    }
    const std::string_view next = line.substr(skipBlanks(line, end), 1);
    return next == "," || next == "}" ? "surely an event" : "number not closed";
}

} // namespace

void LineKinds::count(std::string_view line)
{
    ++counts_[kindOf(line)];
}

bool LineKinds::report(std::size_t lineCount) const
{
    bool enough = true;
    std::printf("No difference in %zu lines:\n", lineCount);
    for (const char* kind : kKinds) {
        const auto found = counts_.find(kind);
        const std::size_t count = found != counts_.end() ? found->second : 0;
        const bool tooRare = count < lineCount / 1000;
        std::printf("%8zu  %s%s\n", count, kind, tooRare ? "  (too few)" : "");
        enough = enough && !tooRare;
    }
    return enough;
}

} // namespace eventsviewer::reference
