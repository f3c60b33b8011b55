#include "text/shell_words.h"

#include <gtest/gtest.h>

#include <string>

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

TEST(ShellWords, HaveASpaceBeforeEach)
{
    std::string words[] = {"-g", "a b", "log"};
    char* pointers[] = {words[0].data(), words[1].data(), words[2].data()};
    EXPECT_EQ(" -g 'a b' log", shellWords(pointers, pointers + 3));
    EXPECT_EQ("", shellWords(pointers, pointers));
}

} // namespace
} // namespace eventsviewer
