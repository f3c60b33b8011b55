// Why a glance at a line can replace its parse:
//
// - Parsing ends the process only where more than 1000 objects and arrays are nested, which takes
//   more than 1000 bytes. A shorter line is safe.
// - A line carries an event if its object has a member "id". That key is written `"id"`, or with
//   one of its letters as an escape, which begins with `\u006`. A line that has neither behind its
//   first brace has no such member.
// - Parsing prints only what the conversion of "id" has to say, and that is nothing for a number
//   of up to nine digits: it fits 32 bits. When the number is the object's first member and a comma
//   or brace follows, the parser has stored it; damage behind it cannot take it back, only a second
//   "id" can replace it.

#include "eventlog/line_kind.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace eventsviewer {

namespace {

constexpr std::size_t kSafeLength = 1000;
constexpr std::size_t kSafeDigits = 9;

// The ways to write the key "id" all contain one of these.
constexpr std::size_t kMarkLength = 4;
constexpr char kIdKey[] = "\"id\"";
constexpr char kEscapedLetter[] = "u006";

// By the last byte of a window of four: how far on the next window that can be a mark lies. 0 if
// this one can.
constexpr std::array<std::uint8_t, 256> makeSteps()
{
    std::array<std::uint8_t, 256> steps = {};
    for (std::uint8_t& step : steps) {
        step = kMarkLength;
    }
    for (const char* const mark : {kEscapedLetter, kIdKey}) {
        for (std::size_t i = 0; i < kMarkLength; ++i) {
            steps[static_cast<unsigned char>(mark[i])] =
                static_cast<std::uint8_t>(kMarkLength - 1 - i);
        }
    }
    return steps;
}

constexpr std::array<std::uint8_t, 256> kSteps = makeSteps();

// Most of a log's bytes are looked at here, so three in four are stepped over.
bool mayHoldIdKey(std::string_view text)
{
    std::size_t last = kMarkLength - 1;
    while (last < text.size()) {
        std::size_t step = kSteps[static_cast<unsigned char>(text[last])];
        if (step == 0) {
            const char* const window = text.data() + last - (kMarkLength - 1);
            if (std::memcmp(window, kIdKey, kMarkLength) == 0 ||
                std::memcmp(window, kEscapedLetter, kMarkLength) == 0) {
                return true;
            }
            step = kMarkLength - 1; // the last byte of a mark is at most its first as well
        }
        last += step;
    }
    return false;
}

char byteAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? text[position] : '\0';
}

std::size_t skipBlanks(std::string_view text, std::size_t position)
{
    while (byteAt(text, position) == ' ' || byteAt(text, position) == '\t') {
        ++position;
    }
    return position;
}

// The position behind a first member "id" that is a small number and what ends it; 0 if the object
// begins in another way.
std::size_t behindPlainId(std::string_view object)
{
    std::size_t at = skipBlanks(object, 1);
    if (object.compare(at, kMarkLength, kIdKey) != 0) {
        return 0;
    }
    at = skipBlanks(object, at + kMarkLength);
    if (byteAt(object, at) != ':') {
        return 0;
    }
    at = skipBlanks(object, at + 1);
    const std::size_t firstDigit = at;
    while (byteAt(object, at) >= '0' && byteAt(object, at) <= '9') {
        ++at;
    }
    const std::size_t digits = at - firstDigit;
    at = skipBlanks(object, at);
    const bool ended = byteAt(object, at) == ',' || byteAt(object, at) == '}';
    return digits > 0 && digits <= kSafeDigits && ended ? at + 1 : 0;
}

} // namespace

LineKind kindOfLine(std::string_view line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return LineKind::NoEvent;
    }
    const std::string_view object = line.substr(brace);
    if (object.size() >= kSafeLength) {
        return LineKind::Unclear;
    }
    const std::size_t behindId = behindPlainId(object);
    if (mayHoldIdKey(object.substr(behindId))) {
        return LineKind::Unclear;
    }
    return behindId > 0 ? LineKind::PlainEvent : LineKind::NoEvent;
}

} // namespace eventsviewer
