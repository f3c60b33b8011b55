#pragma once

#include "vocabulary/vocabulary.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer::reference {

/// Makes the lines of a log: events as the terminal writes them, and the same with damage. There is
/// every kind of damage that changes whether a line has an event or what is printed for it. A seed
/// always gives the same lines.
class LogMutator {
public:
    explicit LogMutator(std::uint32_t seed) : random_(seed) {}

    /// A line, without its newline; about half of the lines are whole.
    std::string line();

    /// A line whose nesting is about the deepest that can be read, with or without an "id".
    std::string deepLine();

    /// A number below `limit`.
    std::size_t below(std::size_t limit) { return random_() % limit; }

    /// True once in `times` calls.
    bool oneIn(std::size_t times) { return below(times) == 0; }

private:
    std::string pick(const std::vector<std::string_view>& choices);
    std::string event();
    std::string time();
    std::string variables(const vocabulary::Description& description);
    std::string textValue();
    std::string anyValue();
    std::size_t placeIn(const std::string& line);
    std::size_t tokenPlaceIn(const std::string& line);
    void mutate(std::string& line);
    void changeBytes(std::string& line);
    void changeId(std::string& line);
    void growToAThousandBytes(std::string& line);

    std::mt19937 random_;
};

} // namespace eventsviewer::reference
