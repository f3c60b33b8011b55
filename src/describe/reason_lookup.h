#pragma once

#include "catalog/reason_tables.h"
#include "describe/variables.h"
#include "text/shared_text.h"

#include <string_view>

namespace eventsviewer {

/// The explanation of the reason that the variable `key` names, or "Failed to retrieve description"
/// if the variable is missing or not a string, or if `table` does not have exactly that name. The
/// first of two rows with the same name wins. Prints nothing.
SharedText lookupReasonExplanation(const Variables& variables, std::string_view key,
                                   const ReasonTable& table);

} // namespace eventsviewer
