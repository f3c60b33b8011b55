#include "render/event_table.h"

#include "support/captured_cout.h"
#include "support/watched_calls.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace eventsviewer {
namespace {

constexpr const char* kColumns =
    "Timestamp           Event                         Detail\n"
    "================================================================================\n";

void add(EventStore& events, std::int32_t code, const std::string& time,
         const std::string& details = "{}")
{
    events.push_back(std::make_unique<EventRecord>(code, time, textFromLiteral(details.c_str())));
}

/// The row of one event, the heading and the column line left out.
std::string rowOf(std::int32_t code, const std::string& time, const char* details = "{}")
{
    EventStore events;
    add(events, code, time, details);
    const std::string table = renderEventTable(std::move(events), 1);
    const std::string above =
        "Last 1 events from " + time + " to " + time + ":\n\n" + std::string(kColumns);
    EXPECT_EQ(above, table.substr(0, above.size()));
    return table.substr(above.size());
}

TEST(RenderEventTable, WithoutEventsIsOneSentence)
{
    EXPECT_EQ("No events to display.", renderEventTable(EventStore(), 0));
    EXPECT_EQ("No events to display.", renderEventTable(EventStore(), 10));
}

TEST(RenderEventTable, LaysOutHeadingColumnsAndRows)
{
    EventStore events;
    add(events, 1229, "Nov 20 08:15:02", R"({"out_of_network_reason":"NO_UCP"})");
    add(events, 835, "Nov 20 08:15:03");
    add(events, 684, "Nov 20 08:15:04");
    EXPECT_EQ(
        "Last 3 events from Nov 20 08:15:02 to Nov 20 08:15:04:\n"
        "\n"
        "Timestamp           Event                         Detail\n"
        "================================================================================\n"
        "Nov 20 08:15:02     \033[1;34mMODEM_OUT_OF_NETWORK          \033[0mThis terminal fell out "
        "of network.\n"
        "                                                  Reason: NO_UCP\n"
        "\n"
        "Nov 20 08:15:03     \033[1;34mMOBILE_LOST_GPS               \033[0mThis terminal is no "
        "longer getting GPS readings.\n"
        "\n"
        "Nov 20 08:15:04     \033[1;34mDID_RECEIVED                  \033[0mUnknown\n"
        "\n",
        renderEventTable(std::move(events), 3));
}

TEST(RenderEventTable, StatesOneTimeTwiceForOneEvent)
{
    EventStore events;
    add(events, 835, "T");
    const std::string table = renderEventTable(std::move(events), 1);
    EXPECT_EQ("Last 1 events from T to T:\n\nTimestamp", table.substr(0, 37));
}

TEST(RenderEventTable, LeavesTheDetailEmptyWhereThereIsNoMemoryForIt)
{
    // With the first row that needs JsonCpp, it takes some memory and keeps it.
    rowOf(835, "t", "");
    EXPECT_EQ("t                   \033[1;34mMOBILE_LOST_GPS               \033[0m\n\n",
              withoutMemory([] { return rowOf(835, "t"); }));
}

std::string statedCount(std::uint32_t count)
{
    EventStore events;
    add(events, 835, "a");
    add(events, 835, "b");
    const std::string table = renderEventTable(std::move(events), count);
    return table.substr(0, table.find(':'));
}

TEST(RenderEventTable, StatesTheSmallerOfTheCountAndTheNumberOfEvents)
{
    EXPECT_EQ("Last 0 events from a to b", statedCount(0));
    EXPECT_EQ("Last 1 events from a to b", statedCount(1));
    EXPECT_EQ("Last 2 events from a to b", statedCount(2));
    EXPECT_EQ("Last 2 events from a to b", statedCount(3));
    EXPECT_EQ("Last 2 events from a to b", statedCount(2147483648U));
    EXPECT_EQ("Last 2 events from a to b", statedCount(4294967295U));
}

TEST(RenderEventTable, ShowsEveryEventWhateverTheCount)
{
    EventStore events;
    for (int i = 0; i < 12; ++i) {
        add(events, 835, "t");
    }
    const std::string table = renderEventTable(std::move(events), 1);
    int rows = 0;
    for (auto at = table.find("\033[0m"); at != std::string::npos;
         at = table.find("\033[0m", at + 1)) {
        ++rows;
    }
    EXPECT_EQ(12, rows);
}

TEST(RenderEventTable, IsWholeHoweverManyRowsItHas)
{
    // Row lengths that the first rows do not predict: short ones, then long ones, then short ones.
    EventStore events;
    std::string expected = "Last 100000 events from t to t:\n\n" + std::string(kColumns);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text(i > 40'000 && i < 90'000 ? 200 : 0, 'x');
        add(events, 1232, "t", R"({"forced_logout_reason":")" + text + "\"}");
        expected += "t                   \033[1;34mMODEM_FORCED_LOGOUT           \033[0m"
                    "This terminal was forced to logout; " +
                    text + "\n\n";
    }
    EXPECT_TRUE(expected == renderEventTable(std::move(events), 100'000));
}

TEST(RenderEventTable, TakesNoMemoryForLongRowsThatDoNotCome)
{
    EventStore events;
    for (int i = 0; i < 200'000; ++i) {
        add(events, 684, std::string(i < 33'000 ? 1000 : 1, 't'));
    }
    const std::string table = renderEventTable(std::move(events), 200'000);
    EXPECT_LT(table.capacity(), 4 * table.size());
}

TEST(RenderEventTable, WritesTheCountWithoutFill)
{
    EventStore events;
    for (int i = 0; i < 1234; ++i) {
        add(events, 835, "t");
    }
    const std::string table = renderEventTable(std::move(events), 5000);
    EXPECT_EQ("Last 1234 events from t to t:\n", table.substr(0, 30));
}

TEST(RenderEventTable, IndentsEachFurtherLineOfADetail)
{
    EXPECT_EQ("t                   \033[1;34mMODEM_NETKEY_CHANGE           \033[0m"
              "This terminal is adjusting system time by 1 seconds\n"
              "                                                  Old: 2\n"
              "                                                  New: 3\n\n",
              rowOf(1227, "t", R"({"delta_time":"1","old_time":"2","new_time":"3"})"));
}

TEST(RenderEventTable, IndentsTheEmptyLineAfterADetailThatEndsInANewline)
{
    EXPECT_EQ("t                   \033[1;34mMODEM_OUT_OF_NETWORK          \033[0m"
              "This terminal fell out of network.\n"
              "                                                  Reason: a\n"
              "                                                  \n"
              "                                                  \n\n",
              rowOf(1229, "t", R"({"out_of_network_reason":"a\n\n"})"));
}

TEST(RenderEventTable, LeavesOtherControlCharactersAlone)
{
    EXPECT_EQ("t                   \033[1;34mMODEM_FORCED_LOGOUT           \033[0m"
              "This terminal was forced to logout; a\r\tb\x1B[0m\x0B.\n\n",
              rowOf(1232, "t", R"({"forced_logout_reason":"a\r\tb\u001b[0m\u000b."})"));
}

TEST(RenderEventTable, NamesAnUnknownCodeByItsNumber)
{
    EXPECT_EQ("t                   \033[1;34mUNRECOGNIZED_EVENT_CODE_5     \033[0mUnknown\n\n",
              rowOf(5, "t"));
}

TEST(RenderEventTable, DoesNotCutALongNameNorSeparateItFromTheDetail)
{
    EXPECT_EQ("t                   \033[1;34mUNRECOGNIZED_EVENT_CODE_4294967295\033[0mUnknown\n\n",
              rowOf(-1, "t"));
    EXPECT_EQ("t                   \033[1;34mTERM_CONSTELLATION_CONFIG_ACTIVATE_FAIL\033[0m"
              "This terminal failed to activate its constellation configuration.  The "
              "configuration had filename = , version = , and hash = .\n\n",
              rowOf(1043, "t"));
}

TEST(RenderEventTable, FillsATimeUpTo20Characters)
{
    EXPECT_EQ("                    \033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n",
              rowOf(684, ""));
    EXPECT_EQ("1234567890123456789 \033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n",
              rowOf(684, "1234567890123456789"));
    EXPECT_EQ("12345678901234567890\033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n",
              rowOf(684, "12345678901234567890"));
}

TEST(RenderEventTable, WritesALongerTimeWhole)
{
    EXPECT_EQ("123456789012345678901\033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n",
              rowOf(684, "123456789012345678901"));
}

TEST(RenderEventTable, FillsANameUpTo30Characters)
{
    EXPECT_EQ("t                   \033[1;34mSSPC_DS_FAP_REQUESTED_APPROVAL\033[0mUnknown\n\n",
              rowOf(698, "t"));
    EXPECT_EQ("t                   \033[1;34mGSP_DS_FAP_REQUESTED_APPROVAL \033[0mUnknown\n\n",
              rowOf(694, "t"));
}

TEST(RenderEventTable, CountsBytesAndNotCharactersOfATime)
{
    EXPECT_EQ(
        "\xC3\xA9                  \033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n",
        rowOf(684, "\xC3\xA9"));
}

TEST(RenderEventTable, HasPrintedEveryDiagnosticWhenItReturns)
{
    const CapturedCout output;
    EventStore events;
    add(events, 1228, "t", R"({"inet_id":5})");
    add(events, 684, "t", "{");
    const std::string table = renderEventTable(std::move(events), 2);
    EXPECT_EQ("Tarvik workaround: in Json::Value::asCString(): requires stringValue\n"
              "Tarvik workaround: error occured in IStream in JsonCpp:* Line 1, Column 2\n"
              "  Missing '}' or object member name\n\n",
              output.text());
    EXPECT_EQ(std::string::npos, table.find("Tarvik"));
}

TEST(RenderEventTable, PrintsNothingItself)
{
    const CapturedCout output;
    rowOf(835, "t");
    renderEventTable(EventStore(), 1);
    EXPECT_EQ("", output.text());
}

} // namespace
} // namespace eventsviewer
