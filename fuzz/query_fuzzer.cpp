// The input is lines of a log. Each line is read as events-query reads it.
//
// - What is told of a line at a glance is what the reference reads: whether it has an event, its
//   code and its time.
// - What is shown of an event makes the row that the reference makes.
// - The JSON of an event is read by JsonCpp in its strictest mode. It has the time, the code, the
//   name and the detail, but for bytes that JSON cannot hold.
// - One event is one line of "lines", and no format but csv shows a control character.
// - A line without an event, and one that JsonCpp refuses in its strictest mode, has a finding.
// - An event is the same after all this: its diagnostics are those of the reference.

#include "checks.h"
#include "describe/describe_event.h"
#include "describe/line_check.h"
#include "eventlog/event_line.h"
#include "eventlog/silent_lines.h"
#include "query/writers.h"
#include "reference/naive.h"
#include "support/captured_cout.h"

#include <json/json.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace eventsviewer::fuzz {

namespace {

using query::EventView;
using query::Format;

std::string shown(Format format, const EventView& event, std::size_t width = 0)
{
    std::string text;
    query::appendEvent(text, format, {width, false}, event);
    return text;
}

std::string asciiOf(std::string text)
{
    text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c > '\x7f'; }),
               text.end());
    return text;
}

void checkJson(const std::string& json, const reference::Event& event, const std::string& detail)
{
    Json::CharReaderBuilder settings;
    Json::CharReaderBuilder::strictMode(&settings.settings_);
    settings["stackLimit"] = 2000;
    const std::unique_ptr<Json::CharReader> reader(settings.newCharReader());
    Json::Value root;
    Json::String errors;
    const bool isRead = reader->parse(json.data(), json.data() + json.size(), &root, &errors);
    // A number beyond a double is valid, but not every release reads it.
    check(isRead || json.find("1e+9999") != std::string::npos, "the JSON is valid");
    if (isRead) {
        checkSame(asciiOf(root["time"].asString()), asciiOf(event.time), "the time in JSON");
        check(root["code"] == event.code, "the code in JSON");
        checkSame(root["event"].asString(), reference::nameOf(event.code), "the name in JSON");
        checkSame(asciiOf(root["detail"].asString()), asciiOf(detail), "the detail in JSON");
    }
}

void checkFormats(const EventView& event)
{
    const std::string line = shown(Format::Lines, event);
    check(std::count(line.begin(), line.end(), '\t') == 3 && line.find('\n') == line.size() - 1,
          "an event is four columns of one line");
    const std::string csv = shown(Format::Csv, event);
    check(std::count(csv.begin(), csv.end(), '"') % 2 == 0, "each quote in csv is closed");
    for (const std::string& text :
         {line, shown(Format::Table, event), shown(Format::Table, event, 40),
          shown(Format::Table, event, 120), shown(Format::Json, event)}) {
        check(std::none_of(
                  text.begin(), text.end(),
                  [](char c) { return (c < ' ' && c != '\n' && c != '\t') || c == '\x7f'; }) &&
                  text.find("\xc2\x9b") == std::string::npos,
              "no control character is shown");
    }
}

void checkGlance(std::string_view line, const reference::Event* expected)
{
    const Glance glance = glanceAt(line);
    const auto time = timeAtAGlance(line);
    check(glance.kind == LineKind::Unclear ||
              (glance.kind == LineKind::Event) == (expected != nullptr),
          "a glance tells whether there is an event");
    check(glance.kind != LineKind::Event || glance.code == expected->code,
          "a glance tells the code");
    check(!time || expected != nullptr, "only an event has a time");
    if (time) {
        checkSame(*time, expected->time, "a glance tells the time");
    }
}

// A number beyond a double is valid, but not every release reads it.
bool isRefused(std::string_view object)
{
    Json::CharReaderBuilder settings;
    Json::CharReaderBuilder::strictMode(&settings.settings_);
    settings["rejectDupKeys"] = false;
    settings["stackLimit"] = 2000;
    const std::unique_ptr<Json::CharReader> reader(settings.newCharReader());
    Json::Value root;
    Json::String errors;
    return !reader->parse(object.data(), object.data() + object.size(), &root, &errors) &&
           errors.find("is not a number") == std::string::npos;
}

void checkFinding(std::string_view line, const EventRecord* event)
{
    const std::string_view blanks(" \t\r\0", 4);
    const std::string_view object = line.substr(std::min(line.find('{'), line.size()));
    std::optional<Finding> finding;
    if (event == nullptr) {
        finding = findingOf(object, nullptr);
    } else {
        const CapturedCout printed;
        const Variables variables({event->details.characters(), event->details.length()});
        const LineEvent given = {event->code, event->time, variables, findDescription(event->code)};
        finding = findingOf(object, &given);
        notesOf(given);
    }
    check(finding || event != nullptr, "a line without an event has a finding");
    check(finding || !isRefused(object.substr(0, object.find_last_not_of(blanks) + 1)),
          "what a strict parser refuses is found");
    check(!finding || (finding->kind != nullptr && !finding->effect.empty()),
          "a finding has a kind and an effect");
}

void checkLine(std::string_view line)
{
    std::unique_ptr<reference::Event> expected;
    std::string detail;
    std::string expectedOutput;
    {
        const CapturedCout printed;
        expected = reference::eventOf(std::string(line));
        if (expected != nullptr) {
            detail = reference::describeEvent(expected->code, expected->details);
        }
        expectedOutput = printed.text();
    }
    checkGlance(line, expected.get());
    const CapturedCout printed;
    // The library looks at the byte after a carriage return at the end; in a log there is one.
    const std::string text(line);
    std::unique_ptr<EventRecord> record = parseEventLine(text);
    check((record != nullptr) == (expected != nullptr), "whether there is an event");
    checkFinding(line, record.get());
    if (record != nullptr) {
        static const Path path = {"log", "log"};
        EventView event(std::move(record));
        event.log = event.file = &path;
        checkSame(reference::rowOf({"", event.code(), event.time()}, std::string(event.detail())),
                  reference::rowOf(*expected, detail), "the row made of what is shown");
        checkSame(event.name(), reference::nameOf(expected->code), "the name");
        checkFormats(event);
        checkJson(shown(Format::Json, event), *expected, detail);
    }
    checkSame(printed.text(), expectedOutput, "the diagnostics are those of the reference");
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    if (eventsviewer::fuzz::nestsDeeper(rest, 999)) {
        return 0;
    }
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        eventsviewer::fuzz::checkLine(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return 0;
}
