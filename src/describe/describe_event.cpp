#include "describe/describe_event.h"

#include "catalog/find_code.h"
#include "describe/description_catalog.h"
#include "describe/reason_lookup.h"
#include "describe/variables.h"

#include <string>

namespace eventsviewer {

namespace {

SharedText fillTemplate(const Description& description, const Variables& variables)
{
    static std::string scratch; // the text of each slot and its NUL; its memory is used again
    scratch.clear();
    std::size_t starts[kMaxSlots] = {};
    std::size_t filled = 0;
    for (const Slot& slot : description.slots) {
        starts[filled++] = scratch.size();
        if (slot.reasons != nullptr) {
            scratch += lookupReasonExplanation(variables, slot.key, *slot.reasons).characters();
        } else {
            scratch += variables.text(slot.key);
        }
        scratch += '\0';
    }
    const auto text = [&starts](std::size_t slot) { return &scratch[starts[slot]]; };
    static_assert(kMaxSlots == 8, "one argument for each slot");
    // The format uses as many of the strings as it has placeholders.
    return formatText(description.text, text(0), text(1), text(2), text(3), text(4), text(5),
                      text(6), text(7));
}

} // namespace

SharedText describeEvent(std::int32_t code, const SharedText& details)
{
    const Variables variables({details.characters(), details.length()});
    return describeEvent(findDescription(code), variables);
}

const Description* findDescription(std::int32_t code)
{
    return findCode(DescriptionCatalog, code);
}

SharedText describeEvent(const Description* description, const Variables& variables)
{
    if (description == nullptr) {
        return textFromLiteral("Unknown");
    }
    if (description->slots.size() == 0) {
        return textFromLiteral(description->text);
    }
    return fillTemplate(*description, variables);
}

} // namespace eventsviewer
