// How a log goes on: other software writes to the file L, at times renames it to L.0 and begins a
// new L. Such a rotation loses nothing if the next comes after this has looked, and nor does a copy
// in the place of L. Everything else may: then there is a note.

#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace eventsviewer {

/// The files of a log that is still written, one after the other, as bytes for LineReader: L.0, L,
/// and each file that takes the place of L. A file ends when another has taken its place.
class LogFollower {
public:
    /// Follows the log `path`. Calls `idle` each time when all that was written has been read.
    /// Ends when `output` is a pipe that nobody reads any more.
    LogFollower(std::string path, int output, std::function<void()> idle);
    LogFollower(const LogFollower&) = delete;
    LogFollower& operator=(const LogFollower&) = delete;
    ~LogFollower() = default;

    /// The paths and descriptors of the files that are there at the beginning. Before nextFile
    /// only.
    std::vector<std::pair<std::string, int>> firstFiles();

    /// Goes to the next file, and waits until there is one. False at the end and after an error.
    bool nextFile();

    static bool isOpen() { return true; }

    /// Gives up to `size` bytes of the file, and waits for them; 0 at its end; -1 for an error.
    ssize_t read(char* to, std::size_t size);

    /// The path that the file had when it was opened.
    const std::string& path() const { return current_.path; }

    /// The errno of opening or reading, 0 without an error.
    int error() const { return error_; }

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
    bool openNext(File log);
    bool isCopy(const File& file) const;
    bool wait();
    bool watch();
    void takeChanges();

    const std::string path_;
    const int output_;
    const std::function<void()> idle_;
    File current_;
    File before_;           // the file L.0 when current_ was opened
    std::deque<File> next_; // after current_
    off_t position_ = 0;    // in current_
    bool isOver_ = false;   // current_ was truncated
    bool hasEnded_ = false;
    File inotify_;
    bool isWatched_ = false; // all that can be, since the last change of the files
    std::string realPath_;   // where path_ leads
    unsigned appeared_ = 0;  // how often a file has taken the place of the log since openNext
    bool hasSaidThatItPolls_ = false;
    int error_ = 0;
    std::string note_;
};

} // namespace eventsviewer
