// Reads any bytes as a log that may be compressed. The rules:
//
// - Compressed by gzip, they give the same bytes again, up to the end or to where they are cut off.
// - As they are, they are read to their end or to an error. The size of the pieces does not matter.

#include "checks.h"
#include "eventlog/line_reader.h"
#include "eventlog/log_bytes.h"

#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eventsviewer::fuzz {

namespace {

struct Result {
    std::string text;
    std::string error;
};

// What LogBytes gives of `text`, read in pieces of `size` bytes.
Result readIn(std::string_view text, std::size_t size)
{
    constexpr std::size_t kMost = std::size_t{1} << 20; // a few bytes may be endless zeros
    static const int descriptor = memfd_create("bytes", MFD_CLOEXEC);
    check(ftruncate(descriptor, 0) == 0 &&
              pwrite(descriptor, text.data(), text.size(), 0) ==
                  static_cast<ssize_t>(text.size()) &&
              lseek(descriptor, 0, SEEK_SET) == 0,
          "the bytes can be written into memory");
    LogBytes bytes(descriptor);
    Result result;
    std::string piece(size, '\0');
    ssize_t count = 0;
    while (result.text.size() < kMost && (count = bytes.read(piece.data(), piece.size())) > 0) {
        check(static_cast<std::size_t>(count) <= size, "no more bytes than there is room for");
        result.text.append(piece, 0, static_cast<std::size_t>(count));
    }
    check((count < 0) == !bytes.error().empty(), "an error has words");
    result.text.resize(std::min(result.text.size(), kMost));
    result.error = bytes.error();
    return result;
}

bool isArchive(const Result& result)
{
    return result.error.find("tar archive") != std::string::npos;
}

std::string compressed(std::string_view text)
{
    z_stream stream = {};
    deflateInit2(&stream, 1, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    std::string copy(text);
    stream.next_in = reinterpret_cast<Bytef*>(copy.data());
    stream.avail_in = static_cast<uInt>(copy.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    check(deflate(&stream, Z_FINISH) == Z_STREAM_END, "the text can be compressed");
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace eventsviewer::fuzz;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Result whole = readIn(text, 65536);
    if (isArchive(whole)) { // which is known only after some pieces
        return 0;
    }
    const Result pieces = readIn(text, 7);
    checkSame(pieces.text, whole.text, "the pieces do not matter");
    checkSame(pieces.error, whole.error, "the pieces do not matter to the error");
    const std::string packed = compressed(text);
    const Result unpacked = readIn(packed, 65536);
    if (isArchive(unpacked)) {
        return 0;
    }
    checkSame(unpacked.text, text, "unpacked");
    check(unpacked.error.empty(), "unpacked without an error");
    const std::size_t end = 2 + (size > 0 ? data[0] * (packed.size() - 2) / 256 : 0);
    const Result cut = readIn(std::string_view(packed).substr(0, end), 65536);
    checkSame(cut.text, text.substr(0, cut.text.size()), "the beginning");
    check(!cut.error.empty(), "what is cut off is an error");
    return 0;
}
