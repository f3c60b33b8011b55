// Why a check of a line can replace its parse:
//
// - Parsing ends the process only where more than kMostNesting objects and arrays are nested. No
//   line of up to as many bytes can do that.
// - Parsing prints only the diagnostic of the conversion of the member "id": none for a number of
//   up to nine digits, since it fits 32 bits.
// - The key of that member is written `"id"`, or with one of its letters as an escape, `\u0069` or
//   `\u0064`. So a short line is silent if no quote in it begins a key with such an escape, and
//   each `"id"` in it, whatever it may be part of, is followed by a colon and a short number:
//   whichever of them the parser takes for the key, nothing is printed.
// - A line without any of these after its first brace has no event.
// - A line whose object begins with "id" and a short number has one: the parser has stored the
//   member when it comes to the comma or brace after it. Damage further on cannot take it back.
//
// This is about "id" and about what parseEventLine prints, so it is here and not with the other
// facts about the library in jsonaccess/.

#include "eventlog/silent_lines.h"

#include "eventlog/lines.h"
#include "jsonaccess/json_access.h"
#include "jsonaccess/plain_tokens.h"
#include "jsonaccess/word.h"

#include <algorithm>
#include <cstring>

namespace eventsviewer {

namespace {

using jsonaccess::everyByte;
using jsonaccess::Word;
using jsonaccess::wordAt;

constexpr std::size_t kSafeLength = jsonaccess::kMostNesting;

// The needles: every way to write the key "id" begins with one of these.
constexpr std::string_view kIdKey = "\"id\"";
constexpr std::string_view kEscapedI = "\"\\u006";
constexpr std::string_view kEscapedD = "\"i\\u006";

constexpr std::string_view kTime = "time";

// How the keys begin that a line may have once more.
constexpr std::string_view kIdBegin = "\"id";
constexpr std::string_view kTimeBegin = "\"tim";

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
inline std::size_t shortIdLength(std::string_view text, std::int32_t& id)
{
    if (!beginsWith(text, kIdKey)) {
        return 0;
    }
    jsonaccess::PlainTokens tokens(text.substr(kIdKey.size()));
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
    std::int32_t id = 0;
    for (;;) {
        const std::size_t needle = findNeedle(text, from);
        const std::size_t length =
            needle != std::string_view::npos ? shortIdLength(text.substr(needle), id) : 0;
        if (length == 0) {
            return needle;
        }
        from = needle + length;
    }
}

// Whether `text` may have a key that begins with `key`, or one with an escape. The two bytes of the
// key from `pair` on are looked for at once; they should be rare.
template <std::size_t pair> bool mayHaveKey(std::string_view text, std::string_view key)
{
    if (text.find('\\') != std::string_view::npos) {
        return true;
    }
    constexpr std::size_t kStep = 2 * sizeof(Word);
    if (text.size() < kStep + pair + 1) {
        return text.find(key) != std::string_view::npos;
    }
    // SWAR: nothing is skipped that has the pair.
    const Word first = everyByte(static_cast<unsigned char>(key[pair]));
    const Word second = everyByte(static_cast<unsigned char>(key[pair + 1]));
    const auto differences = [first, second](const char* at) {
        return ((wordAt(at + pair) ^ first) | (wordAt(at + pair + 1) ^ second)) - everyByte(1);
    };
    const std::size_t last = text.size() - kStep - pair - 1;
    for (std::size_t at = 0;; at = std::min(at + kStep, last)) {
        const char* const word = text.data() + at;
        const Word hits = differences(word) | differences(word + sizeof(Word));
        if ((hits & everyByte(0x80)) != 0 &&
            text.substr(at, kStep + key.size()).find(key) != std::string_view::npos) {
            return true;
        }
        if (at == last) {
            return false;
        }
    }
}

// What comes after the first brace of `line` and the blanks there; empty if there is no brace.
inline std::string_view membersOf(std::string_view line)
{
    const std::size_t brace = firstBrace(line);
    if (brace == std::string_view::npos) {
        return {};
    }
    std::string_view members = line.substr(brace + 1);
    while (!members.empty() && (members.front() == ' ' || members.front() == '\t')) {
        members.remove_prefix(1);
    }
    return members;
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
    const std::string_view members = membersOf(line);
    std::int32_t id = 0;
    if (shortIdLength(members, id) > 0) {
        return LineKind::Event;
    }
    return findNeedle(members, 0) == std::string_view::npos ? LineKind::NoEvent : LineKind::Unclear;
}

Glance glanceAt(std::string_view line)
{
    const std::string_view members = membersOf(line);
    std::int32_t id = 0;
    const std::size_t length = shortIdLength(members, id);
    if (members.size() >= kSafeLength || mayHaveKey<0>(members.substr(length), kIdBegin)) {
        return {};
    }
    return {length > 0 ? LineKind::Event : LineKind::NoEvent, id};
}

std::optional<std::string_view> timeAtAGlance(std::string_view line)
{
    const std::string_view members = membersOf(line);
    std::int32_t id = 0;
    const std::size_t length = shortIdLength(members, id);
    const bool hasMore = length > 0 && members[length - 1] == ',';
    jsonaccess::PlainTokens tokens(members.substr(length));
    std::string_view key;
    std::string_view time;
    tokens.skipBlanks();
    const bool hasTime = hasMore && tokens.takeQuoted(key) && key == kTime && tokens.takeColon() &&
                         tokens.takeQuoted(time);
    const auto taken = static_cast<std::size_t>(tokens.at() - members.data());
    tokens.skipBlanks();
    // Of a NUL or an escape the library makes something else; some releases refuse a control
    // character.
    const auto isPlain = [](char c) { return c >= ' ' && c != '\\'; };
    if (!hasTime || !(tokens.take(',') || tokens.take('}')) || members.size() >= kSafeLength ||
        !std::all_of(time.begin(), time.end(), isPlain) ||
        mayHaveKey<2>(members.substr(taken), kTimeBegin)) {
        return std::nullopt;
    }
    return time;
}

} // namespace eventsviewer
