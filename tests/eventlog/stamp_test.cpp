#include "eventlog/stamp.h"

#include <gtest/gtest.h>

namespace eventsviewer {
namespace {

TEST(LengthInWords, HasTheTwoLargestUnits)
{
    EXPECT_EQ("0 s", lengthInWords(0));
    EXPECT_EQ("59 s", lengthInWords(59));
    EXPECT_EQ("1 min 0 s", lengthInWords(60));
    EXPECT_EQ("6 min 54 s", lengthInWords(414));
    EXPECT_EQ("1 h 0 min", lengthInWords(3659));
    EXPECT_EQ("23 h 59 min", lengthInWords(kDay - 1));
    EXPECT_EQ("1 d 0 h", lengthInWords(kDay));
    EXPECT_EQ("400 d 1 h", lengthInWords(400 * kDay + 3601));
}

} // namespace
} // namespace eventsviewer
