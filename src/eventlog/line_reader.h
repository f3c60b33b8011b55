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
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    /// Gives the next lines, one at least, each with its newline; the last of the file may have
    /// none. They are valid until the next call. False when there are no more.
    bool next(std::string_view& lines);

private:
    enum class State { Reading, Ended, Failed };

    void readBlock();

    int descriptor_;
    State state_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0; // the bytes not yet given out: begin_ up to end_
    std::size_t end_ = 0;
};

} // namespace eventsviewer
