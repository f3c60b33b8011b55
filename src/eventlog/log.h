#pragma once

#include "eventlog/line_reader.h"
#include "eventlog/log_bytes.h"
#include "eventlog/log_follower.h"
#include "eventlog/reading_progress.h"

#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer {

/// Lines with more bytes are left out, so that memory has a bound.
constexpr std::size_t kLongestLine = std::size_t{16} * 1024 * 1024;

/// A path as it is, and as the content of a JSON string.
struct Path {
    std::string text;
    std::string json;
};

/// A log as it is given: the file L.0, if there is one, and the file L, or compressed ones; or
/// standard input.
class Log {
public:
    /// Says what is wrong, in one line for a person.
    using Report = void (*)(const std::string& message);
    using Pause = std::function<void()>;

    /// Opens the log at `path`, or standard input for "-". Names each file that cannot be opened by
    /// `report`, which is null if the log is read again later.
    Log(const std::string& path, const std::string& label, Report report);

    /// The files that `follower` begins with.
    Log(const std::string& path, LogFollower& follower, Report report);

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    ~Log();

    /// Makes reading the log more than once possible, if need be by a copy in memory.
    void keepForReadingAgain();

    /// Calls `use(line, number)` with each line, oldest first. `number` counts the lines of the log
    /// from 0 on. A line that is too long has no data. Calls `pause()` when the next lines may take
    /// time to come. Names a file that cannot be read to its end, and each line that is too long,
    /// on standard error.
    template <typename Use> void read(Use use, const Pause& pause)
    {
        std::uint64_t number = 0;
        for (File& file : files_) {
            file.firstLine = number;
            if (file.descriptor < 0) {
                continue;
            }
            lseek(file.descriptor, file.start, SEEK_SET); // a pipe is read once, from where it is
            LogBytes bytes(file.descriptor);
            number = readLines(bytes, file.safePath, number, use, pause);
            file.error = bytes.error().empty() ? file.error : bytes.error();
            reportError(file);
        }
        reported_ = report_ != nullptr ? number : 0;
        lines_ = number;
    }

    /// Reads the files of `follower` like read, as long as they come.
    template <typename Use> void follow(LogFollower& follower, Use use, const Pause& pause)
    {
        close();
        files_.clear();
        lines_ = 0;
        while (follower.nextFile()) {
            files_.push_back(fileAt(follower.path()));
            files_.back().firstLine = lines_;
            lines_ = readLines(follower, files_.back().safePath, lines_, use, pause);
        }
        if (follower.error() != 0) {
            files_.push_back(fileAt(follower.errorPath()));
            files_.back().error = std::strerror(follower.error());
            reportError(files_.back());
        }
    }

    /// How many lines have been read.
    std::uint64_t lines() const { return lines_; }

    /// Whether a part of it is gone if the log is opened once more.
    bool isOnlyHere() const { return isOnlyHere_; }

    /// Names by `report` what is wrong, and what will be.
    void reportBy(Report report);

    /// Closes the files. What was read of them can still be named.
    void close();

    /// The path as it was given, and what tells it from the other logs.
    const Path& path() const { return path_; }
    const std::string& label() const { return label_; }

    /// The path of the file with line `number`, and which line of that file it is, from 1 on.
    std::pair<const Path*, std::uint64_t> placeOf(std::uint64_t number) const;

    /// Says `message` of the line `number`; nothing without a message.
    void reportLine(std::uint64_t number, std::string_view message) const;

    /// When the file was last changed, in seconds since 1970; now for standard input.
    std::int64_t changed() const;

    /// Whether a file could not be opened or read.
    bool failed() const { return failed_; }

private:
    struct File {
        Path path;
        std::string safePath;
        int descriptor = -1;
        std::string error; // what is wrong, in words
        off_t start = 0;   // where the log begins; negative if it can be read only once
        bool isReported = false;
        std::uint64_t firstLine = UINT64_MAX;
    };

    template <typename Use>
    std::uint64_t readLines(ByteSource& bytes, const std::string& file, std::uint64_t number,
                            Use& use, const Pause& pause)
    {
        LineReader reader(bytes, kLongestLine);
        std::uint64_t bytesBefore = 0;
        std::string_view block;
        while (reader.next(block)) {
            showProgress(file, bytes.bytesRead() - bytesBefore);
            bytesBefore = bytes.bytesRead();
            if (reader.leftOutLine()) {
                reportLine(number, number < reported_ ? "" : "longer than 16 MiB; left out");
                use({}, number++);
                continue;
            }
            while (!block.empty()) {
                use(takeFirstLine(block), number++);
            }
            pause();
        }
        return number;
    }
    static File fileAt(const std::string& name);
    const File& holding(std::uint64_t number) const;
    void reportError(File& file);

    Path path_;
    std::string label_;
    Report report_;
    std::vector<File> files_;
    bool isOnlyHere_ = false;
    std::uint64_t reported_ = 0; // of these lines the long ones have been reported
    bool failed_ = false;
    std::uint64_t lines_ = 0;
};

} // namespace eventsviewer
