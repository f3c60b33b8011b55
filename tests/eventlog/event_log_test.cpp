#include "eventlog/event_log.h"

#include "support/captured_cout.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
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

/// Refuses some of the diagnostics on std::cout, as a full pipe does, for as long as this object
/// lives. std::cout is in the good state afterwards.
class RefusingCout : std::stringbuf {
public:
    /// Refuses the first diagnostic if the lowest bit of `refused` is set, and so on.
    explicit RefusingCout(unsigned refused) : refused_(refused), original_(std::cout.rdbuf(this)) {}
    RefusingCout(const RefusingCout&) = delete;
    RefusingCout& operator=(const RefusingCout&) = delete;
    ~RefusingCout() override { std::cout.rdbuf(original_); }

    std::string text() const { return str(); }

protected:
    std::streamsize xsputn(const char* text, std::streamsize size) override
    {
        const bool begins =
            std::string_view(text, static_cast<std::size_t>(size)).substr(0, 6) == "Tarvik";
        const bool refuses = begins && (refused_ & 1U) != 0;
        refused_ >>= begins ? 1 : 0;
        return refuses ? 0 : std::stringbuf::xsputn(text, size);
    }

private:
    unsigned refused_;
    std::streambuf* original_;
};

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

TEST_F(EventLog, LeavesStandardOutputGoodIfALineWithABraceFollowsALostDiagnostic)
{
    const std::string loud = "{\"id\":4294968524}\n";
    for (const char* const last : {"{}", "{\"id\":835}", "{\"time\":\"t\",\"id\":835}", "x{"}) {
        folder_.write("log", loud + last);
        const RefusingCout output(1);
        loadRecentEvents(path_, 10);
        EXPECT_TRUE(std::cout.good()) << last;
    }
    for (const char* const last : {"", "\n", "no brace", "\"id\":835}\n"}) {
        folder_.write("log", "{\"id\":835}\n" + loud + last);
        const RefusingCout output(1);
        loadRecentEvents(path_, 10);
        EXPECT_TRUE(std::cout.bad()) << last;
    }
}

TEST_F(EventLog, LeavesTheSameStateOfStandardOutputHoweverManyAreAskedFor)
{
    constexpr unsigned kLines = 3;
    const std::vector<std::string> choices = {"\n", "{}\n", "{\"id\":835}\n",
                                              "{\"time\":\"t\",\"id\":835}\n", "{\"id\":\"5\"}\n"};
    const auto load = [this](unsigned refused, std::size_t count) {
        const RefusingCout output(refused);
        count == 0 ? loadAllEvents(path_) : loadRecentEvents(path_, count);
        return std::to_string(std::cout.rdstate()) + ' ' + output.text();
    };
    for (std::size_t order = 0; order < 5 * 5 * 5; ++order) {
        const std::string lines[kLines] = {choices[order % 5], choices[order / 5 % 5],
                                           choices[order / 25]};
        for (unsigned older = 0; older < 2; ++older) {
            folder_.write("log.0", older == 1 ? lines[0] : "");
            folder_.write("log", (older == 1 ? "" : lines[0]) + lines[1] + lines[2]);
            for (unsigned refused = 0; refused < 1U << kLines; ++refused) {
                const std::string expected = load(refused, 0);
                EXPECT_EQ(expected, load(refused, 1)) << lines[0] << lines[1] << lines[2];
                EXPECT_EQ(expected, load(refused, 9)) << lines[0] << lines[1] << lines[2];
            }
        }
    }
}

} // namespace
} // namespace eventsviewer
