#pragma once

#include <regex.h>

#include <memory>
#include <string>

namespace eventsviewer {

/// Selects strings by an extended POSIX regular expression, which matches within one line, byte by
/// byte. Without capitals it matches in any case.
class TextFilter {
public:
    /// Sets the expression. Returns what is wrong with it, or nothing.
    std::string set(const std::string& expression);

    /// Whether there is an expression.
    bool isGiven() const { return compiled_ != nullptr; }

    /// Whether the expression matches in `text`; true without one. Throws
    /// std::bad_alloc.
    bool matches(const std::string& text) const;

private:
    std::shared_ptr<regex_t> compiled_;
};

} // namespace eventsviewer
