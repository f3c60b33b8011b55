#include "eventlog/line_reader.h"
#include "eventlog/lines.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

namespace {

// What the next reads do, in this order: fail with this error number or, for a 0, read one byte at
// most. The reads after these work as usual.
std::vector<int> faults;

} // namespace

// The linker redirects the program's own calls of read to here (--wrap). NOLINTBEGIN
extern "C" {

ssize_t __real_read(int descriptor, void* buffer, std::size_t size);

ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size)
{
    if (faults.empty()) {
        return __real_read(descriptor, buffer, size);
    }
    const int fault = faults.front();
    faults.erase(faults.begin());
    if (fault == 0) {
        return __real_read(descriptor, buffer, std::min<std::size_t>(size, 1));
    }
    errno = fault;
    return -1;
}
}
// NOLINTEND

namespace eventsviewer {
namespace {

using Lines = std::vector<std::string>;

Lines linesOfText(const std::string& text, const std::vector<int>& readFaults)
{
    const TemporaryFolder folder;
    FileBytes file(folder.write("text", text));
    LineReader reader(file);
    faults = readFaults;
    Lines lines;
    std::string_view next;
    while (reader.next(next)) {
        while (!next.empty()) {
            lines.emplace_back(takeFirstLine(next));
        }
    }
    EXPECT_FALSE(reader.next(next)) << "a line after the last one";
    EXPECT_TRUE(faults.empty()) << "not read to the last fault";
    return lines;
}

TEST(ReadFaults, AnInterruptedReadIsTakenUpAgain)
{
    EXPECT_EQ((Lines{"one", "two"}), linesOfText("one\ntwo\n", {EINTR, EINTR, 0, EINTR}));
}

TEST(ReadFaults, ShortReadsLoseNothing)
{
    EXPECT_EQ((Lines{"one", "", "two"}), linesOfText("one\n\ntwo", {0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(ReadFaults, AnErrorEndsTheFileAfterTheLineBefore)
{
    EXPECT_EQ(Lines{"o"}, linesOfText("o\ntwo\nthree\n", {0, 0, 0, EIO}));
}

TEST(ReadFaults, AnErrorAtTheFirstByteLeavesNothing)
{
    EXPECT_EQ(Lines{}, linesOfText("one\n", {EIO}));
}

} // namespace
} // namespace eventsviewer
