#include "render/log_export.h"

#include "support/captured_cout.h"
#include "support/temporary_folder.h"
#include "support/two_event_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace eventsviewer {
namespace {

class LogExport : public testing::Test {
protected:
    TemporaryFolder folder_;
    const std::string log_ = folder_.path("log");
    const std::string export_ = folder_.path("export");
};

TEST_F(LogExport, TableShowsTheEventsOfBothFiles)
{
    folder_.write("log.0", kOlderLog);
    folder_.write("log", kNewerLog);
    EXPECT_EQ(kWholeTable, allEventsTable(log_));
}

TEST_F(LogExport, TableStatesTheNumberOfAllEvents)
{
    std::string lines;
    for (int i = 0; i < 25; ++i) {
        lines += kNewerLog;
    }
    folder_.write("log", lines);
    EXPECT_EQ("Last 25 events from newer to newer:", allEventsTable(log_).substr(0, 35));
}

TEST_F(LogExport, TableOfAMissingLogIsOneSentence)
{
    EXPECT_EQ("No events to display.", allEventsTable(log_));
}

TEST_F(LogExport, WritesTheTableAndAppendsNothing)
{
    folder_.write("log.0", kOlderLog);
    folder_.write("log", kNewerLog);
    const CapturedCout output;
    saveEventTable(log_, export_);
    EXPECT_EQ(kWholeTable, folder_.read("export"));
    EXPECT_EQ("", output.text());
}

TEST_F(LogExport, OfAMissingLogHoldsOneSentenceWithoutANewline)
{
    saveEventTable(log_, export_);
    EXPECT_EQ("No events to display.", folder_.read("export"));
}

TEST_F(LogExport, CutsALongerFileToItsLength)
{
    folder_.write("log", kNewerLog);
    folder_.write("export", std::string(10000, 'x'));
    saveEventTable(log_, export_);
    EXPECT_EQ(kNewerTable, folder_.read("export"));
}

TEST_F(LogExport, ReplacesTheExportBefore)
{
    folder_.write("log", kNewerLog);
    saveEventTable(log_, export_);
    saveEventTable(log_, export_);
    EXPECT_EQ(kNewerTable, folder_.read("export"));
}

TEST_F(LogExport, OntoTheLogItselfHoldsThePredecessorsEventsOnly)
{
    folder_.write("log.0", kOlderLog);
    folder_.write("log", kNewerLog);
    saveEventTable(log_, log_);
    EXPECT_EQ(kOlderTable, folder_.read("log"));
}

TEST_F(LogExport, OntoThePredecessorHoldsTheLogsEventsOnly)
{
    folder_.write("log.0", kOlderLog);
    folder_.write("log", kNewerLog);
    saveEventTable(log_, folder_.path("log.0"));
    EXPECT_EQ(kNewerTable, folder_.read("log.0"));
    EXPECT_EQ(kNewerLog, folder_.read("log"));
}

TEST_F(LogExport, IntoAMissingFolderDoesNotReadTheLogAndPrintsNothing)
{
    folder_.write("log", "{\"id\":\"a diagnostic if this were read\"}\n");
    const CapturedCout output;
    saveEventTable(log_, folder_.path("missing/export"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("missing")));
    EXPECT_EQ("", output.text());
}

TEST_F(LogExport, OntoAFolderSaysNothing)
{
    folder_.write("log", kNewerLog);
    std::filesystem::create_directory(export_);
    const CapturedCout output;
    saveEventTable(log_, export_);
    EXPECT_TRUE(std::filesystem::is_empty(export_));
    EXPECT_EQ("", output.text());
}

TEST_F(LogExport, OntoAFullDeviceSaysNothing)
{
    folder_.write("log", kNewerLog);
    const CapturedCout output;
    saveEventTable(log_, "/dev/full");
    EXPECT_EQ("", output.text());
}

TEST_F(LogExport, PrintsDiagnosticsAndKeepsThemOutOfTheFile)
{
    folder_.write("log", "{\"id\":\"1\",\"time\":\"t\"}\n");
    const CapturedCout output;
    saveEventTable(log_, export_);
    EXPECT_EQ("Tarvik workaround: Value is not convertible to Int.\n", output.text());
    EXPECT_EQ(tableOf("Last 1 events from t to t:",
                      "t                   \033[1;34mUNRECOGNIZED_EVENT_CODE_0     \033[0m"
                      "Unknown\n\n"),
              folder_.read("export"));
}

} // namespace
} // namespace eventsviewer
