#include "eventlog/log.h"

#include "eventlog/log_files.h"
#include "eventlog/terminal.h"
#include "jsonaccess/json_content.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

namespace eventsviewer {

Log::Log(const std::string& path, const std::string& label, Report report)
    : path_{path, jsonaccess::jsonContent(path)}, label_(label), report_(report)
{
    const std::vector<std::string> names = fileNamesOf(path);
    for (const std::string& name : names) {
        File file = fileAt(name);
        const bool isLast = name == names.back();
        const int flags =
            O_RDONLY | O_CLOEXEC | (isLast ? 0 : O_NONBLOCK); // a pipe is no predecessor
        file.descriptor = path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, kFirstFree)
                                      : open(name.c_str(), flags);
        const int error = file.descriptor < 0 ? errno : 0;
        file.error = error != 0 ? std::strerror(error) : "";
        file.start = error != 0 ? 0 : lseek(file.descriptor, 0, SEEK_CUR);
        isOnlyHere_ = isOnlyHere_ || (error == 0 && (file.start < 0 || path == "-"));
        // All but one may be missing.
        const bool missing = error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
        if (!missing || (isLast && files_.empty())) {
            reportError(file);
            files_.push_back(std::move(file));
        }
    }
}

Log::Log(const std::string& path, LogFollower& follower, Report report)
    : path_{path, jsonaccess::jsonContent(path)}, report_(report)
{
    for (const auto& [name, descriptor] : follower.firstFiles()) {
        files_.push_back(fileAt(name));
        files_.back().descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstFree);
    }
}

Log::~Log()
{
    close();
}

Log::File Log::fileAt(const std::string& name)
{
    File file;
    file.path = {name, jsonaccess::jsonContent(name)};
    file.safePath = safe(name);
    return file;
}

void Log::close()
{
    for (File& file : files_) {
        if (file.descriptor >= 0) {
            ::close(std::exchange(file.descriptor, -1));
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

void Log::reportBy(Report report)
{
    report_ = report;
    for (File& file : files_) {
        reportError(file);
    }
}

const Log::File& Log::holding(std::uint64_t number) const
{
    auto file = files_.rbegin();
    while (number < file->firstLine) {
        ++file;
    }
    return *file;
}

std::pair<const Path*, std::uint64_t> Log::placeOf(std::uint64_t number) const
{
    const File& file = holding(number);
    return {&file.path, number - file.firstLine + 1};
}

std::int64_t Log::changed() const
{
    struct stat status = {};
    if (!files_.empty() && files_.back().descriptor >= 0) {
        fstat(files_.back().descriptor, &status);
    }
    const bool isKnown = S_ISREG(status.st_mode) && path_.text != "-";
    return isKnown ? status.st_mtime : std::time(nullptr);
}

void Log::reportError(File& file)
{
    if (!file.error.empty() && report_ != nullptr && !std::exchange(file.isReported, true)) {
        report_(file.safePath + ": " + file.error);
        failed_ = true;
    }
}

void Log::reportLine(std::uint64_t number, std::string_view message) const
{
    if (!message.empty() && report_ != nullptr) {
        report_(holding(number).safePath + ':' + std::to_string(placeOf(number).second) + ": " +
                safe(message));
    }
}

} // namespace eventsviewer
