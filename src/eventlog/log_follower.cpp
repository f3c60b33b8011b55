#include "eventlog/log_follower.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace eventsviewer {

namespace {

constexpr int kPollInterval = 1000; // ms

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

// Where what another machine writes is not reported.
bool isOnNetwork(const std::string& folder)
{
    struct statfs status = {};
    if (statfs(folder.c_str(), &status) != 0) {
        return false;
    }
    constexpr unsigned long kNetworks[] = {
        0x6969,     // NFS
        0x517b,     // SMB
        0xff534d42, // CIFS
        0xfe534d42, // SMB 2
        0x01021997, // 9P
        0x65735546, // FUSE
    };
    const auto type = static_cast<unsigned long>(status.f_type) & 0xffffffff;
    return std::find(std::begin(kNetworks), std::end(kNetworks), type) != std::end(kNetworks);
}

ssize_t readAt(int descriptor, char* to, std::size_t size, off_t position)
{
    ssize_t count = 0;
    do {
        count = pread(descriptor, to, size, position);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

LogFollower::File::File(std::string name) : path(std::move(name))
{
    // A named pipe would not open until somebody writes to it.
    descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor >= 0 && descriptor < kFirstFree) {
        const int free = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstFree);
        close(std::exchange(descriptor, free));
    }
    if (descriptor >= 0) {
        fstat(descriptor, &status);
    }
}

LogFollower::File::File(int opened, std::string name) : path(std::move(name)), descriptor(opened)
{
    fstat(descriptor, &status);
}

LogFollower::File LogFollower::File::again() const
{
    return {fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstFree), path};
}

LogFollower::File::File(File&& other) noexcept
    : path(std::move(other.path)), descriptor(std::exchange(other.descriptor, -1)),
      status(other.status)
{
}

LogFollower::File& LogFollower::File::operator=(File&& other) noexcept
{
    std::swap(path, other.path);
    std::swap(descriptor, other.descriptor);
    std::swap(status, other.status);
    return *this;
}

LogFollower::File::~File()
{
    if (isOpen()) {
        close(descriptor);
    }
}

bool LogFollower::File::is(const struct stat& other) const
{
    return isOpen() && status.st_dev == other.st_dev && status.st_ino == other.st_ino;
}

LogFollower::LogFollower(std::string path, int output)
    : path_(std::move(path)), output_(output), realPath_(path_)
{
    watch();
}

std::vector<std::pair<std::string, int>> LogFollower::firstFiles()
{
    look();
    std::vector<std::pair<std::string, int>> files;
    files.reserve(next_.size());
    for (const File& file : next_) {
        files.emplace_back(file.path, file.descriptor);
    }
    return files;
}

bool LogFollower::nextFile()
{
    while (next_.empty() && error_ == 0 && !hasEnded_) {
        hasEnded_ = !look() && !wait();
    }
    if (next_.empty()) {
        return false;
    }
    current_ = std::move(next_.front());
    next_.pop_front();
    position_ = 0;
    isOver_ = isWatched_ = false;
    return true;
}

ssize_t LogFollower::read(char* to, std::size_t size)
{
    while (!isOver_ && !hasEnded_ && error_ == 0) {
        const ssize_t count = readAt(current_.descriptor, to, size, position_);
        if (count > 0) {
            position_ += count;
            return count;
        }
        if (count < 0) {
            fail(errno, current_.path);
        } else if (!next_.empty()) { // and so nothing more was written here
            return 0;
        } else {
            hasEnded_ = !look() && !wait();
        }
    }
    return error_ == 0 ? 0 : -1;
}

// Whether there is more to read, here or in a file that comes next.
bool LogFollower::look()
{
    struct stat status = {};
    status.st_size = position_; // without a file it stays
    fstat(current_.descriptor, &status);
    if (status.st_size < position_) {
        note_ = "was truncated; events may be missing";
        isOver_ = true;
        next_.push_back(current_.again());
        return true;
    }
    if (stat(path_.c_str(), &status) == 0 && current_.is(status)) {
        return false;
    }
    File log(path_);
    if (!log.isOpen() && errno != ENOENT && errno != ENOTDIR) {
        return fail(errno, path_);
    }
    if (log.isOpen() && !S_ISREG(log.status.st_mode)) {
        return fail(S_ISDIR(log.status.st_mode) ? EISDIR : ESPIPE, path_);
    }
    if (log.isOpen()) {
        return openNext(std::move(log));
    }
    // At the beginning there may be only what was renamed.
    File before = current_.isOpen() ? File() : openOlder();
    if (before.isOpen()) {
        next_.push_back(std::move(before));
    }
    return !next_.empty();
}

// Ends everything; returns true.
bool LogFollower::fail(int error, const std::string& path)
{
    error_ = error;
    errorPath_ = path;
    return true;
}

