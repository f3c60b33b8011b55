#pragma once

#include "text/shared_text.h"

#include <cstdint>

namespace eventsviewer {

struct Description;
class Variables;

/// The row of the DescriptionCatalog for the event `code`; null if there is none.
const Description* findDescription(std::int32_t code);

/// What the event `code` means in plain English, over one or more lines, with the variables of
/// `details` (a JSON object) filled in; "Unknown" for a code without a description. A missing
/// variable reads as the empty string. May print JSON diagnostics on std::cout: one if `details`
/// does not parse, whatever the code, and one for each variable that is shown as it is and is not a
/// string.
SharedText describeEvent(std::int32_t code, const SharedText& details);

/// The same for an event with this row of the DescriptionCatalog, or none, and `variables` that are
/// read already. Prints one diagnostic for each variable that is shown as it is and is not a
/// string.
SharedText describeEvent(const Description* description, const Variables& variables);

} // namespace eventsviewer
