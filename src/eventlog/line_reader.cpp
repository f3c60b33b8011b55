#include "eventlog/line_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

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

bool LineReader::next(std::string_view& line)
{
    std::size_t searched = 0;
    for (;;) {
        const char* const text = buffer_.data() + begin_;
        const std::size_t length = end_ - begin_;
        if (length > searched) {
            const void* const lineFeed = std::memchr(text + searched, '\n', length - searched);
            if (lineFeed != nullptr) {
                line = {text, static_cast<std::size_t>(static_cast<const char*>(lineFeed) - text)};
                begin_ += line.size() + 1;
                return true;
            }
        }
        if (state_ != State::Reading) {
            line = {text, length};
            begin_ = end_;
            return state_ == State::Ended && length > 0;
        }
        searched = length;
        readBlock();
    }
}

void LineReader::readBlock()
{
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
    if (end_ == buffer_.size()) {
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
