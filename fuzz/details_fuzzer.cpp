// The input is two bytes that choose the code of an event, and the event's variables as JSON.
//
// - The description and its diagnostics are those of the reference.
// - A log line with these variables gives the details that the reference gives.
// - If the variables are not an object, the description is the one without variables, and each
//   variable that no table explains is reported.
// - The same variables give the same description again, whatever was parsed in between.

#include "checks.h"
#include "describe/describe_event.h"
#include "eventlog/event_line.h"
#include "reference/naive.h"
#include "support/captured_cout.h"
#include "vocabulary/vocabulary.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer::fuzz {

namespace {

// A number that is a described code, or 0, is taken as it is, so that the inputs in fuzz/corpus
// keep their codes when rows are added. Any other number chooses a described code by its row.
std::int32_t chosenCode(const std::uint8_t* choice)
{
    const std::vector<vocabulary::Description>& rows = vocabulary::descriptions();
    const int number = choice[0] * 256 + choice[1];
    const bool isDescribed =
        std::any_of(rows.begin(), rows.end(),
                    [number](const vocabulary::Description& row) { return row.code == number; });
    if (number == 0 || isDescribed) {
        return number;
    }
    return rows[static_cast<std::size_t>(number) % rows.size()].code;
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

Output describeWithoutMembers(std::int32_t code)
{
    Output output = {"", describe(code, "{}").text};
    for (const vocabulary::Description& description : vocabulary::descriptions()) {
        if (description.code != code) {
            continue;
        }
        for (const vocabulary::Slot& slot : description.slots) {
            if (slot.table.empty()) {
                output.printed += "Tarvik workaround: in Json::Value::find(begin, end): requires "
                                  "objectValue or nullValue\n";
            }
        }
    }
    return output;
}

// Without the diagnostic of broken JSON.
std::string withoutParseDiagnostic(const std::string& printed)
{
    const std::size_t parse = printed.find("error occured in IStream");
    if (parse == std::string::npos) {
        return printed;
    }
    return printed.substr(std::min(printed.find("\n\n") + 2, printed.size()));
}

Output checkedDescription(std::int32_t code, const std::string& details)
{
    Output actual = describe(code, details);
    // The reference makes a parser for each string, so this one is parsed only once, for both its
    // type and its description.
    const CapturedCout printed;
    const Json::Value root = reference::parsed(details);
    if (root.isObject() || root.isNull()) {
        checkSame(actual.text, reference::describeParsed(code, root),
                  "the template is filled as the reference fills it");
        checkSame(actual.printed, printed.text(), "the diagnostics are those of the reference");
    } else {
        const Output empty = describeWithoutMembers(code);
        checkSame(actual.text, empty.text, "what is not an object has no variables");
        checkSame(withoutParseDiagnostic(actual.printed), empty.printed,
                  "each variable of what is not an object is reported");
    }
    return actual;
}

// The details that a log line with these variables gives.
std::string detailsFromLog(std::int32_t code, std::string_view variables)
{
    const std::string line =
        "{\"id\":" + std::to_string(code) + ",\"vars\":" + std::string(variables) + "}";
    std::unique_ptr<reference::Event> expected;
    std::string expectedOutput;
    {
        const CapturedCout printed;
        expected = reference::eventOf(line);
        expectedOutput = printed.text();
    }
    const CapturedCout printed;
    const auto event = parseEventLine(line);
    check(event != nullptr, "a line that begins with an \"id\" is an event");
    checkSame(printed.text(), expectedOutput, "the log's own damage is not reported");
    std::string details = event->details.characters();
    checkSame(details, expected->details, "the variables are rewritten as the reference does");
    return details;
}

void checkVariables(std::int32_t code, std::string_view variables)
{
    const std::string asTheyAre(variables.substr(0, variables.find('\0')));
    const Output first = checkedDescription(code, asTheyAre);
    const std::string fromLog = detailsFromLog(code, variables);
    if (fromLog != asTheyAre) { // otherwise the next check covers it
        checkedDescription(code, fromLog);
    }
    const Output again = describe(code, asTheyAre);
    checkSame(again.text, first.text, "the same variables give the same description");
    checkSame(again.printed, first.printed, "the same variables give the same diagnostics");
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
    checkVariables(chosenCode(data), text.substr(2));
    return 0;
}
