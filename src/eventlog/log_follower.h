// How a log goes on: other software writes to the file L, at times renames it to L.0 and begins a
// new L. Such a rotation loses nothing if the next comes after this has looked, and nor does a copy
// in the place of L. Everything else may: then there is a note, unless L was truncated and is as
// long again.

#pragma once

#include "eventlog/log_bytes.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace eventsviewer {

/// A log never takes the place of a standard stream that is closed.
constexpr int kFirstFree = 3;

/// The files of a log that is still written, one after the other, as bytes for LineReader: L.0, L,
/// and each file that takes the place of L. A file ends when another has taken its place.
class LogFollower final : public ByteSource {
public:
    /// Follows the log `path`. Ends when `output` is a pipe that nobody reads any more.
    LogFollower(std::string path, int output);

    /// From now on `idle` is called each time when all that was written has been read.
    void callWhenIdle(std::function<void()> idle) { idle_ = std::move(idle); }

    /// The paths and descriptors of the files that are there at the beginning. Before nextFile
    /// only.
    std::vector<std::pair<std::string, int>> firstFiles();

    /// Goes to the next file, and waits until there is one. False at the end and after an error.
    bool nextFile();

    /// Waits for bytes unless the file has ended.
    ssize_t read(char* to, std::size_t size) override;

    /// The path that the file had when it was opened.
    const std::string& path() const { return current_.path; }

    /// The errno of opening or reading, 0 without an error, and the path that could not be opened
    /// or read.
    int error() const { return error_; }
    const std::string& errorPath() const { return errorPath_; }

    /// What a person has to know about the log since the last call; mostly empty.
    std::string takeNote();

private:
    // Closes the descriptor in the end.
    struct File {
        File() = default;
        explicit File(std::string path);
        File(int opened, std::string path);
        File(File&& other) noexcept;
        File& operator=(File&& other) noexcept;
        ~File();

        bool isOpen() const { return descriptor >= 0; }
        bool is(const struct stat& other) const;
        File again() const; // by another descriptor

        std::string path;
        int descriptor = -1;
        struct stat status = {};
    };

    bool look();
    bool fail(int error, const std::string& path);
    bool openNext(File log);
    File openOlder();
    bool isCopy(const File& file) const;
    bool wait();
    bool watch();
    void takeChanges();

    const std::string path_;
    const int output_;
    std::function<void()> idle_;
    File current_;
    File before_;          // the file L.0 when current_ was opened
    std::list<File> next_; // after current_
    off_t position_ = 0;   // in current_
    bool isOver_ = false;  // current_ was truncated
    bool hasEnded_ = false;
    File inotify_;
    bool isWatched_ = false; // all that can be, since the last change of the files
    std::string realPath_;   // where path_ leads
    unsigned appeared_ = 0;  // how often a file has taken the place of the log since openNext
    bool hasSaidThatItPolls_ = false;
    int error_ = 0;
    std::string errorPath_;
    std::string note_;
};

} // namespace eventsviewer
