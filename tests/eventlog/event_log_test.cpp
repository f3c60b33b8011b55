#include "eventlog/event_log.h"

#include "support/captured_cout.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

using Codes = std::vector<std::int32_t>;

Codes codesOf(const EventStore& store)
{
    Codes codes;
    for (const auto& record : store) {
        codes.push_back(record->code);
    }
    return codes;
}

class EventLog : public testing::Test {
protected:
    TemporaryFolder folder_;
    const std::string path_ = folder_.path("log");
};

TEST_F(EventLog, WithoutFilesIsEmpty)
{
    const CapturedCout output;
    EXPECT_TRUE(loadAllEvents(path_).empty());
    EXPECT_TRUE(loadRecentEvents(path_, 10).empty());
    EXPECT_EQ("", output.text());
}

TEST_F(EventLog, HoldsThePredecessorFileFirst)
{
    folder_.write("log", "{\"id\":3}\n{\"id\":4}\n");
    folder_.write("log.0", "{\"id\":1}\n{\"id\":2}\n");
    EXPECT_EQ((Codes{1, 2, 3, 4}), codesOf(loadAllEvents(path_)));
}

TEST_F(EventLog, ReadsEitherFileAlone)
{
    folder_.write("log.0", "{\"id\":1}\n");
    EXPECT_EQ(Codes{1}, codesOf(loadAllEvents(path_)));
    std::filesystem::rename(folder_.path("log.0"), path_);
    EXPECT_EQ(Codes{1}, codesOf(loadAllEvents(path_)));
}

TEST_F(EventLog, ReadsNoOtherPredecessor)
{
    folder_.write("log.1", "{\"id\":1}\n");
    folder_.write("log.0.0", "{\"id\":2}\n");
    EXPECT_TRUE(loadAllEvents(path_).empty());
}

TEST_F(EventLog, KeepsTheFieldsOfEachEvent)
{
    folder_.write("log", "{\"id\":1228,\"time\":\"t\",\"vars\":{\"inet_id\":\"7\"}}\n");
    const EventStore store = loadAllEvents(path_);
    ASSERT_EQ(1U, store.size());
    EXPECT_EQ(1228, store.front()->code);
    EXPECT_EQ("t", store.front()->time);
    EXPECT_STREQ("{\"inet_id\":\"7\"}", store.front()->details.characters());
}

TEST_F(EventLog, LoadsALastLineWithoutANewline)
{
    folder_.write("log.0", "{\"id\":1}");
    folder_.write("log", "{\"id\":2}\n{\"id\":3}");
    EXPECT_EQ((Codes{1, 2, 3}), codesOf(loadAllEvents(path_)));
}

TEST_F(EventLog, SkipsLinesWithoutAnEventSilently)
{
    folder_.write("log", "\nnothing\n{}\n{\"id\":1}\r\n{broken\n{\"id\":2,\n\n");
    const CapturedCout output;
    EXPECT_EQ((Codes{1, 2}), codesOf(loadAllEvents(path_)));
    EXPECT_EQ("", output.text());
}

TEST_F(EventLog, GoesOnAfterNulBytes)
{
    folder_.write("log", std::string(100, '\0') + "{\"id\":1}\n" + std::string(5, '\0') + "\n" +
                             "{\"id\":2}\n");
    EXPECT_EQ((Codes{1, 2}), codesOf(loadAllEvents(path_)));
}

TEST_F(EventLog, LoadsALineOfAnyLength)
{
    const std::string longText(300000, 'x');
    folder_.write("log", "{\"id\":1,\"time\":\"" + longText + "\"}\n{\"id\":2}\n");
    const EventStore store = loadAllEvents(path_);
    EXPECT_EQ((Codes{1, 2}), codesOf(store));
    EXPECT_EQ(longText, store.front()->time);
}

TEST_F(EventLog, CountsAFolderInPlaceOfAFileAsEmpty)
{
    std::filesystem::create_directory(folder_.path("log.0"));
    folder_.write("log", "{\"id\":1}\n");
    EXPECT_EQ(Codes{1}, codesOf(loadAllEvents(path_)));
}

TEST_F(EventLog, PrintsTheDiagnosticOfEachIdInTheOrderOfTheFiles)
{
    folder_.write("log", "{\"id\":1e12}\n");
    folder_.write("log.0", "{\"id\":\"5\"}\n{\"id\":5}\n{\"id\":4294967301}\n");
    const CapturedCout output;
    EXPECT_EQ((Codes{0, 5, 5, INT32_MAX}), codesOf(loadAllEvents(path_)));
    EXPECT_EQ("Tarvik workaround: Value is not convertible to Int.\n"
              "Tarvik workaround: LargestInt out of Int range\n"
              "Tarvik workaround: double out of Int range\n",
              output.text());
}

