#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace eventsviewer::jsonaccess {

/// Removes JSON tokens from the beginning of a text. A function that finds something else there
/// returns false.
class PlainTokens {
public:
    explicit PlainTokens(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

    /// The byte that comes next, or the end of the text.
    const char* at() const { return at_; }

    bool beginsWith(char wanted) const { return at_ != end_ && *at_ == wanted; }

    bool take(char wanted)
    {
        const bool found = beginsWith(wanted);
        at_ += found ? 1 : 0;
        return found;
    }

    /// Spaces and tabs.
    void skipBlanks()
    {
        while (beginsWith(' ') || beginsWith('\t')) {
            ++at_;
        }
    }

    /// The colon between a key and its value, and the spaces and tabs around it.
    bool takeColon()
    {
        skipBlanks();
        const bool found = take(':');
        skipBlanks();
        return found;
    }

    /// A whole number of one to nine digits, which always fits 32 bits; nine digits of a longer
    /// one.
    bool takeShortNumber(std::int32_t& number)
    {
        constexpr std::ptrdiff_t kMostDigits = 9;
        const char* const begin = at_;
        number = 0;
        while (at_ != end_ && *at_ >= '0' && *at_ <= '9' && at_ - begin < kMostDigits) {
            number = number * 10 + (*at_ - '0');
            ++at_;
        }
        return at_ != begin;
    }

    /// What is between two quotes. Takes the whole text if there is no second quote.
    bool takeQuoted(std::string_view& content)
    {
        if (!take('"')) {
            return false;
        }
        const void* const quote = std::memchr(at_, '"', static_cast<std::size_t>(end_ - at_));
        if (quote == nullptr) {
            at_ = end_;
            return false;
        }
        content = {at_, static_cast<std::size_t>(static_cast<const char*>(quote) - at_)};
        at_ += content.size() + 1;
        return true;
    }

private:
    const char* at_;
    const char* end_;
};

} // namespace eventsviewer::jsonaccess
