#include "describe/reason_lookup.h"

namespace eventsviewer {

SharedText lookupReasonExplanation(const Variables& variables, std::string_view key,
                                   const ReasonTable& table)
{
    if (variables.isText(key)) {
        const std::string_view name = variables.text(key);
        for (const Reason& reason : table) {
            if (reason.name == name) {
                return textFromConstant(reason.explanation);
            }
        }
    }
    return textFromLiteral("Failed to retrieve description");
}

} // namespace eventsviewer
