#include "describe/description.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace eventsviewer {
namespace {

TEST(Slot, OfAKeyAloneHasNoTable)
{
    const Slot slot("inet_id");
    EXPECT_STREQ("inet_id", slot.key);
    EXPECT_EQ(nullptr, slot.reasons);
}

TEST(Slot, OfAReasonKnowsItsTable)
{
    const Slot slot("beam_switch_type", BeamSwitchTypes);
    EXPECT_STREQ("beam_switch_type", slot.key);
    EXPECT_EQ(&BeamSwitchTypes, slot.reasons);
}

using Slots = std::initializer_list<Slot>;

bool matches(const char* text, Slots slots)
{
    const Description rows[] = {{1, text, slots}};
    return placeholdersMatchSlots(rows);
}

constexpr Slots kNone = {};
constexpr Slots kOne = {"a"};
constexpr Slots kTwo = {"a", {"b", BeamSwitchTypes}};
constexpr Slots kThree = {"a", "b", "c"};
constexpr Slots kEight = {"a", "b", "c", "d", "e", "f", "g", "h"};
constexpr Slots kNine = {"a", "b", "c", "d", "e", "f", "g", "h", "i"};

TEST(PlaceholdersMatchSlots, CountsThePlaceholders)
{
    EXPECT_TRUE(matches("fixed", kNone));
    EXPECT_TRUE(matches("%s and %s", kTwo));
    EXPECT_FALSE(matches("%s and %s", kOne));
    EXPECT_FALSE(matches("%s and %s", kThree));
    EXPECT_FALSE(matches("%s", kNone));
    EXPECT_FALSE(matches("fixed", kOne));
}

TEST(PlaceholdersMatchSlots, AcceptsEightSlotsAtMost)
{
    EXPECT_TRUE(matches("%s%s%s%s%s%s%s%s", kEight));
    EXPECT_FALSE(matches("%s%s%s%s%s%s%s%s%s", kNine));
}

TEST(PlaceholdersMatchSlots, AcceptsNoOtherConversion)
{
    EXPECT_FALSE(matches("%s %d", kOne));
    EXPECT_FALSE(matches("%s %%", kOne));
    EXPECT_FALSE(matches("%s ends in %", kOne));
}

TEST(PlaceholdersMatchSlots, AcceptsAPercentSignAtTheEndOfALineOfAFormattedText)
{
    EXPECT_TRUE(matches("%s%\nnext line", kOne));
    EXPECT_FALSE(matches("fixed %\nnext line", kNone));
}

TEST(PlaceholdersMatchSlots, ChecksEveryRow)
{
    static constexpr Description kRows[] = {
        {1, "%s", {"a"}}, {2, "fixed", {}}, {3, "%s", {"a", "b"}}};
    EXPECT_FALSE(placeholdersMatchSlots(kRows));
}

} // namespace
} // namespace eventsviewer
