#include "catalog/event_names.h"

#include "catalog/event_name_table.h"
#include "support/data_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>

namespace eventsviewer {
namespace {

std::string nameOf(std::int32_t code)
{
    return eventNameFor(code).characters();
}

std::map<std::int32_t, std::string> expectedNames()
{
    std::map<std::int32_t, std::string> names;
    for (const auto& row : readDataFile("catalog/event_names.txt", ' ')) {
        names[std::stoi(row.at(0))] = row.at(1);
    }
    return names;
}

TEST(EventNameFor, GivesEachCodeItsNameAndEachHoleItsNumber)
{
    const auto names = expectedNames();
    ASSERT_EQ(487U, names.size());
    for (std::int32_t code = -10; code <= 2000; ++code) {
        const auto row = names.find(code);
        if (row != names.end()) {
            EXPECT_EQ(row->second, nameOf(code));
            continue;
        }
        const auto bits = static_cast<std::uint32_t>(code);
        EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_" + std::to_string(bits), nameOf(code));
    }
}

TEST(EventNameFor, KnowsTheFirstAndTheLastCode)
{
    EXPECT_EQ("DID_RECEIVED", nameOf(684));
    EXPECT_EQ("INET_ENCAP_NOT_AVAILABLE", nameOf(1297));
    EXPECT_EQ(684, std::begin(EventNameTable)->code);
    EXPECT_EQ(1297, std::prev(std::end(EventNameTable))->code);
}

TEST(EventNameFor, KnowsNoCodeBesideTheCatalogue)
{
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_683", nameOf(683));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_1298", nameOf(1298));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_0", nameOf(0));
}

TEST(EventNameFor, ShowsACodeInAHoleAsUnrecognized)
{
    EXPECT_EQ("TERM_CHANGED_OWNER", nameOf(688));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_689", nameOf(689));
    EXPECT_EQ("NEW_DID", nameOf(690));
}

TEST(EventNameFor, PrintsANegativeCodeUnsigned)
{
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_4294967295", nameOf(-1));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_2147483648", nameOf(INT32_MIN));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_2147483647", nameOf(INT32_MAX));
    // The bits of -684 are no known code either.
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_4294966612", nameOf(-684));
}

TEST(EventNameFor, AnswersTheSameEachTime)
{
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_5", nameOf(5));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_5", nameOf(5));
    EXPECT_EQ("MODEM_IN_NETWORK", nameOf(1228));
    EXPECT_EQ("MODEM_IN_NETWORK", nameOf(1228));
}

TEST(EventNameFor, GivesNoNameTwice)
{
    std::set<std::string> names;
    for (std::int32_t code = -10; code <= 2000; ++code) {
        EXPECT_TRUE(names.insert(nameOf(code)).second) << code;
    }
}

TEST(EventNameTable, HasNoNameThatTheCaseOfAllNamesLeavesOut)
{
    std::set<std::string> listed;
    for (const auto& line :
         readDataFile("cli/cases/every_name_and_every_hole_between_them/log", ',')) {
        listed.insert(line.at(0));
    }
    for (const EventName& row : EventNameTable) {
        EXPECT_EQ(1U, listed.count("{\"id\":" + std::to_string(row.code))) << row.name;
    }
}

} // namespace
} // namespace eventsviewer
