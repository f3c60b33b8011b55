#include "app/actions.h"

#include "support/child_process.h"
#include "support/temporary_folder.h"
#include "support/two_event_log.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace eventsviewer {
namespace {

class Actions : public testing::Test {
protected:
    Actions()
    {
        folder_.write("log.0", kOlderLog);
        options_.inputPath = folder_.write("log", kNewerLog);
        options_.outputPath = folder_.path("export");
    }

    ChildResult run(Action action)
    {
        options_.action = action;
        return runInChild([this] { return runAction(options_, "./the tool"); });
    }

    TemporaryFolder folder_;
    Options options_;
};

void expectSuccess(const ChildResult& result, const std::string& output)
{
    EXPECT_EQ(output, result.standardOutput);
    EXPECT_EQ("", result.standardError);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(Actions, RecentEventsTableHoldsTheNewestEvents)
{
    EXPECT_EQ(kNewerTable, recentEventsTable(options_.inputPath, 1));
    EXPECT_EQ(kWholeTable, recentEventsTable(options_.inputPath, 2));
}

TEST_F(Actions, RecentEventsTableStatesNoMoreEventsThanThereAre)
{
    EXPECT_EQ(kWholeTable, recentEventsTable(options_.inputPath, 10));
    EXPECT_EQ(kWholeTable, recentEventsTable(options_.inputPath, SIZE_MAX));
}

TEST_F(Actions, RecentEventsTableTakesACountOfMoreThan32BitsForTheLargest)
{
    if (sizeof(std::size_t) < sizeof(std::uint64_t)) {
        GTEST_SKIP() << "no such count on this machine";
    }
    for (const std::uint64_t count :
         {std::uint64_t{4294967295}, std::uint64_t{4294967296}, std::uint64_t{4294967297}}) {
        EXPECT_EQ(kWholeTable,
                  recentEventsTable(options_.inputPath, static_cast<std::size_t>(count)));
    }
}

TEST_F(Actions, WithoutOneComplainsAndSucceeds)
{
    const ChildResult result = run(kActionNone);
    EXPECT_EQ("", result.standardOutput);
    EXPECT_EQ("No action! --show, --all, --log, or --help must be specified\n",
              result.standardError);
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(Actions, ShowPrintsTheNewestEventsAndANewline)
{
    options_.count = 1;
    expectSuccess(run(kActionShow), kNewerTable + "\n");
    options_.count = 2;
    expectSuccess(run(kActionShow), kWholeTable + "\n");
}

TEST_F(Actions, AllPrintsEveryEventWhateverTheCount)
{
    options_.count = 1;
    expectSuccess(run(kActionAll), kWholeTable + "\n");
}

TEST_F(Actions, PrintOneSentenceForAMissingLog)
{
    options_.inputPath = folder_.path("missing");
    expectSuccess(run(kActionShow), "No events to display.\n");
    expectSuccess(run(kActionAll), "No events to display.\n");
}

TEST_F(Actions, ShowAndAllPrintDiagnosticsBeforeTheTable)
{
    folder_.write("log", "{\"id\":684,\"time\":\"newer\"}\n{\"id\":\"x\",\"time\":\"last\"}\n");
    const std::string output =
        "Tarvik workaround: Value is not convertible to Int.\n" +
        tableOf("Last 1 events from last to last:",
                "last                \033[1;34mUNRECOGNIZED_EVENT_CODE_0     \033[0m"
                "Unknown\n\n") +
        "\n";
    options_.count = 1;
    expectSuccess(run(kActionShow), output);
    EXPECT_EQ(0U, run(kActionAll).standardOutput.find("Tarvik workaround: "));
}

TEST_F(Actions, LogSaysWhatItSavesAndSavesIt)
{
    expectSuccess(run(kActionLog), "Saving table of events (from " + options_.inputPath + ") to " +
                                       options_.outputPath + "\n");
    EXPECT_EQ(kWholeTable, folder_.read("export"));
}

TEST_F(Actions, LogSpeaksBeforeTheDiagnostics)
{
    folder_.write("log", "{\"id\":\"x\"}\n");
    expectSuccess(run(kActionLog), "Saving table of events (from " + options_.inputPath + ") to " +
                                       options_.outputPath +
                                       "\nTarvik workaround: Value is not convertible to Int.\n");
}

TEST_F(Actions, LogSucceedsWhereTheExportFails)
{
    options_.outputPath = folder_.path("missing/export");
    expectSuccess(run(kActionLog), "Saving table of events (from " + options_.inputPath + ") to " +
                                       options_.outputPath + "\n");
}

TEST_F(Actions, HelpPrintsThePage)
{
    expectSuccess(
        run(kActionHelp),
        "Events Viewer Tool\n"
        "\n"
        "Usage: ./the tool [OPTIONS] [PARAMS]\n"
        "\n"
        "Options:\n"
        "  -s, --show                convert most recent events to human readable format and print "
        "in a table\n"
        "  -a, --all                 convert all events to human readable format and print in a "
        "table\n"
        "  -l, --log                 convert all events to human readable format and save to "
        "output_file\n"
        "  -h, --help                display this help and exit\n"
        "\n"
        "\n"
        "Parameters:\n"
        "  -i, --input_file <name>   read events (in machine format) from this file\n"
        "                              (default input file: /common/events_record)\n"
        "  -o, --output_file <name>  output events (in human readable format) to this file\n"
        "                              (default output file: /tmp/events_record)\n"
        "  -n, --number <number>     maximum number of events to show\n"
        "                              (default: 10 events)\n");
}

TEST_F(Actions, AnActionThatDoesNotExistIsAnInternalError)
{
    const ChildResult result = run(5);
    EXPECT_EQ("", result.standardOutput);
    EXPECT_EQ("Internal Error! Invalid Action: 5\n", result.standardError);
    EXPECT_EQ(255, result.exitStatus);
}

} // namespace
} // namespace eventsviewer
