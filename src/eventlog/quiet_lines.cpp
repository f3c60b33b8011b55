// Why a glance at a line can replace its parse:
//
// - Parsing ends the process only where more than 1000 objects and arrays are nested. No line of up
//   to 1000 bytes can do that.
// - Parsing prints only what the conversion of the member "id" has to say: nothing for a number of
//   up to nine digits, since it fits 32 bits.
// - The key of that member is written `"id"`, or with one of its letters as an escape, which begins
//   with `\u006`. So a short line is quiet if it has no such escape and each `"id"` in it, whatever
//   it may be part of, is followed by a colon and a short number: whichever of them the parser
//   takes for the key, there is nothing to say.
// - A line without `"id"` and without that escape behind its first brace carries no event.
// - A line whose object begins with "id" and a short number carries one: the parser has stored the
//   member when it comes to the comma or brace behind it. Damage further on cannot take it back.

#include "eventlog/quiet_lines.h"

#include "eventlog/lines.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace eventsviewer {

namespace {

constexpr std::size_t kSafeLength = 1000;
constexpr std::size_t kSafeDigits = 9;

// The marks: every way to write the key "id" has one of these in it.
constexpr std::string_view kIdKey = "\"id\"";
constexpr std::string_view kEscapedLetter = "\\u006";

// Marks are looked for by their first bytes.
constexpr std::size_t kWindow = 4;
static_assert(kIdKey.size() >= kWindow && kEscapedLetter.size() >= kWindow);

// By the last byte of a window: how many bytes further on the next window begins that can be a
// mark's. 0 if this one can.
constexpr std::array<std::uint8_t, 256> makeSteps()
{
    std::array<std::uint8_t, 256> steps = {};
    for (std::uint8_t& step : steps) {
        step = kWindow;
    }
    for (const std::string_view mark : {kEscapedLetter, kIdKey}) {
        for (std::size_t i = 0; i < kWindow; ++i) {
            std::uint8_t& step = steps[static_cast<unsigned char>(mark[i])];
            step = std::min(step, static_cast<std::uint8_t>(kWindow - 1 - i));
        }
    }
    return steps;
}

constexpr std::array<std::uint8_t, 256> kSteps = makeSteps();

// Whether the window at `position` begins a mark.
bool isMark(std::string_view text, std::size_t position)
{
    const char* const window = text.data() + position;
    if (std::memcmp(window, kIdKey.data(), kWindow) == 0) {
        return true;
    }
    return std::memcmp(window, kEscapedLetter.data(), kWindow) == 0 &&
           text.compare(position, kEscapedLetter.size(), kEscapedLetter) == 0;
}

// The position of the first mark at or behind `from`, or npos. Nearly all bytes of a log are looked
// at here, so most are stepped over.
std::size_t findMark(std::string_view text, std::size_t from)
{
    const auto stepAt = [text](std::size_t position) {
        return kSteps[static_cast<unsigned char>(text[position])];
    };
    std::size_t last = from + kWindow - 1;
    while (last < text.size()) {
        std::size_t step = stepAt(last);
        while (step > 0 && last + 3 * kWindow < text.size()) {
            // A step of 0 stays where it is, so the last of some tells of them all.
            last += step;
            last += stepAt(last);
            step = stepAt(last);
        }
        if (step == 0) {
            const std::size_t window = last - (kWindow - 1);
            if (isMark(text, window)) {
                return window;
            }
            step = 1;
        }
        last += step;
    }
    return std::string_view::npos;
}

void skipBlanks(std::string_view& text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
}

// Whether `text` begins with the key "id", a short number and the comma or brace that ends it.
bool beginsWithShortId(std::string_view text)
{
    if (text.size() < kIdKey.size() ||
        std::memcmp(text.data(), kIdKey.data(), kIdKey.size()) != 0) {
        return false;
    }
    text.remove_prefix(kIdKey.size());
    skipBlanks(text);
    if (text.empty() || text.front() != ':') {
        return false;
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
    return digits > 0 && digits <= kSafeDigits && ended;
}

// The position of the first mark that is not an "id" with a short number, or npos.
std::size_t findDoubt(std::string_view text)
{
    std::size_t mark = findMark(text, 0);
    while (mark != std::string_view::npos && beginsWithShortId(text.substr(mark))) {
        mark = findMark(text, mark + kIdKey.size());
    }
    return mark;
}

} // namespace

std::size_t quietLength(std::string_view lines)
{
    std::size_t quiet = 0;
    while (quiet < lines.size()) {
        // Together no longer than one line may be, so that not each line's end must be looked for.
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
    if (beginsWithShortId(members)) {
        return LineKind::Event;
    }
    return findMark(members, 0) == std::string_view::npos ? LineKind::NoEvent : LineKind::Unclear;
}

} // namespace eventsviewer
