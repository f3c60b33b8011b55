#include "catalog/event_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace eventsviewer {
namespace {

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

TEST(KnownEventName, IsEmptyForACodeWithoutAName)
{
    EXPECT_EQ("TERM_CHANGED_OWNER", knownEventName(688));
    EXPECT_EQ("", knownEventName(689));
    EXPECT_EQ("DID_RECEIVED", knownEventName(684));
    EXPECT_EQ("", knownEventName(683));
    EXPECT_EQ("", knownEventName(-684));
    EXPECT_EQ("", knownEventName(INT32_MAX));
}

TEST(KnownEventCodes, AreInAscendingOrderAndHaveNames)
{
    const std::vector<std::int32_t> codes = knownEventCodes();
    ASSERT_FALSE(codes.empty());
    EXPECT_EQ(684, codes.front());
    EXPECT_TRUE(std::is_sorted(codes.begin(), codes.end()));
    std::size_t names = 0;
    for (std::int32_t code = 0; code <= INT16_MAX; ++code) {
        names += knownEventName(code).empty() ? 0 : 1;
    }
    EXPECT_EQ(names, codes.size());
    for (const std::int32_t code : codes) {
        EXPECT_EQ(eventNameFor(code), knownEventName(code));
    }
}

} // namespace
} // namespace eventsviewer
