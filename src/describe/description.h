#pragma once

#include "catalog/reason_tables.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace eventsviewer {

/// What takes the place of one "%s": the text of the detail variable `key`, or, with a table, the
/// explanation that it holds for that text.
struct Slot {
    constexpr Slot() = default;
    // cppcheck-suppress noExplicitConstructor // in the catalogue a key alone is a slot
    constexpr Slot(const char* variable) : key(variable) {}
    constexpr Slot(const char* variable, const ReasonTable& table) : key(variable), reasons(&table)
    {
    }

    const char* key = nullptr;
    const ReasonTable* reasons = nullptr;
};

inline constexpr std::size_t kMaxSlots = 8;

/// The slots of one description, in the order of its placeholders.
struct Slots {
    constexpr Slots() = default;
    constexpr Slots(std::initializer_list<Slot> list)
    {
        for (const Slot& slot : list) {
            slots[count++] = slot; // a ninth slot does not compile
        }
    }

    constexpr const Slot* begin() const { return slots; }
    constexpr const Slot* end() const { return slots + count; }

    Slot slots[kMaxSlots];
    std::size_t count = 0;
};

/// What the Detail column says about the event `code`.
struct Description {
    std::int32_t code;
    const char* text;
    Slots slots; ///< none for a fixed text
};

} // namespace eventsviewer
