#include "describe/catalog_list.h"

#include "catalog/event_names.h"
#include "describe/describe_event.h"
#include "describe/description.h"
#include "describe/reason_variables.h"
#include "jsonaccess/json_content.h"

namespace eventsviewer {

namespace {

// The template with the keys of its variables: "Reason: {no_service_reason}; {detail}".
std::string withKeys(const Description& description)
{
    std::string text = description.text;
    std::size_t from = 0;
    for (const Slot& slot : description.slots) {
        const std::string key = '{' + std::string(slot.key) + '}';
        from = text.find("%s", from);
        text.replace(from, 2, key);
        from += key.size();
    }
    return text;
}

std::string quoted(std::string_view text)
{
    return '"' + jsonaccess::jsonContent(text) + '"';
}

void appendItem(std::string& list, const std::string& item)
{
    list += list.empty() ? "" : ",";
    list += item;
}

} // namespace

std::string catalogWords(std::int32_t code)
{
    const Description* const description = findDescription(code);
    std::string text = eventNameFor(code);
    if (description != nullptr) {
        text += '\n' + withKeys(*description);
        for (const Slot& slot : description->slots) {
            if (const ReasonTable* const reasons = reasonsFor(slot.key)) {
                for (const auto& reason : *reasons) {
                    text += std::string("\n- ") + reason.name + ": " + reason.explanation;
                }
            }
        }
    }
    return text;
}

std::string catalogText(std::int32_t code, std::string_view words)
{
    std::string text = std::to_string(code);
    text.insert(0, text.size() < 4 ? 4 - text.size() : 0, ' ');
    text += ' ';
    for (const char c : words) {
        text += c;
        text += c == '\n' ? "     " : "";
    }
    return text + '\n';
}

std::string catalogJson(std::int32_t code)
{
    const Description* const description = findDescription(code);
    std::string variables;
    std::string reasons;
    for (const Slot& slot :
         description != nullptr ? description->slots : std::initializer_list<Slot>()) {
        appendItem(variables, quoted(slot.key));
        if (const ReasonTable* const table = reasonsFor(slot.key)) {
            std::string rows;
            for (const auto& reason : *table) {
                appendItem(rows, quoted(reason.name) + ':' + quoted(reason.explanation));
            }
            appendItem(reasons, quoted(slot.key) + ":{" + rows + '}');
        }
    }
    return R"({"code":)" + std::to_string(code) + R"(,"event":)" + quoted(eventNameFor(code)) +
           R"(,"template":)" + quoted(description != nullptr ? description->text : "") +
           R"(,"variables":[)" + variables + R"(],"reasons":{)" + reasons + "}}";
}

} // namespace eventsviewer
