#include "query/query.h"

#include "catalog/event_names.h"
#include "describe/describe_event.h"
#include "describe/description.h"
#include "describe/reason_variables.h"
#include "eventlog/escapes.h"
#include "jsonaccess/json_content.h"
#include "query/messages.h"

namespace eventsviewer::query {

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

// All words about one event.
std::string wordsOf(std::int32_t code, const Description* description)
{
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

// One event for a person:
//
//     1229 MODEM_OUT_OF_NETWORK
//          This terminal fell out of network.
//          Reason: {out_of_network_reason}
//          - NO_UCP: Failed to receive UCP messages; Last slot was allocated ~%u seconds ago
std::string tableEntry(std::int32_t code, std::string_view words)
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

void appendString(std::string& out, std::string_view text)
{
    out += '"' + jsonaccess::jsonContent(text) + '"';
}

std::string jsonEntry(std::int32_t code, const Description* description)
{
    std::string text = R"({"code":)" + std::to_string(code) + R"(,"event":)";
    std::string variables;
    std::string reasons;
    appendString(text, eventNameFor(code));
    text += R"(,"template":)";
    appendString(text, description != nullptr ? description->text : "");
    for (const Slot& slot :
         description != nullptr ? description->slots : std::initializer_list<Slot>()) {
        variables += variables.empty() ? "" : ",";
        appendString(variables, slot.key);
        const ReasonTable* const table = reasonsFor(slot.key);
        if (table == nullptr) {
            continue;
        }
        reasons += reasons.empty() ? "" : ",";
        appendString(reasons, slot.key);
        const char* before = ":{";
        for (const auto& reason : *table) {
            reasons += before;
            appendString(reasons, reason.name);
            reasons += ':';
            appendString(reasons, reason.explanation);
            before = ",";
        }
        reasons += '}';
    }
    return text + R"(,"variables":[)" + variables + R"(],"reasons":{)" + reasons + "}}\n";
}

} // namespace

int listCatalog(const Options& options)
{
    bool anyFound = false;
    for (const std::int32_t code : knownEventCodes()) {
        const Description* const description = findDescription(code);
        const std::string words = wordsOf(code, description);
        if (options.events.selects(code) && options.text.matches(words)) {
            output() += options.format == Format::Json ? jsonEntry(code, description)
                                                       : tableEntry(code, words);
            anyFound = true;
        }
    }
    flushOutput();
    return anyFound ? kFound : kNothingFound;
}

} // namespace eventsviewer::query
