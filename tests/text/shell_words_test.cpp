#include "text/shell_words.h"

#include <gtest/gtest.h>

namespace eventsviewer {
namespace {

TEST(ShellWord, IsTheWordItselfIfAShellTakesItSo)
{
    EXPECT_EQ("logs/4417", shellWord("logs/4417"));
    EXPECT_EQ("--year=2026", shellWord("--year=2026"));
}

TEST(ShellWord, IsInQuotesOtherwise)
{
    EXPECT_EQ("''", shellWord(""));
    EXPECT_EQ("'Nov 20'", shellWord("Nov 20"));
    EXPECT_EQ("'*switch*'", shellWord("*switch*"));
    EXPECT_EQ("'it'\\''s'", shellWord("it's"));
    EXPECT_EQ("''\\'''\\'''", shellWord("''"));
}

} // namespace
} // namespace eventsviewer