// The file L.0, not open if there is none that can be read.
LogFollower::File LogFollower::openOlder()
{
    File before(path_ + ".0");
    const int reason = before.isOpen() ? 0 : errno;
    if (reason != 0 && reason != ENOENT && reason != ENOTDIR) {
        note_ = "its predecessor cannot be read: " + std::string(std::strerror(reason)) +
                "; events may be missing";
    }
    return S_ISREG(before.status.st_mode) ? std::move(before) : File();
}

// `log` has taken the place of the current file, if there is one.
bool LogFollower::openNext(File log)
{
    File before = openOlder();
    struct stat status = {};
    if (stat(path_.c_str(), &status) != 0 || !log.is(status)) {
        return look(); // once more: it was renamed meanwhile
    }
    takeChanges();
    const bool isRotated = !current_.isOpen() || current_.is(before.status);
    const bool isNext = isRotated && appeared_ <= 1;
    std::list<File> files;
    if (before.isOpen() && !current_.is(before.status) && !before_.is(before.status)) {
        files.push_back(before.again()); // at its path there may be another by now
    }
    files.push_back(std::move(log));
    if (!isRotated && isCopy(files.front())) { // a copy
        current_ = std::move(files.front());
        files.pop_front();
        isWatched_ = false;
    } else if (!isNext) {
        note_ = "other files have taken its place; events may be missing";
    }
    before_ = std::move(before);
    next_ = std::move(files);
    appeared_ = 0;
    return true;
}

// Whether `file` begins with all that the current file has.
bool LogFollower::isCopy(const File& file) const
{
    char one[BUFSIZ];
    char other[BUFSIZ];
    off_t done = 0;
    ssize_t count = 0;
    while ((count = readAt(current_.descriptor, one, sizeof one, done)) > 0) {
        const auto size = static_cast<std::size_t>(count);
        if (readAt(file.descriptor, other, size, done) != count ||
            std::memcmp(one, other, size) != 0) {
            return false;
        }
        done += count;
    }
    return done > 0;
}

// Returns false if there is nobody to read for.
bool LogFollower::wait()
{
    idle_();
    if (!isWatched_) { // what was written until now is not reported: look again
        isWatched_ = true;
        if (!watch() && !std::exchange(hasSaidThatItPolls_, true)) {
            note_ = "cannot be watched; looked at once a second, so events may be missing";
        }
        return true;
    }
    pollfd events[] = {{output_, 0, 0}, {inotify_.descriptor, POLLIN, 0}};
    poll(events, 2, inotify_.isOpen() ? -1 : kPollInterval);
    takeChanges();
    isWatched_ = isWatched_ && inotify_.isOpen();
    return (events[0].revents & (POLLERR | POLLHUP | POLLNVAL)) == 0;
}

bool LogFollower::watch()
{
    // Two files that appear one after the other are reported once, unless one goes in between.
    constexpr std::uint32_t kNames =
        IN_CREATE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM | IN_DELETE_SELF | IN_MOVE_SELF;
    char real[PATH_MAX];
    realPath_ = realpath(path_.c_str(), real) != nullptr ? real : realPath_;
    if (!inotify_.isOpen()) {
        inotify_ = File(inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "");
    }
    const auto add = [this](const std::string& path, std::uint32_t changes) {
        return inotify_add_watch(inotify_.descriptor, path.c_str(), changes) >= 0;
    };
    const std::string open = "/proc/self/fd/" + std::to_string(current_.descriptor);
    const bool isWatched = !isOnNetwork(folderOf(realPath_)) && add(folderOf(path_), kNames) &&
                           add(folderOf(realPath_), kNames) &&
                           (!current_.isOpen() || add(open, IN_MODIFY) || add(path_, IN_MODIFY));
    if (!isWatched) {
        inotify_ = File();
    }
    return isWatched;
}

// Takes what inotify reports. The files themselves are compared in look.
void LogFollower::takeChanges()
{
    alignas(inotify_event) char buffer[4096];
    ssize_t size = 0;
    while (inotify_.isOpen() && (size = ::read(inotify_.descriptor, buffer, sizeof buffer)) > 0) {
        for (ssize_t begin = 0; begin < size;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(buffer + begin);
            const std::string name = event->len > 0 ? event->name : "";
            if ((event->mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
                appeared_ += name == nameOf(path_) || name == nameOf(realPath_) ? 1 : 0;
            } else if ((event->mask & (IN_MODIFY | IN_DELETE | IN_MOVED_FROM)) == 0) {
                isWatched_ = false; // what was watched has gone, or changes are lost
                appeared_ += (event->mask & IN_Q_OVERFLOW) != 0 ? 2 : 0;
            }
            begin += static_cast<ssize_t>(sizeof *event + event->len);
        }
    }
}

std::string LogFollower::takeNote()
{
    return std::exchange(note_, {});
}

} // namespace eventsviewer
