#include "eventlog/line_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace eventsviewer {

FileBytes::FileBytes(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
}

FileBytes::~FileBytes()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

ssize_t FileBytes::read(char* to, std::size_t size)
{
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, to, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

template class LineReader<FileBytes>;

} // namespace eventsviewer
