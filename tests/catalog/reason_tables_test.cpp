#include "catalog/reason_tables.h"

#include <gtest/gtest.h>

namespace eventsviewer {
namespace {

TEST(ReasonTables, KeepDoubledAndTrailingSpaces)
{
    EXPECT_STREQ("OTC failed because the  modem lost contact to the BUC.",
                 BucNotCalibratedReasons.begin()[7].explanation);
    EXPECT_STREQ("OTC failed because the BUC calibration file does not support  the modem's "
                 "configured bands.",
                 BucNotCalibratedReasons.begin()[11].explanation);
    EXPECT_STREQ("found a visible carrier(s) in the constellation file, but can't use it (e.g., "
                 "polarization mismatch, etc.) ",
                 NoSignalingCarrierReasons.begin()[1].explanation);
    EXPECT_STREQ("no carrier(s) found ", NoSignalingCarrierReasons.begin()[3].explanation);
}

TEST(ReasonTables, KeepThePlaceholdersThatNothingFills)
{
    EXPECT_STREQ("Failed to receive UCP messages; Last slot was allocated ~%u seconds ago",
                 OutOfNetworkReasons.begin()[0].explanation);
    EXPECT_STREQ("Failed to receive Burst Time Plan messages; Last BTP was received ~%u seconds "
                 "ago.",
                 OutOfNetworkReasons.begin()[1].explanation);
}

} // namespace
} // namespace eventsviewer
