#pragma once

#include "catalog/reason_tables.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace eventsviewer {

/// What takes the place of one "%s": the text of the detail variable `key`, or, with a table, the
/// explanation that it holds for that text.
struct Slot {
    // cppcheck-suppress noExplicitConstructor // in the catalogue a key alone is a slot
    constexpr Slot(const char* variable) : key(variable) {}
    constexpr Slot(const char* variable, const ReasonTable& table) : key(variable), reasons(&table)
    {
    }

    const char* key;
    const ReasonTable* reasons = nullptr;
};

/// What the Detail column says about the event `code`.
struct Description {
    std::int32_t code;
    const char* text;
    std::initializer_list<Slot> slots; ///< in the order of the placeholders; none for a fixed text
};

inline constexpr std::size_t kMaxSlots = 8;

/// Whether every text has one "%s" for each slot of its row, and no more than kMaxSlots. A "%" at
/// the end of a line is the only other one allowed: the C library prints it as it is. A text
/// without slots is never formatted, so it may not have a "%" at all.
template <std::size_t rowCount>
constexpr bool placeholdersMatchSlots(const Description (&rows)[rowCount])
{
    for (const Description& row : rows) {
        const std::string_view text = row.text;
        std::size_t placeholders = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] != '%') {
                continue;
            }
            const char conversion = i + 1 < text.size() ? text[i + 1] : '\0';
            if (conversion == 's') {
                ++placeholders;
            } else if (conversion != '\n' || row.slots.size() == 0) {
                return false;
            }
        }
        if (placeholders != row.slots.size() || placeholders > kMaxSlots) {
            return false;
        }
    }
    return true;
}

} // namespace eventsviewer
