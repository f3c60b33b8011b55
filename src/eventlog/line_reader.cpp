#include "eventlog/line_reader.h"

#include "eventlog/lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace eventsviewer {

namespace {

constexpr std::size_t kBlockSize = 65536;

} // namespace

LineReader::LineReader(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      state_(descriptor_ < 0 ? State::Failed : State::Reading)
{
}

LineReader::~LineReader()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

bool LineReader::next(std::string_view& lines)
{
    while (state_ == State::Reading) {
        const std::size_t searched = end_ - begin_; // the beginning of a line
        readBlock();
        const char* const text = buffer_.data();
        const std::size_t found = wholeLinesLength({text + searched, end_ - searched});
        if (found > 0) {
            begin_ = searched + found;
            lines = {text, begin_};
            return true;
        }
    }
    lines = {buffer_.data() + begin_, end_ - begin_};
    begin_ = end_;
    return state_ == State::Ended && !lines.empty();
}

void LineReader::readBlock()
{
    if (begin_ > 0) {
        std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ == buffer_.size()) { // of one line that goes on
        buffer_.resize(std::max(kBlockSize, 2 * buffer_.size()));
    }
    ssize_t count = 0;
    do {
        count = read(descriptor_, buffer_.data() + end_, buffer_.size() - end_);
    } while (count < 0 && errno == EINTR);
    if (count > 0) {
        end_ += static_cast<std::size_t>(count);
    } else {
        state_ = count == 0 ? State::Ended : State::Failed;
    }
}

} // namespace eventsviewer
