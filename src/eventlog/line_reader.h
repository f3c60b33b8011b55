#pragma once

#include "eventlog/lines.h"

#include <sys/types.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// The bytes of a file, for LineReader.
class FileBytes {
public:
    explicit FileBytes(const std::string& path);
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;
    ~FileBytes();

    bool isOpen() const { return descriptor_ >= 0; }

    /// Reads up to `size` bytes to `to`, like read(2), but goes on after an interruption.
    ssize_t read(char* to, std::size_t size);

private:
    int descriptor_;
};

/// The lines of `Bytes`, read block by block: only the longest line has to fit in memory. What
/// cannot be opened has no lines; after a read error, the line before the error is the last.
template <typename Bytes> class LineReader {
public:
    /// Reads `bytes`, which have to outlive this. Each line with more than `longest` bytes is left
    /// out.
    explicit LineReader(Bytes& bytes, std::size_t longest = SIZE_MAX - 1)
        : bytes_(bytes), state_(bytes.isOpen() ? State::Reading : State::Failed),
          mostBytes_(longest + 1)
    {
    }

    /// Gives the next lines, one at least, each with its newline; the last of the file may have
    /// none. They are valid until the next call. False when there are no more.
    bool next(std::string_view& lines);

    /// Whether next gave one empty line in place of a line that was too long.
    bool leftOutLine() const { return leftOutLine_; }

private:
    enum class State { Reading, Ended, Failed };
    static constexpr std::size_t kBlockSize = 65536;

    void readBlock();

    Bytes& bytes_;
    State state_;
    bool leftOutLine_ = false;
    bool skipping_ = false; // the rest of a line that is left out
    std::size_t mostBytes_; // of the buffer
    std::vector<char> buffer_;
    std::size_t begin_ = 0; // the bytes not yet given out: begin_ up to end_
    std::size_t end_ = 0;
};

template <typename Bytes> bool LineReader<Bytes>::next(std::string_view& lines)
{
    leftOutLine_ = false;
    while (state_ == State::Reading) {
        std::size_t searched = end_ - begin_; // the beginning of a line
        readBlock();
        const std::string_view text(buffer_.data(), end_);
        if (skipping_) {
            const std::size_t newline = text.find('\n');
            skipping_ = newline == std::string_view::npos;
            begin_ = searched = skipping_ ? end_ : newline + 1;
        }
        const std::size_t found = wholeLinesLength(text.substr(searched));
        if (found > 0) {
            lines = text.substr(begin_, searched + found - begin_);
            begin_ = searched + found;
            return true;
        }
        if (end_ - begin_ == mostBytes_) {
            leftOutLine_ = skipping_ = true;
            begin_ = end_;
            lines = "\n";
            return true;
        }
    }
    lines = {buffer_.data() + begin_, end_ - begin_};
    begin_ = end_;
    return state_ == State::Ended && !lines.empty();
}

template <typename Bytes> void LineReader<Bytes>::readBlock()
{
    if (begin_ > 0) {
        std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ == buffer_.size()) { // one line fills it and goes on
        buffer_.resize(std::min(std::max(kBlockSize, 2 * buffer_.size()), mostBytes_));
    }
    const ssize_t count = bytes_.read(buffer_.data() + end_, buffer_.size() - end_);
    if (count > 0) {
        end_ += static_cast<std::size_t>(count);
    } else {
        state_ = count == 0 ? State::Ended : State::Failed;
    }
}

extern template class LineReader<FileBytes>;

} // namespace eventsviewer
