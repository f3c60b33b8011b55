#pragma once

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace eventsviewer::reference {

// A second, simple implementation of the program. Every line goes through a string stream and a
// reader made for it. Every value is copied, and every table goes through a string stream. Nothing
// is shared with the program's source, not even the tables: the words come from the second copy in
// tests/vocabulary/. Tests compare the program's output with the output of this.

/// As recentEventsTable of the program: the table of the newest `count` events, with the same
/// diagnostics on std::cout.
std::string recentEventsTable(const std::string& inputPath, std::size_t count);

/// As allEventsTable of the program.
std::string allEventsTable(const std::string& inputPath);

/// As describeEvent of the program.
std::string describeEvent(std::int32_t code, const std::string& details);

// The steps of the above, for a test of one of them.

struct Event {
    std::string details;
    std::int32_t code;
    std::string time;
};

/// The event on `line`, with the diagnostics of reading it; null for a line without an event.
std::unique_ptr<Event> eventOf(const std::string& line);

/// The row of `event`, whose description is `detail`.
std::string rowOf(const Event& event, std::string detail);

/// The value that `text` holds, with the diagnostic of a broken one.
Json::Value parsed(const std::string& text);

/// As eventNameFor of the program.
std::string nameOf(std::int32_t code);

/// As lookupReasonExplanation of the program, in the ReasonTable with this name.
std::string explanationOf(const Json::Value& root, const std::string& key,
                          const std::string& table);

/// The description of an event whose details were parsed to `root`.
std::string describeParsed(std::int32_t code, const Json::Value& root);

} // namespace eventsviewer::reference
