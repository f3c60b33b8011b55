// Why a check of a line can replace its parse:
//
// - Parsing ends the process only where more than 1000 objects and arrays are nested. No line of
//   up to 1000 bytes can do that.
// - Parsing prints only the diagnostic of the conversion of the member "id": none for a number of
//   up to nine digits, since it fits 32 bits.
// - The key of that member is written `"id"`, or with one of its letters as an escape, `\u0069` or
//   `\u0064`. So a short line is silent if no quote in it begins a key with such an escape, and
//   each `"id"` in it, whatever it may be part of, is followed by a colon and a short number:
//   whichever of them the parser takes for the key, nothing is printed.
// - A line without any of these after its first brace has no event.
// - A line whose object begins with "id" and a short number has one: the parser has stored the
//   member when it comes to the comma or brace after it. Damage further on cannot take it back.

#include "eventlog/silent_lines.h"

#include "eventlog/lines.h"
#include "jsonaccess/plain_tokens.h"
#include "jsonaccess/word.h"

#include <algorithm>
#include <cstring>

namespace eventsviewer {

namespace {

using jsonaccess::everyByte;
using jsonaccess::Word;
using jsonaccess::wordAt;

constexpr std::size_t kSafeLength = 1000;

// The needles: every way to write the key "id" begins with one of these.
constexpr std::string_view kIdKey = "\"id\"";
constexpr std::string_view kEscapedI = "\"\\u006";
constexpr std::string_view kEscapedD = "\"i\\u006";

bool beginsWith(std::string_view text, std::string_view needle)
{
    return text.size() >= needle.size() &&
           std::memcmp(text.data(), needle.data(), needle.size()) == 0;
}

// SWAR: whether a needle may begin in the word at `text`, which has a byte after it. May report
// false positives, never misses. A quote has to come before an "i" or a backslash; all bytes that
// have the bits common to these two pass as well.
bool mayBeginNeedle(const char* text)
{
    constexpr unsigned char kShared = static_cast<unsigned char>(~('i' ^ '\\'));
    const Word first = wordAt(text) ^ everyByte('"');
    const Word second = (wordAt(text + 1) ^ everyByte('i')) & everyByte(kShared);
    return (((first | second) - everyByte(1)) & everyByte(0x80)) != 0;
}

// The position of the first needle from `from` on, or npos.
std::size_t findNeedle(std::string_view text, std::size_t from)
{
    const char* at = text.data() + from;
    const char* const end = text.data() + text.size();
    const char* const words = end - std::min(sizeof(Word), text.size()); // a word and more to go
    while (at < end) {
        while (at < words && !mayBeginNeedle(at)) {
            at += sizeof(Word);
        }
        const char* const wordEnd = at < words ? at + sizeof(Word) : end;
        for (; at < wordEnd; ++at) {
            const std::string_view rest(at, static_cast<std::size_t>(end - at));
            if (*at == '"' && (beginsWith(rest, kIdKey) || beginsWith(rest, kEscapedI) ||
                               beginsWith(rest, kEscapedD))) {
                return static_cast<std::size_t>(at - text.data());
            }
        }
    }
    return std::string_view::npos;
}

// How many bytes at the beginning of `text` are the key "id", a short number and the comma or brace
// that ends it. 0 if the text begins in another way.
std::size_t shortIdLength(std::string_view text)
{
    if (!beginsWith(text, kIdKey)) {
        return 0;
    }
    jsonaccess::PlainTokens tokens(text.substr(kIdKey.size()));
    std::int32_t id = 0;
    if (!tokens.takeColon() || !tokens.takeShortNumber(id)) {
        return 0;
    }
    tokens.skipBlanks();
    return tokens.take(',') || tokens.take('}')
               ? static_cast<std::size_t>(tokens.at() - text.data())
               : 0;
}

// The position of the first needle that is not an "id" with a short number, or npos.
std::size_t findUnsafeNeedle(std::string_view text)
{
    std::size_t from = 0;
    for (;;) {
        const std::size_t needle = findNeedle(text, from);
        const std::size_t length =
            needle != std::string_view::npos ? shortIdLength(text.substr(needle)) : 0;
        if (length == 0) {
            return needle;
        }
        from = needle + length;
    }
}

} // namespace

std::size_t silentLength(std::string_view lines)
{
    std::size_t silent = 0;
    while (silent < lines.size()) {
        // Whole lines that together are no longer than one may be, so that their ends need not be
        // found. None if the next line alone is longer. The last line may lack its newline.
        std::string_view some = lines.substr(silent, kSafeLength);
        if (silent + some.size() < lines.size()) {
            some = some.substr(0, wholeLinesLength(some));
        }
        const std::size_t unsafe = findUnsafeNeedle(some);
        if (some.empty() || unsafe != std::string_view::npos) {
            return silent + wholeLinesLength(some.substr(0, unsafe));
        }
        silent += some.size();
    }
    return silent;
}

LineKind kindOfSilentLine(std::string_view line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return LineKind::NoEvent;
    }
    std::string_view members = line.substr(brace + 1);
    members.remove_prefix(std::min(members.find_first_not_of(" \t"), members.size()));
    if (shortIdLength(members) > 0) {
        return LineKind::Event;
    }
    return findNeedle(members, 0) == std::string_view::npos ? LineKind::NoEvent : LineKind::Unclear;
}

} // namespace eventsviewer