TEST_F(EventLog, PrintsTheDiagnosticsOfEventsTooOldToBeKept)
{
    folder_.write("log", "{\"id\":\"5\"}\n{\"id\":6}\n");
    const CapturedCout output;
    EXPECT_EQ(Codes{6}, codesOf(loadRecentEvents(path_, 1)));
    EXPECT_EQ("Tarvik workaround: Value is not convertible to Int.\n", output.text());
}

TEST_F(EventLog, KeepsTheNewestEventsOfBothFilesTakenTogether)
{
    folder_.write("log.0", "{\"id\":1}\n{\"id\":2}\n");
    folder_.write("log", "{\"id\":3}\n{\"id\":4}\n");
    EXPECT_EQ(Codes{4}, codesOf(loadRecentEvents(path_, 1)));
    EXPECT_EQ((Codes{3, 4}), codesOf(loadRecentEvents(path_, 2)));
    EXPECT_EQ((Codes{2, 3, 4}), codesOf(loadRecentEvents(path_, 3)));
    EXPECT_EQ((Codes{1, 2, 3, 4}), codesOf(loadRecentEvents(path_, 4)));
    EXPECT_EQ((Codes{1, 2, 3, 4}), codesOf(loadRecentEvents(path_, 5)));
    EXPECT_EQ((Codes{1, 2, 3, 4}), codesOf(loadRecentEvents(path_, SIZE_MAX)));
}

TEST_F(EventLog, CountsUsableLinesOnly)
{
    folder_.write("log.0", "{\"id\":1}\n{\"id\":2}\n");
    folder_.write("log", "{}\nnothing\n{\"time\":\"t\"}\n");
    EXPECT_EQ(Codes{2}, codesOf(loadRecentEvents(path_, 1)));
}

TEST_F(EventLog, CountsNoLineWhoseIdBelongsToAnotherObject)
{
    folder_.write("log", "{\"id\":1}\n{\"vars\":{\"id\":2}}\n");
    EXPECT_EQ(Codes{1}, codesOf(loadAllEvents(path_)));
    EXPECT_EQ(Codes{1}, codesOf(loadRecentEvents(path_, 1)));
}

TEST_F(EventLog, HoldsTheNewestEventsOfALogOfManyBlocks)
{
    std::string lines;
    for (int i = 0; i < 20'000; ++i) {
        lines += "{\"id\":" + std::to_string(i) + "}\n" + (i % 7 == 0 ? "{\"time\":\"t\"}\n" : "");
    }
    folder_.write("log", lines);
    for (const std::size_t count : {1U, 9U, 6'000U, 19'999U}) {
        const EventStore newest = loadRecentEvents(path_, count);
        ASSERT_EQ(count, newest.size());
        EXPECT_EQ(20'000 - static_cast<std::int32_t>(count), newest.front()->code);
        EXPECT_EQ(19'999, newest.back()->code);
    }
}

TEST_F(EventLog, GivesTheSameNewestEventsHoweverManyAreAskedFor)
{
    const std::string lines = "{\"id\":10,\"time\":\"t\",\"vars\":{\"a\":\"b\"}}\n"
                              "{}\n"
                              "{\"time\":\"late\",\"id\":20}\n"
                              "{\"id\":\"x\"}\n"
                              "prefix {\"id\":30,\n"
                              "{\"id\":\n"
                              "{\"\\u0069d\":40}\n"
                              "{\"time\":\"s\",\"vars\":{\"id\":41}}\n"
                              "{\"id\":50,\"time\":\"u\"}\n"
                              "{\"id\":60,\"time\":\"v\"}\n";
    folder_.write("log.0", lines);
    folder_.write("log", lines);
    const CapturedCout output;
    const EventStore all = loadAllEvents(path_);
    ASSERT_EQ(16U, all.size());
    const std::string diagnostics = output.text();
    for (std::size_t count = 1; count <= all.size() + 1; ++count) {
        const CapturedCout again;
        const EventStore newest = loadRecentEvents(path_, count);
        EXPECT_EQ(diagnostics, again.text());
        ASSERT_EQ(std::min(count, all.size()), newest.size());
        for (std::size_t i = 0; i < newest.size(); ++i) {
            const EventRecord& expected = *all[all.size() - newest.size() + i];
            EXPECT_EQ(expected.code, newest[i]->code);
            EXPECT_EQ(expected.time, newest[i]->time);
            EXPECT_STREQ(expected.details.characters(), newest[i]->details.characters());
        }
    }
}

} // namespace
} // namespace eventsviewer
