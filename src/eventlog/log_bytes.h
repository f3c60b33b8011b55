// The bytes of a log that may be compressed. Only events-query reads such logs: what only reads
// LineReader's FileBytes is not linked with zlib.

#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct z_stream_s; // NOLINT(readability-identifier-naming): zlib's name

namespace eventsviewer {

/// Copies what `descriptor` still gives into memory. The copy takes its place. Returns what went
/// wrong, in words; empty if nothing did.
std::string copyToMemory(int descriptor);

/// Where LineReader gets the bytes of a log from.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    static bool isOpen() { return true; }

    /// Gives up to `size` bytes; 0 at the end; -1 for an error, after all bytes before it.
    virtual ssize_t read(char* to, std::size_t size) = 0;

    /// How many bytes the file has given so far, if they are counted.
    std::uint64_t bytesRead() const { return bytesRead_; }

protected:
    ~ByteSource() = default;
    std::uint64_t bytesRead_ = 0;
};

/// The bytes of a log that is complete. Unpacks gzip, which it recognises by the first bytes; the
/// form may have several parts. A tar archive and other compressed forms are errors.
class LogBytes final : public ByteSource {
public:
    /// Reads the open file `descriptor` from where it is, and leaves it open.
    explicit LogBytes(int descriptor);
    ~LogBytes();

    /// `size` is at least 6 at first. Throws std::bad_alloc if there is no memory to unpack with.
    ssize_t read(char* to, std::size_t size) override;

    /// What is wrong with the bytes, in words; empty if nothing is.
    const std::string& error() const { return error_; }

private:
    enum class Form { Unknown, Plain, Gzip };
    struct EndOfStream {
        void operator()(z_stream_s* stream) const;
    };

    ssize_t readFile(char* to, std::size_t size);
    ssize_t readFirst(char* to, std::size_t size);
    void startUnpacking(const char* text, std::size_t size);
    ssize_t unpack(char* to, std::size_t size);
    bool unpackSome();
    bool findNextPart();
    bool isArchive(const char* text, std::size_t size);
    ssize_t fail(const char* error);

    int descriptor_;
    Form form_ = Form::Unknown;
    std::string error_;
    std::array<char, 262> head_ = {}; // of the unpacked bytes
    std::size_t headSize_ = 0;
    std::vector<char> packed_;
    std::unique_ptr<z_stream_s, EndOfStream> stream_;
    bool isBetweenParts_ = false;
};

} // namespace eventsviewer
