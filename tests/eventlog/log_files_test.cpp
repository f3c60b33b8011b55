#include "eventlog/log_files.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

using Names = std::vector<std::string>;

TEST(FileNamesOf, TheCompressedOneComesFirst)
{
    EXPECT_EQ((Names{"L.0.gz", "L.0", "L.gz", "L"}), fileNamesOf("L"));
    EXPECT_EQ((Names{"L.0.gz", "L.0", "L.gz"}), fileNamesOf("L.gz"));
    EXPECT_EQ((Names{".gz.0.gz", ".gz.0", ".gz.gz", ".gz"}), fileNamesOf(".gz"));
    EXPECT_EQ(Names{"-"}, fileNamesOf("-"));
}

TEST(FindLogs, LeavesOutOnlyALogWithoutAFileOfItsOwn)
{
    const TemporaryFolder folder;
    const std::string log = folder.write("log", "");
    const std::string sameLog = folder.path("same");
    std::filesystem::create_symlink(log, sameLog);
    EXPECT_EQ((Names{log}), findLogs({log, sameLog}, "").paths);
    folder.write("same.0", "");
    EXPECT_EQ((Names{sameLog}), findLogs({log, sameLog}, "").paths);
    folder.write("log.0", "");
    EXPECT_EQ((Names{log, sameLog}), findLogs({log, sameLog}, "").paths);
}

TEST(DistinctParts, AreAsShortAsTheyCanBe)
{
    EXPECT_EQ(Names{}, distinctParts({}));
    EXPECT_EQ(Names{""}, distinctParts({"logs/1/L"}));
    EXPECT_EQ((Names{"1", "2"}), distinctParts({"logs/1/L", "logs/2/L"}));
    EXPECT_EQ((Names{"1", "2"}), distinctParts({"north/1/log/L", "/south/2/log/L"}));
    EXPECT_EQ((Names{"1/a", "2/a", "2/b"}), distinctParts({"x/1/a/L", "x/2/a/L", "x/2/b/L"}));
    EXPECT_EQ((Names{"1/L", "L", "2/L"}), distinctParts({"1/L", "L", "2/L"}));
    EXPECT_EQ((Names{"L", "M", "-"}), distinctParts({"1/L", "1/M", "-"}));
    EXPECT_EQ((Names{"/a", "a"}), distinctParts({"/a/L", "a/L"}));
    EXPECT_EQ((Names{"a", "a"}), distinctParts({"a", "a"}));
    EXPECT_EQ((Names{"", "L"}), distinctParts({"", "L"}));
}

} // namespace
} // namespace eventsviewer
