#include "catalog/reason_tables.h"

#include "support/data_file.h"
#include "support/reason_table_list.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

struct ExpectedReason {
    std::int32_t value;
    std::string name;
    std::string explanation;
};

std::map<std::string, std::vector<ExpectedReason>> expectedTables()
{
    std::map<std::string, std::vector<ExpectedReason>> tables;
    for (const auto& row : readDataFile("catalog/reason_tables.txt", '\t')) {
        tables[row.at(0)].push_back({std::stoi(row.at(1)), row.at(2), row.at(3)});
    }
    return tables;
}

TEST(ReasonTables, HoldEveryReasonInOrderAndNoOther)
{
    const auto expected = expectedTables();
    ASSERT_EQ(expected.size(), reasonTablesByName().size());
    for (const auto& [name, table] : reasonTablesByName()) {
        SCOPED_TRACE(name);
        const std::vector<ExpectedReason>& rows = expected.at(name);
        ASSERT_EQ(rows.size(),
                  static_cast<std::size_t>(std::distance(table->begin(), table->end())));
        const Reason* reason = table->begin();
        for (const ExpectedReason& row : rows) {
            EXPECT_EQ(row.value, reason->value);
            EXPECT_EQ(row.name, reason->name);
            EXPECT_EQ(row.explanation, reason->explanation);
            ++reason;
        }
    }
}

TEST(ReasonTables, KeepDoubledAndTrailingBlanks)
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
