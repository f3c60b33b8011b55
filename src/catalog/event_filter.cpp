#include "catalog/event_filter.h"

#include "catalog/event_names.h"

#include <fnmatch.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <set>
#include <tuple>
#include <utility>

namespace eventsviewer {

namespace {

bool matches(const std::string& pattern, const std::string& name)
{
    return fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
}

bool matchesAnyName(const std::string& pattern)
{
    for (const std::int32_t code : knownEventCodes()) {
        if (matches(pattern, eventNameFor(code))) {
            return true;
        }
    }
    // The name of an event that is not known ends with its code. Any digit may be in the place of
    // another, and anything in the place of a bracket expression.
    std::string digits = pattern;
    if (const std::size_t bracket = digits.find('['); bracket < digits.rfind(']') + 1) {
        digits.replace(bracket, digits.rfind(']') + 1 - bracket, "*");
    }
    for (char& c : digits) {
        c = c >= '0' && c <= '9' ? '0' : c;
    }
    std::string name = "UNRECOGNIZED_EVENT_CODE_";
    constexpr int kMostDigits = 10;
    for (int i = 0; i < kMostDigits; ++i) {
        name += '0';
        if (matches(digits, name)) {
            return true;
        }
    }
    return false;
}

// How many characters of `wanted` have to change so that it is a part of `name`.
std::size_t distance(const std::string& wanted, std::string_view name)
{
    std::vector<std::size_t> row(name.size() + 1); // any part of the name may come before
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < name.size(); ++j) {
            const std::size_t replaced = diagonal + (wanted[i] != name[j] ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return *std::min_element(row.begin(), row.end());
}

// "MODEM_RESET or MODEM_OS_RESTART"; empty if no name is near.
std::string nearestNames(const std::string& pattern)
{
    constexpr std::size_t kMostNames = 3;
    std::string wanted;
    for (const char c : pattern) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_') {
            wanted += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    std::set<std::tuple<std::size_t, std::size_t, std::int32_t>> names;
    for (const std::int32_t code : knownEventCodes()) {
        const std::string_view name = knownEventName(code);
        if (const std::size_t changes = distance(wanted, name); 3 * changes < wanted.size()) {
            names.emplace(changes, name.size(), code);
        }
    }
    const bool isPart = !wanted.empty() && names.size() > 1 &&
                        std::get<0>(*std::next(names.begin())) == 0; // of several names
    std::string text = isPart ? "'*" + wanted + "*'" : "";
    std::size_t count = 0;
    for (const auto& [changes, length, code] : names) {
        if (count++ < kMostNames) {
            text += text.empty() ? "" : " or ";
            text += knownEventName(code);
        }
    }
    return text;
}

} // namespace

std::string EventFilter::add(std::string_view patterns)
{
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = patterns.find(',');
        std::string pattern(patterns.substr(0, comma));
        patterns.remove_prefix(comma != std::string_view::npos ? comma + 1 : 0);
        const bool leavesOut = !pattern.empty() && pattern.front() == '!';
        pattern.erase(0, leavesOut ? 1 : 0);
        if (pattern.empty()) {
            return "a pattern is empty";
        }
        char* end = nullptr;
        const std::int64_t code = std::strtoll(pattern.c_str(), &end, 10);
        const bool isCode = *end == '\0';
        if (!isCode && !matchesAnyName(pattern)) {
            const std::string names = nearestNames(pattern);
            return "no event is called " + pattern +
                   (names.empty() ? "; --catalog lists all" : "; did you mean " + names + "?");
        }
        patterns_.push_back({isCode ? "" : pattern, code, leavesOut});
    }
    selected_.assign(static_cast<std::size_t>(knownEventCodes().back()) + 1, Selected::Unclear);
    return {};
}

bool EventFilter::selectsByPatterns(std::int32_t code) const
{
    bool anyWanted = false;
    bool wanted = false;
    bool leftOut = false;
    for (const Pattern& pattern : patterns_) {
        // A code may be given as it is in the log, or as the name of an unknown event shows it.
        const auto shown = static_cast<std::uint32_t>(code);
        const bool match = pattern.name.empty() ? pattern.code == code || pattern.code == shown
                                                : matches(pattern.name, eventNameFor(code));
        leftOut = leftOut || (match && pattern.leavesOut);
        anyWanted = anyWanted || !pattern.leavesOut;
        wanted = wanted || match;
    }
    const bool selected = !leftOut && (wanted || !anyWanted);
    if (static_cast<std::uint32_t>(code) < selected_.size()) {
        selected_[static_cast<std::uint32_t>(code)] = selected ? Selected::Yes : Selected::No;
    }
    return selected;
}

} // namespace eventsviewer
