#include "jsonaccess/json_content.h"

#include "jsonaccess/word.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace eventsviewer::jsonaccess {

namespace {

// What need not be looked at: printable ASCII but two characters, the ones that a JSON string
// escapes or kNone, which is not printable anyway.
constexpr char kNone = '\x7f';

template <char quote, char backslash> bool isPlain(char c)
{
    return c >= ' ' && c < '\x7f' && c != quote && c != backslash;
}

// SWAR: whether each byte of `word` is plain. May report false negatives, never false positives.
template <char quote, char backslash> bool arePlain(Word word)
{
    const Word others = word | (word - everyByte(' ')) | (word + everyByte(1)) |
                        ((word ^ everyByte(quote)) - everyByte(1)) |
                        ((word ^ everyByte(backslash)) - everyByte(1));
    return (others & everyByte(0x80)) == 0;
}

bool isSafe(char32_t code)
{
    const bool control = code < 0x20 || (code >= 0x7f && code <= 0x9f);
    const bool bidirectional = code == 0x61c || code == 0x200e || code == 0x200f ||
                               (code >= 0x202a && code <= 0x202e) ||
                               (code >= 0x2066 && code <= 0x2069);
    const bool endsLine = code == 0x2028 || code == 0x2029;
    return !control && !bidirectional && !endsLine;
}

constexpr std::ptrdiff_t kWordBytes = sizeof(Word);
constexpr unsigned kReplacement = 0xfffd; // for what is not UTF-8

char* putJsonCharacter(char* to, const Character& character, const char* bytes)
{
    if (character.code == '"' || character.code == '\\') {
        *to++ = '\\';
        *to++ = *bytes;
    } else if (!character.valid || !character.safe) {
        const unsigned code = character.valid ? character.code : kReplacement;
        to += std::snprintf(to, mostJsonBytes(1), "\\u%04x", code);
    } else {
        to = std::copy(bytes, bytes + character.bytes, to);
    }
    return to;
}

template <char quote, char backslash> char* put(char* to, std::string_view text)
{
    const char* from = text.data();
    const char* const end = from + text.size();
    while (from != end) {
        // A word is copied before it is known how much of it is plain.
        while (end - from >= kWordBytes) {
            const Word word = wordAt(from);
            std::memcpy(to, &word, sizeof word);
            if (!arePlain<quote, backslash>(word)) {
                break;
            }
            from += kWordBytes;
            to += kWordBytes;
        }
        // The last bytes, with those before them once more.
        if (end - from < kWordBytes && end - text.data() >= kWordBytes &&
            arePlain<quote, backslash>(wordAt(end - kWordBytes))) {
            std::memcpy(to + (end - from) - kWordBytes, end - kWordBytes, sizeof(Word));
            return to + (end - from);
        }
        while (from != end && isPlain<quote, backslash>(*from)) {
            *to++ = *from++;
        }
        if (from == end) {
            break;
        }
        if (*from == '\n') { // as in most details
            *to++ = '\\';
            *to++ = 'n';
            ++from;
            continue;
        }
        const Character character = firstCharacter({from, static_cast<std::size_t>(end - from)});
        to = putJsonCharacter(to, character, from);
        from += character.bytes;
    }
    return to;
}

} // namespace

Character firstCharacter(std::string_view text)
{
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return {first, 1, true, isSafe(first)};
    }
    const std::size_t bytes = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < bytes) {
        return {first};
    }
    char32_t code = first & (0x7fU >> bytes);
    for (std::size_t at = 1; at < bytes; ++at) {
        if ((byte(at) & 0xc0U) != 0x80) {
            return {first};
        }
        code = (code << 6U) | (byte(at) & 0x3fU);
    }
    const bool overlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code < 0x10000);
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    if (overlong || surrogate || code > 0x10ffff) {
        return {first};
    }
    return {code, bytes, true, isSafe(code)};
}

char* putJsonContent(char* to, std::string_view text)
{
    return put<'"', '\\'>(to, text);
}

char* putJson(char* to, std::string_view json)
{
    return put<kNone, kNone>(to, json);
}

std::string jsonContent(std::string_view text)
{
    std::string content(mostJsonBytes(text.size()), '\0');
    content.resize(static_cast<std::size_t>(putJsonContent(content.data(), text) - content.data()));
    return content;
}

} // namespace eventsviewer::jsonaccess
