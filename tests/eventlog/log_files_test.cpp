#include "eventlog/log_files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace eventsviewer {
namespace {

using Names = std::vector<std::string>;

TEST(FileNamesOf, TheCompressedOneComesFirst)
{
    EXPECT_EQ((Names{"L.0.gz", "L.0", "L.gz", "L"}), fileNamesOf("L"));
    EXPECT_EQ((Names{"L.0.gz", "L.0", "L.gz"}), fileNamesOf("L.gz"));
    EXPECT_EQ(Names{"-"}, fileNamesOf("-"));
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
