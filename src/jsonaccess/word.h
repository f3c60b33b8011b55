// SWAR: several bytes of a text at a time, as the lanes of one machine word.

#pragma once

#include <cstddef>
#include <cstring>

namespace eventsviewer::jsonaccess {

using Word = std::size_t;

/// The word that has `value` in each byte.
constexpr Word everyByte(unsigned char value)
{
    return ~Word{0} / 0xff * value;
}

/// The word at `text`, which has at least that many bytes and needs no alignment.
inline Word wordAt(const char* text)
{
    Word word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

} // namespace eventsviewer::jsonaccess
