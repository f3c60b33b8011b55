#include "reference/samples.h"

#include "reference/naive_json.h"

#include <algorithm>
#include <cctype>

namespace eventsviewer::reference {

namespace {

constexpr const char* kValuesOfOtherTypes[] = {"7",    "-1.5",    "true",         "false",
                                               "null", "[\"x\"]", "{\"x\":\"y\"}"};

std::string quoted(const std::string& text)
{
    return compact(Json::Value(text));
}

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string usualValue(const vocabulary::Slot& slot)
{
    for (const vocabulary::Reason& reason : vocabulary::reasons()) {
        if (reason.table == slot.table) {
            return quoted(reason.name);
        }
    }
    return quoted("the " + slot.key);
}

/// All variables of `description`, with `value` for the one with `key`. An empty `value` leaves it
/// out.
std::string variablesOf(const vocabulary::Description& description, const std::string& key = "",
                        const std::string& value = "")
{
    std::string members;
    for (const vocabulary::Slot& slot : description.slots) {
        const std::string text = slot.key == key ? value : usualValue(slot);
        if (!text.empty()) {
            members += (members.empty() ? "" : ",") + quoted(slot.key) + ':' + text;
        }
    }
    return '{' + members + '}';
}

using Samples = std::vector<Sample>;

void addEveryCode(Samples& samples)
{
    const std::int32_t first = vocabulary::eventNames().front().code - 10;
    const std::int32_t last = vocabulary::eventNames().back().code + 10;
    for (std::int32_t code = first; code <= last; ++code) {
        samples.push_back({code, "code " + std::to_string(code), "{}"});
    }
    for (const std::int32_t code : {INT32_MIN, -last, -first, -1, 0, 1, INT32_MAX}) {
        samples.push_back({code, "code " + std::to_string(code), "{}"});
    }
}

void addWrongVariables(Samples& samples, const vocabulary::Description& description)
{
    for (const vocabulary::Slot& slot : description.slots) {
        samples.push_back({description.code, "no " + slot.key, variablesOf(description, slot.key)});
        for (const std::string value : kValuesOfOtherTypes) {
            samples.push_back(
                {description.code, slot.key, variablesOf(description, slot.key, value)});
        }
    }
}

void addEveryReason(Samples& samples, const vocabulary::Description& description,
                    const vocabulary::Slot& slot)
{
    for (const vocabulary::Reason& reason : vocabulary::reasons()) {
        if (reason.table != slot.table) {
            continue;
        }
        std::vector<std::string> names = namesLike(reason);
        names.push_back(reason.name);
        for (const std::string& name : names) {
            samples.push_back(
                {description.code, name, variablesOf(description, slot.key, quoted(name))});
        }
    }
}

} // namespace

Samples everySample()
{
    Samples samples;
    addEveryCode(samples);
    for (const vocabulary::Description& description : vocabulary::descriptions()) {
        samples.push_back({description.code, "time " + std::to_string(description.code),
                           variablesOf(description)});
        addWrongVariables(samples, description);
        for (const vocabulary::Slot& slot : description.slots) {
            addEveryReason(samples, description, slot);
        }
    }
    return samples;
}

std::vector<std::string> namesLike(const vocabulary::Reason& reason)
{
    const std::string& name = reason.name;
    return {lowerCase(name),   name.substr(1), name.substr(0, name.size() - 1), name + "X",
            " " + name,        name + " ",     std::to_string(valueOf(reason)), "",
            reason.explanation};
}

} // namespace eventsviewer::reference
