#pragma once

#include "catalog/reason_tables.h"
#include "text/shared_text.h"

#include <json/value.h>

#include <string_view>

namespace eventsviewer {

/// The explanation of the reason that the detail variable `key` of `root` names, or "Failed to
/// retrieve description" where `root` is no object, the variable is missing or no string, or
/// `table` does not know the name: it must be the same to the byte. Of two rows with one name the
/// first counts. Prints nothing.
SharedText lookupReasonExplanation(const Json::Value& root, std::string_view key,
                                   const ReasonTable& table);

} // namespace eventsviewer
