// Compares the program's tables with their second copy, row by row and in both directions.

#include "catalog/event_name_table.h"
#include "describe/description_catalog.h"
#include "vocabulary/reason_table_list.h"
#include "vocabulary/vocabulary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

std::string keyOf(const vocabulary::EventName& event)
{
    return std::to_string(event.code);
}

std::string keyOf(const vocabulary::Reason& reason)
{
    return reason.table + ' ' + reason.name;
}

std::string keyOf(const vocabulary::Description& description)
{
    return std::to_string(description.code);
}

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
    return "    { " + std::to_string(valueOf(reason)) + ", " + quoted(reason.name) + ", " +
           quoted(reason.explanation) + "},";
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

/// Expects that a table of the program has the rows of a file of the second copy, in the same order
/// and no other. A failure prints the row to add and the file that needs it.
template <typename Row>
void expectSameRows(const std::vector<Row>& inSource, const std::string& sourceFile,
                    const std::vector<Row>& inList, const std::string& listFile)
{
    const auto find = [](const std::vector<Row>& rows, const Row& wanted) {
        return std::find_if(rows.begin(), rows.end(),
                            [&](const Row& row) { return keyOf(row) == keyOf(wanted); });
    };
    bool haveSameKeys = true;
    for (const Row& row : inSource) {
        const auto listed = find(inList, row);
        if (listed == inList.end()) {
            ADD_FAILURE() << listFile << " lacks " << keyOf(row) << ", which " << sourceFile
                          << " has. Add the row\n"
                          << asRow(row);
            haveSameKeys = false;
        } else if (asRow(row) != asRow(*listed) || asSource(row) != asSource(*listed)) {
            ADD_FAILURE() << "The copies of " << keyOf(row) << " differ. Either " << sourceFile
                          << " needs the row\n"
                          << asSource(*listed) << "\nor " << listFile << " needs the row\n"
                          << asRow(row);
        }
    }
    for (const Row& row : inList) {
        if (find(inSource, row) == inSource.end()) {
            ADD_FAILURE() << sourceFile << " lacks " << keyOf(row) << ", which " << listFile
                          << " has. Add the row\n"
                          << asSource(row);
            haveSameKeys = false;
        }
    }
    for (std::size_t i = 0; haveSameKeys && i < inSource.size(); ++i) {
        if (keyOf(inList[i]) != keyOf(inSource[i])) {
            ADD_FAILURE() << "The order differs: " << sourceFile << " has " << keyOf(inSource[i])
                          << " where " << listFile << " has " << keyOf(inList[i]);
            break;
        }
    }
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
    expectSameRows(rows, "src/catalog/event_name_table.h", vocabulary::eventNames(),
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
    expectSameRows(rows, "src/catalog/reason_tables.cpp", vocabulary::reasons(),
                   vocabulary::kReasonsFile);
}

TEST(Vocabulary, HasTheDescriptionsOfTheProgram)
{
    std::vector<vocabulary::Description> rows;
    for (const Description& row : DescriptionCatalog) {
        rows.push_back(descriptionOf(row));
    }
    expectSameRows(rows, "src/describe/description_catalog.h", vocabulary::descriptions(),
                   vocabulary::kDescriptionsFile);
}

} // namespace
} // namespace eventsviewer
