#include "describe/reason_lookup.h"

#include "jsonaccess/json_access.h"

namespace eventsviewer {

SharedText lookupReasonExplanation(const Json::Value& root, std::string_view key,
                                   const ReasonTable& table)
{
    if (root.isObject()) {
        const Json::Value& variable = jsonaccess::get(root, key);
        if (variable.isString()) {
            const std::string_view name = jsonaccess::asCString(variable);
            for (const Reason& reason : table) {
                if (reason.name == name) {
                    return textFromConstant(reason.explanation);
                }
            }
        }
    }
    return textFromLiteral("Failed to retrieve description");
}

} // namespace eventsviewer
