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

} // namespace
} // namespace eventsviewer
