#include "query/log.h"

#include "jsonaccess/json_content.h"
#include "query/escapes.h"
#include "query/messages.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

namespace eventsviewer::query {

namespace {

// A log never takes the place of a standard output that is closed.
constexpr int kFirstFree = 3;

// Copies what `descriptor` still gives into memory. The copy takes its place. Returns an errno.
int copyToMemory(int descriptor)
{
    const int copy = memfd_create("log", MFD_CLOEXEC);
    std::vector<char> buffer(65536);
    ssize_t count = copy < 0 ? -1 : 1;
    while (count > 0) {
        do {
            count = read(descriptor, buffer.data(), buffer.size());
        } while (count < 0 && errno == EINTR);
        for (ssize_t done = 0; done < count;) {
            const auto rest = static_cast<std::size_t>(count - done);
            const ssize_t written = write(copy, buffer.data() + done, rest);
            if (written < 0 && errno != EINTR) {
                return errno;
            }
            done += std::max<ssize_t>(written, 0);
        }
    }
    const int error = count < 0 ? errno : 0;
    dup3(copy, descriptor, O_CLOEXEC);
    close(copy);
    return error;
}

} // namespace

Log::Log(const std::string& path) : path_{path, jsonaccess::jsonContent(path)}
{
    const bool isStandardInput = path == "-";
    for (const std::string& name : {path + ".0", path}) {
        if (isStandardInput && name != path) {
            continue;
        }
        File file{{name, jsonaccess::jsonContent(name)}};
        file.descriptor = isStandardInput ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, kFirstFree)
                                          : open(name.c_str(), O_RDONLY | O_CLOEXEC);
        file.error = file.descriptor < 0 ? errno : 0;
        file.start = file.descriptor < 0 ? 0 : lseek(file.descriptor, 0, SEEK_CUR);
        // One of the two may be missing.
        const bool missing =
            file.error == ENOENT || file.error == ENOTDIR || file.error == ENAMETOOLONG;
        if (!missing || (name == path && files_.empty())) {
            reportError(file);
            files_.push_back(std::move(file));
        }
    }
}

Log::~Log()
{
    for (const File& file : files_) {
        if (file.descriptor >= 0) {
            close(file.descriptor);
        }
    }
}

void Log::keepForReadingAgain()
{
    for (File& file : files_) {
        if (file.descriptor >= 0 && file.start < 0) {
            file.error = copyToMemory(file.descriptor);
            file.start = 0;
        }
    }
}

int Log::fromTheBeginning(const File& file)
{
    lseek(file.descriptor, file.start, SEEK_SET); // a pipe is read once, from where it is
    return fcntl(file.descriptor, F_DUPFD_CLOEXEC, kFirstFree);
}

const Log::File& Log::holding(std::uint64_t number) const
{
    const bool isInLast = number >= files_.back().firstLine;
    return isInLast ? files_.back() : files_.front();
}

const Path& Log::fileOf(std::uint64_t number) const
{
    return holding(number).path;
}

std::uint64_t Log::lineInFile(std::uint64_t number) const
{
    return number - holding(number).firstLine + 1;
}

std::int64_t Log::changed() const
{
    struct stat status = {};
    fstat(files_.back().descriptor, &status); // without a file, it is not a regular one
    if (S_ISREG(status.st_mode) && path_.text != "-") {
        return status.st_mtime;
    }
    return std::time(nullptr);
}

void Log::reportError(File& file)
{
    if (file.error != 0 && !std::exchange(file.isReported, true)) {
        query::report(safe(file.path.text) + ": " + std::strerror(file.error));
        failed_ = true;
    }
}

void Log::report(std::uint64_t number, std::string_view message) const
{
    if (!message.empty()) {
        query::report(safe(fileOf(number).text) + ':' + std::to_string(lineInFile(number)) + ": " +
                      safe(message));
    }
}

} // namespace eventsviewer::query
