#include "eventlog/line_reader.h"

#include "eventlog/lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace eventsviewer {

namespace {

constexpr std::size_t kBlockSize = 65536;

} // namespace

LineReader::LineReader(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      state_(descriptor_ < 0 ? State::Failed : State::Reading), error_(descriptor_ < 0 ? errno : 0),
      mostBytes_(SIZE_MAX)
{
}

LineReader::LineReader(int descriptor, std::size_t longest)
    : descriptor_(descriptor), state_(descriptor < 0 ? State::Failed : State::Reading),
      error_(descriptor < 0 ? errno : 0), mostBytes_(longest + 1)
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

void LineReader::readBlock()
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
    ssize_t count = 0;
    do {
        count = read(descriptor_, buffer_.data() + end_, buffer_.size() - end_);
    } while (count < 0 && errno == EINTR);
    if (count > 0) {
        end_ += static_cast<std::size_t>(count);
    } else {
        state_ = count == 0 ? State::Ended : State::Failed;
        error_ = count == 0 ? 0 : errno;
    }
}

} // namespace eventsviewer
