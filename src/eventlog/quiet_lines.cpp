// Why a glance at a line can replace its parse:
//
// - Parsing ends the process only where more than 1000 objects and arrays are nested. No line of up
//   to 1000 bytes can do that.
// - Parsing prints only what the conversion of the member "id" has to say: nothing for a number of
//   up to nine digits, since it fits 32 bits.
// - The key of that member is written `"id"`, or with one of its letters as an escape, `\u0069` or
//   `\u0064`. So a short line is quiet if no quote in it begins a key with such an escape, and each
//   `"id"` in it, whatever it may be part of, is followed by a colon and a short number: whichever
//   of them the parser takes for the key, there is nothing to say.
// - A line without any of these behind its first brace carries no event.
// - A line whose object begins with "id" and a short number carries one: the parser has stored the
//   member when it comes to the comma or brace behind it. Damage further on cannot take it back.

#include "eventlog/quiet_lines.h"

#include "eventlog/lines.h"

#include <algorithm>
#include <cstring>

namespace eventsviewer {

namespace {

constexpr std::size_t kSafeLength = 1000;
constexpr std::size_t kSafeDigits = 9;

// The marks: every way to write the key "id" begins with one of these.
constexpr std::string_view kIdKey = "\"id\"";
constexpr std::string_view kEscapedI = "\"\\u006";
constexpr std::string_view kEscapedD = "\"i\\u006";

// Nearly all bytes of a log are looked at here, so as many are taken at a time as the machine can.
using Word = std::size_t;

constexpr Word everyByte(unsigned char value)
{
    return ~Word{0} / 0xff * value;
}

Word wordAt(const char* text)
{
    Word word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

// Whether a mark may begin in the word at `text`, which has a byte behind it: whether a quote
// stands in front of an "i" or a backslash, or of one of the few bytes that have what these two
// share. Each is 0 in the difference below, and 1 less sets its highest bit, as bytes outside ASCII
// have it set.
bool mayBeginMark(const char* text)
{
    constexpr unsigned char kShared = static_cast<unsigned char>(~('i' ^ '\\'));
    const Word first = wordAt(text) ^ everyByte('"');
    const Word second = (wordAt(text + 1) ^ everyByte('i')) & everyByte(kShared);
    return (((first | second) - everyByte(0x01)) & everyByte(0x80)) != 0;
}

bool beginsWithMark(std::string_view text)
{
    const auto beginsWith = [text](std::string_view mark) {
        return text.size() >= mark.size() &&
               std::memcmp(text.data(), mark.data(), mark.size()) == 0;
    };
    return beginsWith(kIdKey) || beginsWith(kEscapedI) || beginsWith(kEscapedD);
}

// The position of the first mark at or behind `from`, or npos.
std::size_t findMark(std::string_view text, std::size_t from)
{
    const char* at = text.data() + from;
    const char* const end = text.data() + text.size();
    const char* const words = end - std::min(sizeof(Word), text.size()); // a word and more to go
    while (at < end) {
        while (at < words && !mayBeginMark(at)) {
            at += sizeof(Word);
        }
        const char* const behind = at < words ? at + sizeof(Word) : end;
        for (; at < behind; ++at) {
            if (*at == '"' && beginsWithMark({at, static_cast<std::size_t>(end - at)})) {
                return static_cast<std::size_t>(at - text.data());
            }
        }
    }
    return std::string_view::npos;
}

void skipBlanks(std::string_view& text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
}

// How many bytes at the beginning of `text` are the key "id", a short number and the comma or brace
// that ends it. 0 if the text begins in another way.
std::size_t shortIdLength(std::string_view text)
{
    const std::size_t length = text.size();
    if (text.size() < kIdKey.size() ||
        std::memcmp(text.data(), kIdKey.data(), kIdKey.size()) != 0) {
        return 0;
    }
    text.remove_prefix(kIdKey.size());
    skipBlanks(text);
    if (text.empty() || text.front() != ':') {
        return 0;
    }
    text.remove_prefix(1);
    skipBlanks(text);
    std::size_t digits = 0;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        text.remove_prefix(1);
        ++digits;
    }
    skipBlanks(text);
    const bool ended = !text.empty() && (text.front() == ',' || text.front() == '}');
    return digits > 0 && digits <= kSafeDigits && ended ? length - text.size() + 1 : 0;
}

// The position of the first mark that is not an "id" with a short number, or npos.
std::size_t findDoubt(std::string_view text)
{
    std::size_t from = 0;
    for (;;) {
        const std::size_t mark = findMark(text, from);
        const std::size_t length =
            mark != std::string_view::npos ? shortIdLength(text.substr(mark)) : 0;
        if (length == 0) {
            return mark;
        }
        from = mark + length;
    }
}

} // namespace

std::size_t quietLength(std::string_view lines)
{
    std::size_t quiet = 0;
    while (quiet < lines.size()) {
        // Whole lines, together no longer than one may be, so that not each one's end must be
        // looked for; none if the next line alone is longer. The last line may lack its line feed.
        std::string_view some = lines.substr(quiet, kSafeLength);
        if (quiet + some.size() < lines.size()) {
            some = some.substr(0, wholeLinesLength(some));
        }
        const std::size_t doubt = findDoubt(some);
        if (some.empty() || doubt != std::string_view::npos) {
            return quiet + wholeLinesLength(some.substr(0, doubt));
        }
        quiet += some.size();
    }
    return quiet;
}

LineKind kindOfQuietLine(std::string_view line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return LineKind::NoEvent;
    }
    std::string_view members = line.substr(brace + 1);
    skipBlanks(members);
    if (shortIdLength(members) > 0) {
        return LineKind::Event;
    }
    return findMark(members, 0) == std::string_view::npos ? LineKind::NoEvent : LineKind::Unclear;
}

} // namespace eventsviewer
