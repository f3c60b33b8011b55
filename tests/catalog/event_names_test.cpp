#include "catalog/event_names.h"

#include "catalog/event_name_table.h"
#include "reference/naive.h"
#include "vocabulary/vocabulary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>

namespace eventsviewer {
namespace {

// From ten before the first code that has a name in either copy to ten after the last.
std::int32_t from()
{
    return std::min(std::begin(EventNameTable)->code, vocabulary::eventNames().front().code) - 10;
}

std::int32_t to()
{
    return std::max(std::prev(std::end(EventNameTable))->code,
                    vocabulary::eventNames().back().code) +
           10;
}

TEST(EventNameFor, GivesEachCodeItsNameAndEachHoleItsNumber)
{
    for (std::int32_t code = from(); code <= to(); ++code) {
        EXPECT_EQ(reference::nameOf(code), eventNameFor(code)) << vocabulary::kEventNamesFile;
    }
}

TEST(EventNameFor, GivesNoNameTwice)
{
    std::set<std::string> names;
    for (std::int32_t code = from(); code <= to(); ++code) {
        EXPECT_TRUE(names.insert(eventNameFor(code)).second) << code;
    }
}

TEST(EventNameFor, ShowsACodeInAHoleAsUnrecognized)
{
    EXPECT_EQ("TERM_CHANGED_OWNER", eventNameFor(688));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_689", eventNameFor(689));
    EXPECT_EQ("NEW_DID", eventNameFor(690));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_0", eventNameFor(0));
}

TEST(EventNameFor, PrintsANegativeCodeUnsigned)
{
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_4294967295", eventNameFor(-1));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_2147483648", eventNameFor(INT32_MIN));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_2147483647", eventNameFor(INT32_MAX));
    // The bits of -684 are not a known code either.
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_4294966612", eventNameFor(-684));
}

TEST(EventNameFor, AnswersTheSameEachTime)
{
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_5", eventNameFor(5));
    EXPECT_EQ("UNRECOGNIZED_EVENT_CODE_5", eventNameFor(5));
    EXPECT_EQ("MODEM_IN_NETWORK", eventNameFor(1228));
    EXPECT_EQ("MODEM_IN_NETWORK", eventNameFor(1228));
}

} // namespace
} // namespace eventsviewer
