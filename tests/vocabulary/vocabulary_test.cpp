// The program's tables beside their second copy, row by row and both ways.

#include "catalog/event_name_table.h"
#include "describe/description_catalog.h"
#include "vocabulary/reason_table_list.h"
#include "vocabulary/same_rows.h"
#include "vocabulary/vocabulary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace eventsviewer {
namespace {

std::string quoted(std::string text)
{
    for (std::size_t at = 0; (at = text.find_first_of("\"\\\n", at)) != std::string::npos;
         at += 2) {
        text.replace(at, 1, text[at] == '\n' ? "\\n" : std::string("\\") + text[at]);
    }
    return '"' + text + '"';
}

std::string asSource(const vocabulary::EventName& event)
{
    return "    {" + std::to_string(event.code) + ", " + quoted(event.name) + "},";
}

std::string asSource(const vocabulary::Reason& reason)
{
    return "    { N, " + quoted(reason.name) + ", " + quoted(reason.explanation) + "}, // in k" +
           reason.table + ", N is its place";
}

std::string asSource(const vocabulary::Description& description)
{
    std::string text = description.pieces.front();
    std::string slots;
    for (std::size_t i = 0; i < description.slots.size(); ++i) {
        const vocabulary::Slot& slot = description.slots[i];
        const std::string key = quoted(slot.key);
        text += "%s" + description.pieces[i + 1];
        slots += (slots.empty() ? "" : ", ") +
                 (slot.table.empty() ? key : '{' + key + ", " + slot.table + '}');
    }
    return "    {" + std::to_string(description.code) + ", " + quoted(text) + ", {" + slots + "}},";
}

vocabulary::Description descriptionOf(const Description& row)
{
    vocabulary::Description description = {row.code, {}, {}};
    std::string text = row.text;
    for (const Slot& slot : row.slots) {
        const std::size_t end = text.find("%s");
        description.pieces.push_back(text.substr(0, end));
        description.slots.push_back(
            {slot.key, slot.reasons != nullptr ? nameOf(*slot.reasons) : ""});
        text.erase(0, end + 2);
    }
    description.pieces.push_back(text);
    return description;
}

TEST(Vocabulary, HasTheEventNamesOfTheProgram)
{
    std::vector<vocabulary::EventName> rows;
    for (const EventName& row : EventNameTable) {
        rows.push_back({row.code, row.name});
    }
    vocabulary::expectSameRows(
        rows, "src/catalog/event_name_table.h",
        [](const vocabulary::EventName& row) { return asSource(row); }, vocabulary::eventNames(),
        vocabulary::kEventNamesFile);
}

TEST(Vocabulary, HasTheReasonsOfTheProgram)
{
    std::vector<vocabulary::Reason> rows;
    for (const auto& [name, table] : reasonTablesByName()) {
        for (const Reason& row : *table) {
            rows.push_back({name, row.name, row.explanation});
        }
    }
    vocabulary::expectSameRows(
        rows, "src/catalog/reason_tables.cpp",
        [](const vocabulary::Reason& row) { return asSource(row); }, vocabulary::reasons(),
        vocabulary::kReasonsFile);
}

TEST(Vocabulary, HasTheDescriptionsOfTheProgram)
{
    std::vector<vocabulary::Description> rows;
    for (const Description& row : DescriptionCatalog) {
        rows.push_back(descriptionOf(row));
    }
    vocabulary::expectSameRows(
        rows, "src/describe/description_catalog.h",
        [](const vocabulary::Description& row) { return asSource(row); },
        vocabulary::descriptions(), vocabulary::kDescriptionsFile);
}

} // namespace
} // namespace eventsviewer
