// The input is the variables of one event, as JSON, behind two bytes that choose the event's code.
//
// - The description is what the plainest way of filling the template gives, with its diagnostics.
// - The variables come through the log as the plainest way of rewriting them brings them.
// - Where the variables are no object, the description is that of no variables, and each variable
// that
//   is asked for as it stands is reported.
// - The same variables give the same description again.

#include "checks.h"
#include "describe/describe_event.h"
#include "describe/description_catalog.h"
#include "eventlog/event_line.h"
#include "reference/naive.h"
#include "reference/naive_json.h"
#include "support/captured_cout.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace eventsviewer::fuzz {

namespace {

// One of the described codes, or one that has no description.
std::int32_t chosenCode(const std::uint8_t* choice)
{
    const std::size_t row =
        static_cast<std::size_t>(choice[0] * 256 + choice[1]) % (std::size(DescriptionCatalog) + 1);
    return row < std::size(DescriptionCatalog) ? DescriptionCatalog[row].code : 0;
}

struct Output {
    std::string printed;
    std::string text;
};

Output describe(std::int32_t code, const std::string& details)
{
    const CapturedCout printed;
    std::string text = describeEvent(code, textFromLiteral(details.c_str())).characters();
    return {printed.text(), std::move(text)};
}

Output describePlainly(std::int32_t code, const std::string& details)
{
    const CapturedCout printed;
    std::string text = reference::describeEvent(code, details);
    return {printed.text(), std::move(text)};
}

// What can have members, or is nothing at all.
bool isObjectOrNull(const std::string& details)
{
    const CapturedCout silence;
    Json::Value root;
    std::istringstream stream(details);
    reference::extract(stream, root);
    return root.isObject() || root.isNull();
}

Output describeWithoutMembers(std::int32_t code)
{
    Output output = {"", describe(code, "{}").text};
    for (const Description& description : DescriptionCatalog) {
        if (description.code != code) {
            continue;
        }
        for (const Slot& slot : description.slots) {
            if (slot.reasons == nullptr) {
                output.printed += "Tarvik workaround: in Json::Value::find(begin, end): requires "
                                  "objectValue or nullValue\n";
            }
        }
    }
    return output;
}

// Without the diagnostic of a text that breaks.
std::string withoutParseDiagnostic(const std::string& printed)
{
    const std::size_t parse = printed.find("error occured in IStream");
    if (parse == std::string::npos) {
        return printed;
    }
    return printed.substr(std::min(printed.find("\n\n") + 2, printed.size()));
}

void checkDescription(std::int32_t code, const std::string& details)
{
    const Output actual = describe(code, details);
    if (isObjectOrNull(details)) {
        const Output plain = describePlainly(code, details);
        checkSame(actual.text, plain.text, "the template is filled as the plain way fills it");
        checkSame(actual.printed, plain.printed, "diagnostics as the plain way prints them");
    } else {
        const Output empty = describeWithoutMembers(code);
        checkSame(actual.text, empty.text, "what is no object has no variables");
        checkSame(withoutParseDiagnostic(actual.printed), empty.printed,
                  "each variable of what is no object is reported");
    }
    const Output again = describe(code, details);
    checkSame(again.text, actual.text, "the same variables give the same description");
    checkSame(again.printed, actual.printed, "the same variables give the same diagnostics");
}

struct PlainEvent {
    std::string details;
    std::string printed; // by the conversion of the code: the damage itself is not reported
};

// What the plain way makes of `line`, whose first member is an "id". Damage among the variables may
// let the library take one of them for a second "id".
PlainEvent plainEvent(const std::string& line)
{
    const CapturedCout printed;
    Json::Value root;
    std::istringstream stream(line);
    std::cout.setstate(std::ios_base::failbit);
    reference::extract(stream, root);
    std::cout.clear();
    reference::asInt(root["id"]);
    Json::Value& variables = root["vars"];
    if (!variables.isObject()) {
        return {"{}", printed.text()};
    }
    for (const std::string& name : variables.getMemberNames()) {
        if (variables[name].isNull()) {
            variables.removeMember(name);
        }
    }
    const std::string text = reference::compact(variables);
    return {text.substr(0, text.find('\0')), printed.text()};
}

std::string detailsFromLog(std::int32_t code, std::string_view variables)
{
    const std::string line =
        "{\"id\":" + std::to_string(code) + ",\"vars\":" + std::string(variables) + "}";
    const PlainEvent plain = plainEvent(line);
    const CapturedCout printed;
    const auto event = parseEventLine(line);
    check(event != nullptr, "a line that begins with an \"id\" is an event");
    checkSame(printed.text(), plain.printed, "the log's own damage is not reported");
    std::string details = event->details.characters();
    checkSame(details, plain.details, "the variables are rewritten as the plain way does");
    return details;
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace eventsviewer::fuzz;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    // The line around the variables is one level more.
    if (size < 2 || nestsDeeper(text, 999)) {
        return 0;
    }
    const std::int32_t code = chosenCode(data);
    const std::string_view variables = text.substr(2);
    // As they would stand in memory, and as they come out of a log.
    checkDescription(code, std::string(variables.substr(0, variables.find('\0'))));
    checkDescription(code, detailsFromLog(code, variables));
    return 0;
}
