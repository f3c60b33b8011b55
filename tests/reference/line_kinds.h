#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace eventsviewer::reference {

/// Counts the lines of a comparison by what tells whether a line is an event without parsing it, or
/// by what first stands in the way of telling. A comparison that lacks one of these kinds has shown
/// nothing about it.
class LineKinds {
public:
    void count(std::string_view line);

    /// Prints the counts. False if a kind is rarer than one in a thousand of `lineCount`.
    bool report(std::size_t lineCount) const;

private:
    std::map<std::string, std::size_t> counts_;
};

} // namespace eventsviewer::reference
