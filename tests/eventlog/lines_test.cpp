#include "eventlog/lines.h"

#include <gtest/gtest.h>

#include <string_view>

namespace eventsviewer {
namespace {

TEST(WholeLinesLength, ReachesToTheLastNewline)
{
    EXPECT_EQ(0U, wholeLinesLength(""));
    EXPECT_EQ(0U, wholeLinesLength({}));
    EXPECT_EQ(0U, wholeLinesLength("one"));
    EXPECT_EQ(4U, wholeLinesLength("one\n"));
    EXPECT_EQ(5U, wholeLinesLength("one\n\ntwo"));
}

TEST(TakeFirstLine, TakesOneLineAfterTheOther)
{
    std::string_view lines = "one\n\ntwo";
    EXPECT_EQ("one", takeFirstLine(lines));
    EXPECT_EQ("\ntwo", lines);
    EXPECT_EQ("", takeFirstLine(lines));
    EXPECT_EQ("two", takeFirstLine(lines));
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ("", takeFirstLine(lines));
    EXPECT_TRUE(lines.empty());
}

TEST(TakeLastLine, TakesOneLineAfterTheOther)
{
    std::string_view lines = "one\n\ntwo";
    EXPECT_EQ("two", takeLastLine(lines));
    EXPECT_EQ("one\n\n", lines);
    EXPECT_EQ("", takeLastLine(lines));
    EXPECT_EQ("one\n", lines);
    EXPECT_EQ("one", takeLastLine(lines));
    EXPECT_TRUE(lines.empty());
}

} // namespace
} // namespace eventsviewer
