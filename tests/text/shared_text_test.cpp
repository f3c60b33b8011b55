#include "text/shared_text.h"

#include "support/watched_calls.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace eventsviewer {
namespace {

TEST(SharedText, WithoutARecordReadsAsTheEmptyText)
{
    const SharedText text;
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

TEST(SharedText, CopiesOfANullHandleReadAsTheEmptyText)
{
    const SharedText text;
    SharedText copy(text);
    EXPECT_STREQ("", copy.characters());
    copy = textFromLiteral("gone in a moment");
    copy = text;
    EXPECT_STREQ("", copy.characters());
}

TEST(SharedText, CopiesShareOneBufferAndAllocateNothing)
{
    const SharedText text = textFromLiteral("MODEM_IN_NETWORK");
    const int before = allocations;
    const SharedText copy(text); // NOLINT(performance-unnecessary-copy-initialization)
    SharedText assigned;
    assigned = text;
    EXPECT_EQ(before, allocations);
    EXPECT_EQ(text.characters(), copy.characters());
    EXPECT_EQ(text.characters(), assigned.characters());
}

TEST(SharedText, LivesAsLongAsOneHandleHoldsIt)
{
    SharedText last;
    const char* buffer = nullptr;
    {
        const SharedText first = textFromLiteral("kept");
        buffer = first.characters();
        last = first;
    }
    EXPECT_NE(buffer, lastFreed);
    EXPECT_EQ(buffer, last.characters());
    EXPECT_STREQ("kept", last.characters());
}

TEST(SharedText, FreesItsBufferWithTheLastHandle)
{
    SharedText text = textFromLiteral("freed");
    const void* const buffer = text.characters();
    SharedText copy(text);
    text = SharedText();
    EXPECT_NE(buffer, lastFreed);
    copy = SharedText();
    EXPECT_EQ(buffer, lastFreed);
}

bool objectsAreCounted()
{
    const int before = objects;
    void* const object = operator new(1);
    const bool counted = objects == before + 1;
    operator delete(object);
    return counted;
}

TEST(SharedText, IsFreedWithItsLastHandle)
{
    if (!objectsAreCounted()) {
        GTEST_SKIP() << "valgrind has an operator new of its own, and reports what is not freed";
    }
    SharedText (*const makers[])() = {[] { return textFromLiteral("copied"); },
                                      [] { return textFromConstant("borrowed"); },
                                      [] { return formatText("%s", "formatted"); }};
    for (const auto make : makers) {
        const int before = objects;
        {
            const SharedText text = make();
            const SharedText copy(text); // NOLINT(performance-unnecessary-copy-initialization)
            EXPECT_EQ(before + 1, objects);
        }
        EXPECT_EQ(before, objects);
    }
}

TEST(SharedText, AssignmentReleasesTheOldText)
{
    SharedText text = formatText("%s", "old");
    const void* const old = text.characters();
    text = textFromLiteral("new");
    EXPECT_EQ(old, lastFreed);
    EXPECT_STREQ("new", text.characters());
}

TEST(SharedText, SurvivesAssignmentToItself)
{
    SharedText text = textFromLiteral("itself");
    const SharedText& same = text;
    const char* const buffer = text.characters();
    text = same;
    EXPECT_EQ(buffer, text.characters());
    EXPECT_STREQ("itself", text.characters());
}

TEST(SharedText, SurvivesAssignmentOfAHandleThatSharesItsRecord)
{
    SharedText text = textFromLiteral("shared");
    const SharedText copy(text);
    text = copy;
    EXPECT_EQ(copy.characters(), text.characters());
    EXPECT_STREQ("shared", text.characters());
}

TEST(SharedText, MovesItsShare)
{
    SharedText text = textFromLiteral("moved");
    const char* const buffer = text.characters();
    SharedText target(std::move(text));
    EXPECT_STREQ("", text.characters()); // NOLINT: a moved-from handle reads as the empty text
    EXPECT_EQ(buffer, target.characters());
    target = SharedText();
    EXPECT_EQ(buffer, lastFreed);
}

TEST(SharedText, MovesByAssignmentToo)
{
    SharedText text = textFromLiteral("moved");
    const char* const buffer = text.characters();
    SharedText target = textFromLiteral("replaced");
    target = std::move(text);
    EXPECT_STREQ("", text.characters()); // NOLINT: a moved-from handle reads as the empty text
    EXPECT_EQ(buffer, target.characters());
}

TEST(TextFromLiteral, OwnsACopyOfTheText)
{
    char source[] = "before";
    const SharedText text = textFromLiteral(source);
    source[0] = 'X';
    EXPECT_STREQ("before", text.characters());
    EXPECT_EQ(6U, text.length());
}

TEST(TextFromLiteral, KeepsTheWholeOfALongText)
{
    const std::string source(100'000, 'x');
    const SharedText text = textFromLiteral(source.c_str());
    EXPECT_EQ(source, text.characters());
    EXPECT_EQ(source.size(), text.length());
}

TEST(TextFromLiteral, RemembersItsLength)
{
    const SharedText text = textFromLiteral("abcdef");
    const_cast<char*>(text.characters())[3] = '\0';
    EXPECT_EQ(6U, text.length());
}

TEST(TextFromLiteral, OfTheEmptyTextIsARecordWithoutCharacters)
{
    const SharedText text = textFromLiteral("");
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

TEST(TextFromLiteral, WithoutMemoryReadsAsTheEmptyText)
{
    const SharedText text = withoutMemory([] { return textFromLiteral("too much"); });
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

// How often malloc is called to copy a string of `length` bytes. It fails, so nothing is copied.
int allocationsForALengthOf(std::size_t length)
{
    const int before = allocations;
    pretendedLength = length;
    const SharedText text = withoutMemory([] { return textFromLiteral("as long as pretended"); });
    pretendedLength = 0;
    EXPECT_STREQ("", text.characters());
    return allocations - before;
}

TEST(TextFromLiteral, DoesNotCopyATextWhoseLengthNeedsMoreThan32Bits)
{
    if (SIZE_MAX == UINT32_MAX) {
        GTEST_SKIP() << "no text is that long here";
    }
    EXPECT_EQ(1, allocationsForALengthOf(UINT32_MAX - 1));
    EXPECT_EQ(0, allocationsForALengthOf(UINT32_MAX));
}

TEST(TextFromConstant, BorrowsTheTextAndCopiesNothing)
{
    static const char constant[] = "a constant";
    const int before = allocations;
    const SharedText text = textFromConstant(constant);
    EXPECT_EQ(before, allocations);
    EXPECT_EQ(constant, text.characters());
    EXPECT_EQ(10U, text.length());
}

TEST(TextFromConstant, IsNotFreedWithTheLastHandle)
{
    static const char constant[] = "still there";
    lastFreed = nullptr;
    {
        const SharedText text = textFromConstant(constant);
        const SharedText copy(text); // NOLINT(performance-unnecessary-copy-initialization)
    }
    EXPECT_NE(constant, lastFreed);
    EXPECT_STREQ("still there", constant);
}

TEST(TextFromConstant, IsMeasuredWheneverItsLengthIsAsked)
{
    char buffer[] = "abcdef";
    const SharedText text = textFromConstant(buffer);
    EXPECT_EQ(6U, text.length());
    buffer[2] = '\0';
    EXPECT_EQ(2U, text.length());
}

} // namespace
} // namespace eventsviewer
