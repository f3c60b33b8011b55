// The second copy of the vocabulary: the text files of this folder, written by hand. The tests
// compare the program's own tables with it, and the reference takes its words from it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace eventsviewer::vocabulary {

struct EventName {
    std::int32_t code;
    std::string name;
};

struct Reason {
    std::string table; ///< the name of its ReasonTable
    std::string name;
    std::string explanation;
};

/// What is filled in at one place of a description.
struct Slot {
    std::string key;
    std::string table; ///< of the ReasonTable that explains the variable; empty if none does
};

/// The text of a description, cut at its slots: the first piece, the first slot, the second piece,
/// and so on. There is one piece more than slots.
struct Description {
    std::int32_t code;
    std::vector<std::string> pieces;
    std::vector<Slot> slots;
};

constexpr const char* kEventNamesFile = "tests/vocabulary/event_names.txt";
constexpr const char* kReasonsFile = "tests/vocabulary/reasons.txt";
constexpr const char* kDescriptionsFile = "tests/vocabulary/descriptions.txt";

/// The rows of the files. Codes ascend, and no table has two reasons with one name: any other file,
/// or a row of another form, is refused with an exception that names the line.
const std::vector<EventName>& eventNames();
const std::vector<Reason>& reasons();
const std::vector<Description>& descriptions();

/// The value of `reason`, which is its place in its table.
std::ptrdiff_t valueOf(const Reason& reason);

/// The row as its file has it.
std::string asRow(const EventName& event);
std::string asRow(const Reason& reason);
std::string asRow(const Description& description);

} // namespace eventsviewer::vocabulary
