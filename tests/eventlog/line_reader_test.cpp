#include "eventlog/line_reader.h"

#include "eventlog/lines.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

std::vector<std::string> linesOf(const std::string& path)
{
    FileBytes file(path);
    LineReader reader(file);
    std::vector<std::string> lines;
    std::string_view next;
    while (reader.next(next)) {
        EXPECT_FALSE(next.empty());
        while (!next.empty()) {
            lines.emplace_back(takeFirstLine(next));
        }
    }
    EXPECT_FALSE(reader.next(next)) << "a line after the last one";
    return lines;
}

class LineReaderTest : public testing::Test {
protected:
    std::vector<std::string> linesOfText(const std::string& text) const
    {
        return linesOf(folder_.write("text", text));
    }

    TemporaryFolder folder_;
};

using Lines = std::vector<std::string>;

TEST_F(LineReaderTest, GivesEachLine)
{
    EXPECT_EQ((Lines{"one", "", "three\r"}), linesOfText("one\n\nthree\r\n"));
}

TEST_F(LineReaderTest, NeedsNoNewlineAfterTheLastLine)
{
    EXPECT_EQ((Lines{"one", "two"}), linesOfText("one\ntwo"));
}

TEST_F(LineReaderTest, GivesNothingForAnEmptyFile)
{
    EXPECT_EQ(Lines{}, linesOfText(""));
}

TEST_F(LineReaderTest, KeepsNulBytes)
{
    EXPECT_EQ((Lines{std::string("a\0b", 3), std::string("\0", 1)}),
              linesOfText(std::string("a\0b\n\0", 5)));
}

TEST_F(LineReaderTest, GivesNothingForAFileThatCannotBeOpened)
{
    EXPECT_EQ(Lines{}, linesOf(folder_.path("missing")));
}

TEST_F(LineReaderTest, GivesNothingForAFolder)
{
    EXPECT_EQ(Lines{}, linesOf(folder_.path(".")));
}

TEST_F(LineReaderTest, JoinsLinesThatLieAcrossBlocks)
{
    // Lengths around the size of a block and its multiples, so that the newline is the last byte of
    // a block, the first of the next, or close to these.
    for (const std::size_t block : {65536U, 131072U, 262144U}) {
        for (std::size_t length = block - 3; length <= block + 3; ++length) {
            const std::string first(length, 'a');
            const std::string second(length, 'b');
            EXPECT_EQ((Lines{first, second, "end"}), linesOfText(first + '\n' + second + "\nend"));
        }
    }
}

TEST_F(LineReaderTest, GivesManyShortLinesUnchanged)
{
    Lines lines;
    std::string text;
    for (int i = 0; i < 50'000; ++i) {
        lines.push_back("line " + std::to_string(i));
        text += lines.back() + '\n';
    }
    EXPECT_EQ(lines, linesOfText(text));
}

TEST_F(LineReaderTest, GivesTheFileBack)
{
    const std::string path = folder_.write("text", "one\n");
    const auto lowestFreeDescriptor = [&path] {
        const int descriptor = open(path.c_str(), O_RDONLY);
        close(descriptor);
        return descriptor;
    };
    const int before = lowestFreeDescriptor();
    EXPECT_EQ(Lines{"one"}, linesOf(path));
    EXPECT_EQ(before, lowestFreeDescriptor());
}

// The lines of a text of which each with more than `longest` bytes is left out.
Lines linesUpTo(std::size_t longest, const std::string& path)
{
    FileBytes file(path);
    LineReader reader(file, longest);
    Lines lines;
    std::string_view next;
    while (reader.next(next)) {
        if (reader.leftOutLine()) {
            EXPECT_EQ("\n", next);
            lines.emplace_back("left out");
            continue;
        }
        while (!next.empty()) {
            lines.emplace_back(takeFirstLine(next));
        }
    }
    EXPECT_FALSE(reader.leftOutLine());
    return lines;
}

TEST_F(LineReaderTest, LeavesOutEachLineThatIsTooLong)
{
    // Limits below and above the size of a block, lines that are a byte shorter or longer.
    for (const std::size_t longest : {1U, 10U, 65535U, 65536U, 65537U, 200'000U}) {
        const std::string fits(longest, 'a');
        const std::string most = fits + 'b';
        const std::string huge(3 * longest + 100'000, 'c');
        for (const std::string end : {"", "\n"}) {
            EXPECT_EQ(
                (Lines{fits, "left out", "1", "left out", "left out", fits}),
                linesUpTo(longest, folder_.write("text", fits + '\n' + most + "\n1\n" + huge +
                                                             '\n' + huge + '\n' + fits + end)))
                << longest;
            EXPECT_EQ((Lines{"left out", "", "left out"}),
                      linesUpTo(longest, folder_.write("text", most + "\n\n" + huge + end)))
                << longest;
        }
    }
}

} // namespace
} // namespace eventsviewer
