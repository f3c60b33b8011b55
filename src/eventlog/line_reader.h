#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

/// The lines of a file, read block by block: only the longest line has to fit in memory. A file
/// that cannot be opened has no lines; after a read error, the line before the error is the last.
class LineReader {
public:
    explicit LineReader(const std::string& path);

    /// Reads an open file from where it is, and closes it in the end. Each line with more than
    /// `longest` bytes is left out. A negative descriptor failed to open, as errno tells.
    LineReader(int descriptor, std::size_t longest);

    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    /// Gives the next lines, one at least, each with its newline; the last of the file may have
    /// none. They are valid until the next call. False when there are no more.
    bool next(std::string_view& lines);

    /// Whether next gave one empty line in place of a line that was too long.
    bool leftOutLine() const { return leftOutLine_; }

    /// The errno of opening or reading, 0 without an error.
    int error() const { return error_; }

private:
    enum class State { Reading, Ended, Failed };

    void readBlock();

    int descriptor_;
    State state_;
    int error_ = 0;
    bool leftOutLine_ = false;
    bool skipping_ = false; // the rest of a line that is left out
    std::size_t mostBytes_; // of the buffer
    std::vector<char> buffer_;
    std::size_t begin_ = 0; // the bytes not yet given out: begin_ up to end_
    std::size_t end_ = 0;
};

} // namespace eventsviewer
