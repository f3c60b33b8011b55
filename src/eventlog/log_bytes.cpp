#include "eventlog/log_bytes.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>

namespace eventsviewer {

namespace {

constexpr std::size_t kBlockSize = 65536;
constexpr std::string_view kGzip = "\x1f\x8b";
constexpr std::string_view kXz("\xfd"
                               "7zXZ\0",
                               6);
constexpr std::string_view kZstd = "\x28\xb5\x2f\xfd";
constexpr std::string_view kTar = "ustar"; // at the end of the head

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

// Whether more bytes are needed to know the form.
bool mayBecomePacked(std::string_view text)
{
    return beginsWith(kGzip, text) || beginsWith(kXz, text) || beginsWith(kZstd, text);
}

// As read(2), but goes on after an interruption.
ssize_t readSome(int descriptor, char* to, std::size_t size)
{
    ssize_t count = 0;
    do {
        count = read(descriptor, to, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

std::string copyToMemory(int descriptor)
{
    const int copy = memfd_create("log", MFD_CLOEXEC);
    std::vector<char> buffer(kBlockSize);
    ssize_t count = copy < 0 ? -1 : 1;
    while (count > 0) {
        count = readSome(descriptor, buffer.data(), buffer.size());
        for (ssize_t done = 0; done < count;) {
            const auto rest = static_cast<std::size_t>(count - done);
            const ssize_t written = write(copy, buffer.data() + done, rest);
            if (written < 0 && errno != EINTR) {
                count = -1;
            }
            done += std::max<ssize_t>(written, 0);
        }
    }
    std::string error = count < 0 ? std::strerror(errno) : "";
    dup3(copy, descriptor, O_CLOEXEC);
    close(copy);
    return error;
}

void LogBytes::EndOfStream::operator()(z_stream_s* stream) const
{
    inflateEnd(stream);
    delete stream;
}

LogBytes::LogBytes(int descriptor) : descriptor_(descriptor) {}

LogBytes::~LogBytes() = default;

ssize_t LogBytes::read(char* to, std::size_t size)
{
    if (!error_.empty()) {
        return -1;
    }
    const ssize_t count = form_ == Form::Unknown ? readFirst(to, size)
                          : form_ == Form::Plain ? readFile(to, size)
                                                 : unpack(to, size);
    if (count > 0 && isArchive(to, static_cast<std::size_t>(count))) {
        return fail("a tar archive, not a log; unpack it with tar -xf");
    }
    return count;
}

ssize_t LogBytes::fail(const char* error)
{
    error_ = error;
    return -1;
}

ssize_t LogBytes::readFile(char* to, std::size_t size)
{
    const ssize_t count = readSome(descriptor_, to, size);
    bytesRead_ += static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
    return count < 0 ? fail(std::strerror(errno)) : count;
}

ssize_t LogBytes::readFirst(char* to, std::size_t size)
{
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        count = readFile(to + length, size - length);
        if (count < 0) {
            return count;
        }
        length += static_cast<std::size_t>(count);
    } while (count > 0 && mayBecomePacked({to, length}));
    const std::string_view text(to, length);
    if (beginsWith(text, kXz)) {
        return fail("compressed by xz; unpack it with xz -d, or with tar -xf if it is a .tar.xz");
    }
    if (beginsWith(text, kZstd)) {
        return fail("compressed by zstd; unpack it with zstd -d, or with tar -xf if it is a "
                    ".tar.zst");
    }
    if (beginsWith(text, kGzip)) {
        startUnpacking(to, length);
        return unpack(to, size);
    }
    form_ = Form::Plain;
    return static_cast<ssize_t>(length);
}

void LogBytes::startUnpacking(const char* text, std::size_t size)
{
    constexpr int kGzipOnly = 16;
    form_ = Form::Gzip;
    packed_.assign(text, text + size);
    stream_.reset(new z_stream_s());
    if (inflateInit2(stream_.get(), MAX_WBITS + kGzipOnly) != Z_OK) {
        throw std::bad_alloc();
    }
    stream_->next_in = reinterpret_cast<Bytef*>(packed_.data());
    stream_->avail_in = static_cast<uInt>(packed_.size());
}

ssize_t LogBytes::unpack(char* to, std::size_t size)
{
    const auto room = static_cast<uInt>(std::min(size, std::size_t{1} << 30));
    stream_->next_out = reinterpret_cast<Bytef*>(to);
    stream_->avail_out = room;
    while (stream_->avail_out == room) {
        bool isAtEnd = false;
        if (stream_->avail_in == 0) {
            packed_.resize(kBlockSize);
            const ssize_t count = readFile(packed_.data(), packed_.size());
            if (count < 0 || (count == 0 && isBetweenParts_)) {
                return count;
            }
            isAtEnd = count == 0; // zlib may still hold what there was no room for
            stream_->next_in = reinterpret_cast<Bytef*>(packed_.data());
            stream_->avail_in = static_cast<uInt>(count);
        }
        if ((!isBetweenParts_ || findNextPart()) && !unpackSome()) {
            fail("damaged: what follows cannot be unpacked");
            break; // what was unpacked comes first
        }
        if (isAtEnd && stream_->avail_out == room) {
            return fail("cut off: the compressed data end too early");
        }
    }
    return stream_->avail_out < room ? static_cast<ssize_t>(room - stream_->avail_out) : -1;
}

// Returns false if the data are damaged.
bool LogBytes::unpackSome()
{
    const int result = inflate(stream_.get(), Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) {
        throw std::bad_alloc();
    }
    isBetweenParts_ = result == Z_STREAM_END;
    return result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
}

// Skips zero bytes, with which a tape or a disk may fill its last block.
bool LogBytes::findNextPart()
{
    while (stream_->avail_in > 0 && *stream_->next_in == 0) {
        ++stream_->next_in;
        --stream_->avail_in;
    }
    if (stream_->avail_in > 0) {
        inflateReset(stream_.get());
    }
    return stream_->avail_in > 0;
}

bool LogBytes::isArchive(const char* text, std::size_t size)
{
    const std::size_t count = std::min(size, head_.size() - headSize_);
    std::copy_n(text, count, head_.begin() + static_cast<std::ptrdiff_t>(headSize_));
    headSize_ += count;
    const auto mark = head_.end() - kTar.size();
    return count > 0 && headSize_ == head_.size() && std::equal(kTar.begin(), kTar.end(), mark) &&
           std::find(head_.begin(), mark, '\0') != mark; // which no line has
}

} // namespace eventsviewer
