#include "describe/describe_event.h"

#include "catalog/find_code.h"
#include "describe/description_catalog.h"
#include "describe/reason_lookup.h"
#include "jsonaccess/json_access.h"

#include <string_view>

namespace eventsviewer {

namespace {

const char* plainText(const Json::Value& root, const char* key)
{
    const char* const text = jsonaccess::asCString(jsonaccess::get(root, key));
    return text != nullptr ? text : "";
}

SharedText fillTemplate(const Description& description, const Json::Value& root)
{
    const char* texts[kMaxSlots] = {};
    SharedText explanations[kMaxSlots];
    std::size_t filled = 0;
    for (const Slot& slot : description.slots) {
        if (slot.reasons != nullptr) {
            explanations[filled] = lookupReasonExplanation(root, slot.key, *slot.reasons);
            texts[filled] = explanations[filled].characters();
        } else {
            texts[filled] = plainText(root, slot.key);
        }
        ++filled;
    }
    static_assert(kMaxSlots == 8, "one argument for each slot");
    // The format takes as many of the texts as it has placeholders.
    return formatText(description.text, texts[0], texts[1], texts[2], texts[3], texts[4], texts[5],
                      texts[6], texts[7]);
}

} // namespace

SharedText describeEvent(std::int32_t code, const SharedText& details)
{
    Json::Value root;
    jsonaccess::parse({details.characters(), details.length()}, root);

    const Description* const description = findCode(DescriptionCatalog, code);
    if (description == nullptr) {
        return textFromLiteral("Unknown");
    }
    if (description->slots.count == 0) {
        return textFromLiteral(description->text);
    }
    return fillTemplate(*description, root);
}

} // namespace eventsviewer
