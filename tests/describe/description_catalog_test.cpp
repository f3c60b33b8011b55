// The catalogue beside the expected texts and the cases, which are written by hand: neither may
// have what the other lacks.

#include "describe/description_catalog.h"

#include "catalog/find_code.h"
#include "jsonaccess/json_access.h"
#include "support/data_file.h"
#include "support/reason_table_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <string>

namespace eventsviewer {
namespace {

using Rows = std::multiset<std::string>;

/// What `details` have of the variables of `code`, such as "1244 inet_id:text beam_id:missing".
std::string variantOf(std::int32_t code, const Json::Value& details)
{
    std::string variant = std::to_string(code);
    const Description* const row = findCode(DescriptionCatalog, code);
    if (row == nullptr) {
        return variant + " is not described";
    }
    for (const Slot& slot : row->slots) {
        const bool isThere = jsonaccess::isMember(details, slot.key);
        const bool isText = jsonaccess::get(details, slot.key).isString();
        variant += std::string(" ") + slot.key;
        variant += isThere ? isText ? ":text" : ":no text" : ":missing";
    }
    return variant;
}

Json::Value allVariablesOf(const Description& row)
{
    Json::Value details(Json::objectValue);
    for (const Slot& slot : row.slots) {
        details[slot.key] = "text";
    }
    return details;
}

Rows eachWithAllVariables()
{
    Rows rows;
    for (const Description& row : DescriptionCatalog) {
        rows.insert(variantOf(row.code, allVariablesOf(row)));
    }
    return rows;
}

Rows eachWithoutVariables()
{
    Rows rows;
    for (const Description& row : DescriptionCatalog) {
        rows.insert(variantOf(row.code, Json::Value()));
    }
    return rows;
}

Rows eachWithOneVariableMissing()
{
    Rows rows;
    for (const Description& row : DescriptionCatalog) {
        for (const Slot& slot : row.slots) {
            Json::Value details = allVariablesOf(row);
            jsonaccess::removeMember(details, slot.key);
            rows.insert(variantOf(row.code, details));
        }
    }
    return rows;
}

Rows eachWithOneVariableThatIsNoText()
{
    Rows rows;
    for (const Description& row : DescriptionCatalog) {
        for (const Slot& slot : row.slots) {
            Json::Value details = allVariablesOf(row);
            details[slot.key] = 7;
            rows.insert(variantOf(row.code, details));
        }
    }
    return rows;
}

/// A description that tells of a reason, and the reason that the log names.
std::string reasonRow(std::int32_t code, const std::string& key, const std::string& name)
{
    return std::to_string(code) + " " + key + " \"" + name + "\"";
}

/// Each reason of each table in use, by the names that `namesFor` makes of it.
template <typename NamesFor> Rows eachReason(NamesFor namesFor)
{
    Rows rows;
    for (const Description& row : DescriptionCatalog) {
        for (const Slot& slot : row.slots) {
            if (slot.reasons == nullptr) {
                continue;
            }
            for (const Reason& reason : *slot.reasons) {
                for (const std::string& name : namesFor(reason)) {
                    rows.insert(reasonRow(row.code, slot.key, name));
                }
            }
        }
    }
    return rows;
}

Rows byItsName(const Reason& reason)
{
    return {reason.name};
}

Rows altered(const Reason& reason)
{
    const std::string name = reason.name;
    std::string lowerCase = name;
    std::transform(name.begin(), name.end(), lowerCase.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return {lowerCase,
            " " + name,
            name + " ",
            name.substr(0, name.size() - 1),
            name + "X",
            "",
            std::to_string(reason.value)};
}

Json::Value parsed(const std::string& text)
{
    Json::Value value;
    jsonaccess::parse(text, value);
    return value;
}

/// What `toRow` makes of the code and the variables of each line of a case's log.
template <typename ToRow> Rows rowsOfCase(const std::string& name, ToRow toRow)
{
    Rows rows;
    for (const auto& line : readDataFile("cli/cases/" + name + "/log", '\n')) {
        const Json::Value event = parsed(line.at(0));
        rows.insert(
            toRow(jsonaccess::asInt(jsonaccess::get(event, "id")), jsonaccess::get(event, "vars")));
    }
    return rows;
}

template <typename ToRow> Rows rowsOfExpectedTexts(const std::string& file, ToRow toRow)
{
    Rows rows;
    for (const auto& row : readDataFile(file, '\t')) {
        rows.insert(toRow(std::stoi(row.at(0)), parsed(row.at(1))));
    }
    return rows;
}

/// The reason that a description shows; none of them shows two.
std::string reasonOf(std::int32_t code, const Json::Value& details)
{
    const Description* const row = findCode(DescriptionCatalog, code);
    for (const Slot& slot : row != nullptr ? row->slots : Slots()) {
        if (slot.reasons != nullptr) {
            const Json::Value& reason = jsonaccess::get(details, slot.key);
            return reasonRow(code, slot.key, reason.isString() ? reason.asString() : "no text");
        }
    }
    return std::to_string(code) + " shows no reason";
}

Rows operator+(Rows rows, const Rows& more)
{
    rows.insert(more.begin(), more.end());
    return rows;
}

Rows without(const Rows& rows, const Rows& others)
{
    Rows rest;
    std::set_difference(rows.begin(), rows.end(), others.begin(), others.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

void expectSame(const Rows& catalogue, const Rows& listed)
{
    EXPECT_EQ(Rows(), without(catalogue, listed)) << "in the catalogue and not listed";
    EXPECT_EQ(Rows(), without(listed, catalogue)) << "listed and not in the catalogue";
}

TEST(DescriptionCatalog, HasNoVariantThatTheExpectedTextsLeaveOut)
{
    Rows catalogue =
        eachWithAllVariables() + eachWithOneVariableMissing() + eachWithOneVariableThatIsNoText();
    for (const Description& row : DescriptionCatalog) {
        if (row.slots.count != 0) { // with no variables at all, and it can have some
            catalogue.insert(variantOf(row.code, Json::Value()));
        }
    }
    expectSame(catalogue, rowsOfExpectedTexts("describe/descriptions.txt", variantOf));
}

TEST(DescriptionCatalog, HasNoDescriptionThatTheCaseWithAllVariablesLeavesOut)
{
    expectSame(eachWithAllVariables(),
               rowsOfCase("every_description_with_all_its_variables", variantOf));
}

TEST(DescriptionCatalog, HasNoDescriptionThatTheCaseWithoutVariablesLeavesOut)
{
    expectSame(eachWithoutVariables(),
               rowsOfCase("every_description_without_variables", variantOf));
}

TEST(DescriptionCatalog, HasNoVariableThatTheCaseWithOneMissingLeavesOut)
{
    expectSame(eachWithOneVariableMissing(),
               rowsOfCase("every_description_with_one_variable_missing", variantOf));
}

TEST(DescriptionCatalog, HasNoVariableThatTheCaseWithOneThatIsNoTextLeavesOut)
{
    expectSame(eachWithOneVariableThatIsNoText(),
               rowsOfCase("every_description_with_one_variable_not_a_string", variantOf));
}

TEST(DescriptionCatalog, ShowsNoReasonThatTheExpectedTextsLeaveOut)
{
    expectSame(eachReason(byItsName),
               rowsOfExpectedTexts("describe/reason_descriptions.txt", reasonOf));
}

TEST(DescriptionCatalog, ShowsNoReasonThatTheCaseOfReasonsByNameLeavesOut)
{
    expectSame(eachReason(byItsName), rowsOfCase("every_reason_by_its_name", reasonOf));
}

TEST(DescriptionCatalog, ShowsNoReasonThatTheCaseOfAlteredReasonsLeavesOut)
{
    expectSame(eachReason(altered), rowsOfCase("every_reason_altered_is_not_found", reasonOf));
}

TEST(DescriptionCatalog, ReadsNoReasonTableThatTheTestsDoNotKnow)
{
    std::set<const ReasonTable*> known;
    for (const auto& [name, table] : reasonTablesByName()) {
        known.insert(table);
    }
    for (const Description& row : DescriptionCatalog) {
        for (const Slot& slot : row.slots) {
            EXPECT_TRUE(slot.reasons == nullptr || known.count(slot.reasons) == 1)
                << row.code << " " << slot.key;
        }
    }
}

} // namespace
} // namespace eventsviewer
