#pragma once

#include "describe/description.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace eventsviewer::bench {

/// How the lines are written.
enum class Style {
    Compact,   ///< {"id":1,"time":...}
    Spaced,    ///< {"id": 1, "time": ...}
    IdLast,    ///< {"time":...,"id":1}
    Realistic, ///< compact, but three in five events have no description
    NotAscii,  ///< compact, with a character in each event that is not ASCII
    Reals,     ///< compact, with a number in each event that is not a whole one
};

/// The style called compact, spaced, id-last, realistic, not-ascii or reals.
std::optional<Style> styleNamed(std::string_view name);

/// Makes lines as the terminal writes them: described events with all of their variables, about 160
/// bytes on average. A seed always gives the same lines.
class LogGenerator {
public:
    /// Of a thousand lines, `damaged` are cut off or have a changed byte.
    LogGenerator(std::uint32_t seed, Style style, std::size_t damaged)
        : random_(seed), style_(style), damaged_(damaged)
    {
    }

    /// The next line, with its newline.
    std::string line();

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    const Description& described();
    std::string variablesOf(const Description& event, const std::string& colon,
                            const std::string& comma);
    std::string variablesOfOthers();
    std::string digits(std::size_t count);
    std::string hash();
    std::string text(std::string_view key);
    std::string time();

    std::mt19937 random_;
    Style style_;
    std::size_t damaged_;
    std::size_t seconds_ = 0;
};

} // namespace eventsviewer::bench
