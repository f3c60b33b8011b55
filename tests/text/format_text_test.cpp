#include "text/shared_text.h"

#include "support/watched_calls.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace eventsviewer {
namespace {

TEST(FormatText, FormatsLikePrintf)
{
    const SharedText text = formatText("%s is %u, %5.2f%%|%-4d|", "pi", 3U, 3.14159, 7);
    EXPECT_STREQ("pi is 3,  3.14%|7   |", text.characters());
    EXPECT_EQ(21U, text.length());
}

TEST(FormatText, OfAnEmptyResultReadsAsTheEmptyText)
{
    EXPECT_STREQ("", formatText("%s", "").characters());
    EXPECT_STREQ("", formatText("%s%s", "", "").characters());
}

TEST(FormatText, FormatsASingleCharacter)
{
    EXPECT_STREQ("x", formatText("%c", 'x').characters());
}

TEST(FormatText, AllocatesOnceForTheText)
{
    const int before = allocations;
    const SharedText text = formatText("%s", "only once");
    EXPECT_EQ(before + 1, allocations);
}

TEST(FormatText, AllocatesNothingForAnEmptyResult)
{
    const int before = allocations;
    const SharedText text = formatText("%s", "");
    EXPECT_EQ(before, allocations);
}

TEST(FormatText, GivesTheWholeOfALongText)
{
    const std::string part(5000, 'a');
    const SharedText text = formatText("<%s|%s>", part.c_str(), part.c_str());
    EXPECT_EQ("<" + part + "|" + part + ">", text.characters());
    EXPECT_EQ(10003U, text.length());
}

TEST(FormatText, GivesATextOfEveryLengthWhole)
{
    for (std::size_t length = 500; length <= 1030; ++length) {
        const std::string expected = std::string(length - 1, 'a') + "z";
        const SharedText text = formatText("%s", expected.c_str());
        EXPECT_EQ(expected, text.characters());
        EXPECT_EQ(length, text.length());
    }
}

TEST(FormatText, CountsACharacterThatIsNul)
{
    const SharedText text = formatText("a%cb", '\0');
    EXPECT_EQ(std::string("a\0b\0", 4), std::string(text.characters(), 4));
    EXPECT_EQ(3U, text.length());
}

TEST(FormatText, ThatFailsReadsAsTheEmptyText)
{
    const wchar_t noCharacter[] = {static_cast<wchar_t>(0x7fffffff), 0};
    EXPECT_STREQ("", formatText("text before %ls", noCharacter).characters());
}

TEST(FormatText, WithoutMemoryReadsAsTheEmptyText)
{
    EXPECT_STREQ("", withoutMemory([] { return formatText("%s", "too much"); }).characters());
}

TEST(FormatText, FreesItsBufferWithTheLastHandle)
{
    SharedText text = formatText("%d", 42);
    const void* const buffer = text.characters();
    text = SharedText();
    EXPECT_EQ(buffer, lastFreed);
}

TEST(FormatText, IsSharedByItsCopies)
{
    const SharedText text = formatText("%s", "shared");
    lastFreed = nullptr;
    {
        const SharedText copy(text); // NOLINT(performance-unnecessary-copy-initialization)
    }
    EXPECT_EQ(nullptr, lastFreed);
    EXPECT_STREQ("shared", text.characters());
}

} // namespace
} // namespace eventsviewer
