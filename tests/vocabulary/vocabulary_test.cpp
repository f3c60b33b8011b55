// Compares the program's tables with their second copy, row by row and in both directions.

#include "catalog/event_name_table.h"
#include "catalog/event_names.h"
#include "catalog/reason_tables.h"
#include "describe/description_catalog.h"
#include "vocabulary/vocabulary.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace eventsviewer {
namespace {

// In the order of src/catalog/reason_tables.h.
const std::pair<std::string, const ReasonTable*> kReasonTables[] = {
#include "reason_table_rows.inc" // written by CMake
};

// Empty if there is no table.
std::string nameOf(const ReasonTable* wanted)
{
    for (const auto& [name, table] : kReasonTables) {
        if (table == wanted) {
            return name;
        }
    }
    return "";
}

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
    return "    {" + quoted(reason.name) + ", " + quoted(reason.explanation) + "},";
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
        description.slots.push_back({slot.key, nameOf(slot.reasons)});
        text.erase(0, end + 2);
    }
    description.pieces.push_back(text);
    return description;
}

void compareNames(const std::vector<vocabulary::EventName>& inSource,
                  const std::vector<vocabulary::EventName>& inList)
{
    expectSameRows(inSource, "S", inList, "L");
}

TEST(ExpectSameRows, NamesTheRowAndTheFileOfEachDifference)
{
    compareNames({{1, "A"}, {2, "B"}}, {{1, "A"}, {2, "B"}});
    EXPECT_NONFATAL_FAILURE(compareNames({{1, "A"}, {2, "B"}}, {{1, "A"}}),
                            "L lacks 2, which S has. Add the row\n2 B");
    EXPECT_NONFATAL_FAILURE(compareNames({{1, "A"}}, {{1, "A"}, {2, "B"}}),
                            "S lacks 2, which L has. Add the row\n    {2, \"B\"},");
    EXPECT_NONFATAL_FAILURE(
        compareNames({{1, "A"}, {2, "B"}}, {{1, "A"}, {2, "C"}}),
        "The copies of 2 differ. Either S needs the row\n    {2, \"C\"},\nor L needs the row\n2 B");
    EXPECT_NONFATAL_FAILURE(compareNames({{1, "A"}, {2, "B"}}, {{2, "B"}, {1, "A"}}),
                            "The order differs: S has 1 where L has 2");
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
    for (const auto& [name, table] : kReasonTables) {
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
        EXPECT_NE(knownEventName(row.code), "") << "src/catalog/event_name_table.h lacks it";
    }
    expectSameRows(rows, "src/describe/description_catalog.h", vocabulary::descriptions(),
                   vocabulary::kDescriptionsFile);
}

} // namespace
} // namespace eventsviewer
