#pragma once

#include "catalog/reason_tables.h"

#include <string_view>

namespace eventsviewer {

struct Description;
class Variables;

/// The reason that an event gives in one of its variables.
struct GivenReason {
    std::string_view name;        ///< as the log has it; empty if the event gives none
    std::string_view explanation; ///< empty if no ReasonTable has the name
    bool shown = false;           ///< whether the description shows the explanation
};

/// The reason among `variables`: the one that `description` explains, if it is not null, else the
/// first variable that holds a reason in any event. Valid as long as `variables`. Prints
/// nothing.
GivenReason reasonOf(const Description* description, const Variables& variables);

/// The ReasonTable for the variable `key`, whatever the event; null if there is none.
const ReasonTable* reasonsFor(std::string_view key);

} // namespace eventsviewer
