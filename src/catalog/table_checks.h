// What the fixed tables promise, checked by the compiler where each table is.

#pragma once

#include <cstddef>
#include <cstdint>

namespace eventsviewer {

template <typename Row, std::size_t rowCount>
constexpr bool codesAscend(const Row (&rows)[rowCount])
{
    for (std::size_t i = 1; i < rowCount; ++i) {
        if (rows[i - 1].code >= rows[i].code) {
            return false;
        }
    }
    return true;
}

template <typename Row, std::size_t rowCount>
constexpr bool namesAreIdentifiers(const Row (&rows)[rowCount])
{
    for (const Row& row : rows) {
        if (row.name[0] == '\0') {
            return false;
        }
        for (const char* p = row.name; *p != '\0'; ++p) {
            const bool allowed = (*p >= 'A' && *p <= 'Z') || (*p >= '0' && *p <= '9') || *p == '_';
            if (!allowed) {
                return false;
            }
        }
    }
    return true;
}

constexpr std::uint64_t hashOf(const char* text)
{
    std::uint64_t hash = 14695981039346656037U; // FNV-1a
    for (; *text != '\0'; ++text) {
        hash = (hash ^ static_cast<unsigned char>(*text)) * 1099511628211U;
    }
    return hash;
}

// Different hashes prove different names; comparing the hashes keeps the proof of some hundred
// names within what compilers are willing to evaluate.
template <typename Row, std::size_t rowCount>
constexpr bool namesAreUnique(const Row (&rows)[rowCount])
{
    std::uint64_t hashes[rowCount] = {};
    for (std::size_t i = 0; i < rowCount; ++i) {
        hashes[i] = hashOf(rows[i].name);
        for (std::size_t j = 0; j < i; ++j) {
            if (hashes[j] == hashes[i]) {
                return false;
            }
        }
    }
    return true;
}

template <typename Row, std::size_t rowCount>
constexpr bool explanationsArePresent(const Row (&rows)[rowCount])
{
    for (const Row& row : rows) {
        if (row.explanation[0] == '\0') {
            return false;
        }
    }
    return true;
}

} // namespace eventsviewer
