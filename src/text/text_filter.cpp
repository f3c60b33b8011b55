#include "text/text_filter.h"

#include <cerrno>
#include <cstddef>
#include <new>

namespace eventsviewer {

namespace {

bool hasCapital(const std::string& expression)
{
    for (std::size_t i = 0; i < expression.size(); ++i) {
        if (expression[i] == '\\') {
            ++i; // such as \W
        } else if (expression[i] >= 'A' && expression[i] <= 'Z') {
            return true;
        }
    }
    return false;
}

} // namespace

std::string TextFilter::set(const std::string& expression)
{
    constexpr std::size_t kMostBytes = 2000; // the C library nests a call for each parenthesis
    if (expression.size() > kMostBytes) {
        return "longer than 2000 bytes";
    }
    auto compiled = std::make_unique<regex_t>();
    const int anyCase = hasCapital(expression) ? 0 : REG_ICASE;
    const int flags = REG_EXTENDED | REG_NOSUB | REG_NEWLINE | anyCase;
    if (const int error = regcomp(compiled.get(), expression.c_str(), flags); error != 0) {
        char text[128];
        regerror(error, compiled.get(), text, sizeof text);
        return text;
    }
    compiled_.reset(compiled.release(), [](regex_t* kept) {
        regfree(kept);
        delete kept;
    });
    return {};
}

bool TextFilter::matches(const std::string& text) const
{
    regmatch_t range = {0, static_cast<regoff_t>(text.size())}; // a text may hold a NUL
    errno = 0;
    if (!isGiven() || regexec(compiled_.get(), text.c_str(), 0, &range, REG_STARTEND) == 0) {
        return true;
    }
    if (errno == ENOMEM) { // which the C library gives back as a text without a match
        throw std::bad_alloc();
    }
    return false;
}

} // namespace eventsviewer
