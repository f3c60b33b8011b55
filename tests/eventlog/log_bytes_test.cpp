#include "eventlog/log_bytes.h"

#include "eventlog/line_reader.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <new>
#include <string>

namespace {

bool isMemoryForStreams = true;
bool isMemoryForData = true;

} // namespace

// The linker redirects the program's own calls to these (--wrap). NOLINTBEGIN
extern "C" {

int __real_inflateInit2_(z_stream* stream, int bits, const char* version, int size);
int __real_inflate(z_stream* stream, int flush);

int __wrap_inflateInit2_(z_stream* stream, int bits, const char* version, int size)
{
    return isMemoryForStreams ? __real_inflateInit2_(stream, bits, version, size) : Z_MEM_ERROR;
}

int __wrap_inflate(z_stream* stream, int flush)
{
    return isMemoryForData ? __real_inflate(stream, flush) : Z_MEM_ERROR;
}
}
// NOLINTEND

namespace eventsviewer {
namespace {

using namespace std::string_literals;

// "one\ntwo\n" as gzip writes it without a name and a time.
const std::string kPacked =
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\xcf\x4b\xe5\x2a\x29\xcf\xe7\x02\x00"
    "\xe6\x0b\xba\x12\x08\x00\x00\x00"s;

class LogBytesTest : public testing::Test {
protected:
    // What is read of a file with `content`, with the error after a bar.
    std::string readOf(const std::string& content, std::size_t pieces = 65536) const
    {
        const std::string path = folder_.write("log", content);
        const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        LogBytes bytes(descriptor);
        std::string text;
        std::string piece(pieces, ' ');
        ssize_t count = 0;
        while ((count = bytes.read(piece.data(), piece.size())) > 0) {
            text.append(piece, 0, static_cast<std::size_t>(count));
        }
        EXPECT_EQ(count < 0, !bytes.error().empty());
        EXPECT_EQ(content.size(), bytes.bytesRead());
        EXPECT_EQ(0, close(descriptor)) << "it is left open";
        return text + (count < 0 ? "|" + bytes.error() : "");
    }

    TemporaryFolder folder_;
};

const std::string kCutOff = "|cut off: the compressed data end too early";
const std::string kDamaged = "|damaged: what follows cannot be unpacked";

TEST_F(LogBytesTest, GivesPlainBytesAsTheyAre)
{
    for (const std::string& text : {""s, "\x1f"s, "\xfd"s, "(\xb5/"s, "one\n"s, "\0\0\0\n"s}) {
        EXPECT_EQ(text, readOf(text));
    }
}

TEST_F(LogBytesTest, UnpacksAllParts)
{
    EXPECT_EQ("one\ntwo\n", readOf(kPacked));
    EXPECT_EQ("one\ntwo\none\ntwo\n", readOf(kPacked + kPacked, 6));
    EXPECT_EQ("one\ntwo\none\ntwo\n", readOf(kPacked + "\0\0\0"s + kPacked + "\0"s));
}

TEST_F(LogBytesTest, GivesWhatComesBeforeTheError)
{
    EXPECT_EQ("one\ntwo\n" + kCutOff, readOf(kPacked.substr(0, kPacked.size() - 1)));
    EXPECT_EQ(kCutOff, readOf(kPacked.substr(0, 2)));
    EXPECT_EQ("one\ntwo\n" + kDamaged, readOf(kPacked + "xx"));
    EXPECT_EQ(kDamaged, readOf("\x1f\x8bxxxxxxxx"s));
    std::string wrong = kPacked;
    wrong[wrong.size() - 8] = 'x'; // the checksum
    EXPECT_EQ("one\ntwo\n" + kDamaged, readOf(wrong));
    // A thousand times the same letter, cut off after its last bit.
    EXPECT_EQ(
        std::string(1000, 'a') + kCutOff,
        readOf("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\x4b\x4c\x1c\x05\xa3\x60\x14\x0c\x77\x00"s,
               6));
}

TEST_F(LogBytesTest, ThrowsWithoutMemory)
{
    isMemoryForStreams = false;
    EXPECT_THROW(readOf(kPacked), std::bad_alloc);
    isMemoryForStreams = true;
    isMemoryForData = false;
    EXPECT_THROW(readOf(kPacked), std::bad_alloc);
    isMemoryForData = true;
}

TEST_F(LogBytesTest, NamesOtherForms)
{
    EXPECT_EQ("|a tar archive, not a log; unpack it with tar -xf",
              readOf("log" + std::string(254, '\0') + "ustar"));
    const std::string line = std::string(257, 'x') + "ustar";
    EXPECT_EQ(line, readOf(line));
    EXPECT_EQ("|compressed by xz; unpack it with xz -d, or with tar -xf if it is a .tar.xz",
              readOf("\xfd"
                     "7zXZ\0"s));
    EXPECT_EQ("|compressed by zstd; unpack it with zstd -d, or with tar -xf if it is a .tar.zst",
              readOf("\x28\xb5\x2f\xfd"));
}

TEST_F(LogBytesTest, TellsWhyAFolderCannotBeRead)
{
    const int descriptor = open(folder_.path(".").c_str(), O_RDONLY | O_CLOEXEC);
    LogBytes bytes(descriptor);
    LineReader reader(bytes);
    std::string_view lines;
    EXPECT_FALSE(reader.next(lines));
    EXPECT_EQ("Is a directory", bytes.error());
    close(descriptor);
}

} // namespace
} // namespace eventsviewer
