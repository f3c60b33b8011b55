#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// Chooses events by their codes and names. Without patterns it chooses all.
class EventFilter {
public:
    /// Adds patterns separated by commas: names by shell pattern in any case, or codes; a "!"
    /// before one leaves its events out. Returns what is wrong, or nothing.
    std::string add(std::string_view patterns);

    /// Whether there are patterns.
    bool isGiven() const { return !patterns_.empty(); }

    /// Whether the patterns choose the events with this code.
    bool selects(std::int32_t code) const
    {
        const auto index = static_cast<std::uint32_t>(code);
        const bool isKept = index < selected_.size() && selected_[index] != Selected::Unclear;
        return isKept ? selected_[index] == Selected::Yes : !isGiven() || selectsByPatterns(code);
    }

private:
    enum class Selected : char { Unclear, No, Yes };
    struct Pattern {
        std::string name; // empty for a code
        std::int64_t code;
        bool leavesOut;
    };

    bool selectsByPatterns(std::int32_t code) const;

    std::vector<Pattern> patterns_;
    mutable std::vector<Selected> selected_; // by code; patterns are slow to compare
};

} // namespace eventsviewer
