#include "text/shared_text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <utility>

namespace {

int allocations = 0;
const void* lastFreed = nullptr; // until its address is given out again
bool memoryIsExhausted = false;
std::size_t pretendedLength = 0; // what a text is measured to be, unless 0
int objects = 0;                 // made with new and not yet deleted

} // namespace

// The linker leads the program's own calls of malloc, free and strlen here (--wrap). NOLINTBEGIN
extern "C" {

void* __real_malloc(std::size_t size);
void __real_free(void* memory);
std::size_t __real_strlen(const char* text);

void* __wrap_malloc(std::size_t size)
{
    ++allocations;
    void* const memory = memoryIsExhausted ? nullptr : __real_malloc(size);
    if (memory == lastFreed) {
        lastFreed = nullptr;
    }
    return memory;
}

void __wrap_free(void* memory)
{
    lastFreed = memory;
    __real_free(memory);
}

std::size_t __wrap_strlen(const char* text)
{
    return pretendedLength != 0 ? pretendedLength : __real_strlen(text);
}
}

void* operator new(std::size_t size)
{
    void* const memory = __real_malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++objects;
    return memory;
}

void operator delete(void* memory) noexcept
{
    objects -= memory != nullptr ? 1 : 0;
    __real_free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
// NOLINTEND

namespace eventsviewer {
namespace {

SharedText withoutMemory(SharedText (*make)())
{
    memoryIsExhausted = true;
    SharedText text = make();
    memoryIsExhausted = false;
    return text;
}

TEST(SharedText, WithoutARecordReadsAsTheEmptyText)
{
    const SharedText text;
    EXPECT_TRUE(text.isNull());
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

TEST(SharedText, CopiesOfANullHandleAreNull)
{
    const SharedText text;
    SharedText copy(text);
    EXPECT_TRUE(copy.isNull());
    copy = textFromLiteral("gone in a moment");
    copy = text;
    EXPECT_TRUE(copy.isNull());
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

TEST(SharedText, LeavesNothingBehindWithItsLastHandle)
{
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

TEST(SharedText, MovesWithoutLeavingAShareBehind)
{
    SharedText text = textFromLiteral("moved");
    const char* const buffer = text.characters();
    SharedText target(std::move(text));
    EXPECT_TRUE(text.isNull()); // NOLINT: a moved-from handle is null
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
    EXPECT_TRUE(text.isNull()); // NOLINT: a moved-from handle is null
    EXPECT_EQ(buffer, target.characters());
}

TEST(TextFromLiteral, OwnsACopyOfTheText)
{
    char source[] = "before";
    const SharedText text = textFromLiteral(source);
    source[0] = 'X';
    EXPECT_FALSE(text.isNull());
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
    EXPECT_FALSE(text.isNull());
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

TEST(TextFromLiteral, WithoutMemoryReadsAsTheEmptyText)
{
    const SharedText text = withoutMemory([] { return textFromLiteral("too much"); });
    EXPECT_FALSE(text.isNull());
    EXPECT_STREQ("", text.characters());
    EXPECT_EQ(0U, text.length());
}

// How often memory is asked for to copy a text of `length` bytes. There is none, so none is copied.
int allocationsForALengthOf(std::size_t length)
{
    const int before = allocations;
    pretendedLength = length;
    const SharedText text = withoutMemory([] { return textFromLiteral("as long as pretended"); });
    pretendedLength = 0;
    EXPECT_STREQ("", text.characters());
    return allocations - before;
}

TEST(TextFromLiteral, CopiesNoTextWhoseLengthNeedsMoreThan32Bits)
{
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

TEST(FormatText, FormatsLikePrintf)
{
    const SharedText text = formatText("%s is %u, %5.2f%%|%-4d|", "pi", 3U, 3.14159, 7);
    EXPECT_STREQ("pi is 3,  3.14%|7   |", text.characters());
    EXPECT_EQ(21U, text.length());
}

TEST(FormatText, OfAnEmptyResultIsNull)
{
    EXPECT_TRUE(formatText("%s", "").isNull());
    EXPECT_TRUE(formatText("%s%s", "", "").isNull());
}

TEST(FormatText, OfOneCharacterIsNotNull)
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

TEST(FormatText, ThatFailsIsNull)
{
    const wchar_t noCharacter[] = {static_cast<wchar_t>(0x7fffffff), 0};
    EXPECT_TRUE(formatText("text before %ls", noCharacter).isNull());
}

TEST(FormatText, WithoutMemoryIsNull)
{
    EXPECT_TRUE(withoutMemory([] { return formatText("%s", "too much"); }).isNull());
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
