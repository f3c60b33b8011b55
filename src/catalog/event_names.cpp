#include "catalog/event_names.h"

#include "catalog/event_name_table.h"
#include "catalog/find_code.h"

#include <cinttypes>

namespace eventsviewer {

SharedText eventNameFor(std::int32_t code)
{
    if (const EventName* const row = findCode(EventNameTable, code)) {
        return textFromConstant(row->name);
    }
    return formatText("UNRECOGNIZED_EVENT_CODE_%" PRIu32, static_cast<std::uint32_t>(code));
}

} // namespace eventsviewer
