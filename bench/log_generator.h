#pragma once

#include "describe/description.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace eventsviewer::bench {

/// How the lines are written: {"id":1,"time":...}, {"id": 1, "time": ...}, or with "id" behind the
/// other members.
enum class Style { compact, spaced, idLast };

/// The style of that name: compact, spaced or id-last.
std::optional<Style> styleNamed(std::string_view name);

/// Makes lines as the terminal writes them: described events with all of their variables, about 159
/// bytes on average in the compact style. A seed always gives the same lines.
class LogGenerator {
public:
    /// Of a thousand lines, `damaged` are cut off or have a changed byte.
    LogGenerator(std::uint32_t seed, Style style, std::size_t damaged)
        : random_(seed), style_(style), damaged_(damaged)
    {
    }

    /// The next line, with its line feed.
    std::string line();

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    const Description& described();
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
