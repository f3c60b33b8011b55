#include "describe/description.h"

#include <gtest/gtest.h>

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

TEST(Slots, AreNoneUnlessGiven)
{
    const Slots slots;
    EXPECT_EQ(0U, slots.count);
    EXPECT_EQ(slots.begin(), slots.end());
}

TEST(Slots, KeepTheirOrder)
{
    const Slots slots = {"lat", {"beam_switch_type", BeamSwitchTypes}, "lon"};
    ASSERT_EQ(3U, slots.count);
    ASSERT_EQ(3, slots.end() - slots.begin());
    EXPECT_STREQ("lat", slots.begin()[0].key);
    EXPECT_EQ(&BeamSwitchTypes, slots.begin()[1].reasons);
    EXPECT_STREQ("lon", slots.begin()[2].key);
}

TEST(Slots, TakeEightAtMost)
{
    const Slots slots = {"a", "b", "c", "d", "e", "f", "g", "h"};
    EXPECT_EQ(8U, slots.count);
    EXPECT_STREQ("h", (slots.end() - 1)->key);
}

bool matches(const char* text, std::size_t slotCount)
{
    Description rows[] = {{1, text, {}}};
    rows[0].slots.count = slotCount;
    return placeholdersMatchSlots(rows);
}

TEST(PlaceholdersMatchSlots, CountsThePlaceholders)
{
    EXPECT_TRUE(matches("fixed", 0));
    EXPECT_TRUE(matches("%s and %s", 2));
    EXPECT_FALSE(matches("%s and %s", 1));
    EXPECT_FALSE(matches("%s and %s", 3));
    EXPECT_FALSE(matches("%s", 0));
    EXPECT_FALSE(matches("fixed", 1));
}

TEST(PlaceholdersMatchSlots, AcceptsNoOtherConversion)
{
    EXPECT_FALSE(matches("%s %d", 1));
    EXPECT_FALSE(matches("%s %%", 1));
    EXPECT_FALSE(matches("%s ends in %", 1));
}

TEST(PlaceholdersMatchSlots, AcceptsAPercentSignAtTheEndOfALineOfAFormattedText)
{
    EXPECT_TRUE(matches("%s%\nnext line", 1));
    EXPECT_FALSE(matches("fixed %\nnext line", 0));
}

TEST(PlaceholdersMatchSlots, ChecksEveryRow)
{
    static constexpr Description kRows[] = {
        {1, "%s", {"a"}}, {2, "fixed", {}}, {3, "%s", {"a", "b"}}};
    EXPECT_FALSE(placeholdersMatchSlots(kRows));
}

} // namespace
} // namespace eventsviewer
