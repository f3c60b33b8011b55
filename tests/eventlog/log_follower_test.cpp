#include "eventlog/log_follower.h"

#include "eventlog/line_reader.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

// Which watches fail, as when the system has no more of them.
std::function<bool(const std::string& path, std::uint32_t changes)> cannotWatch;
std::function<void()> beforeOpen0; // called once, before a file L.0 is opened
std::function<void()> beforeQueue; // called once, before what inotify reports is read
bool isOnNetwork = false;
bool queueOverflows = false;
int readError = 0;

} // namespace

// The linker redirects the program's own calls to these (--wrap). NOLINTBEGIN
extern "C" {

int __real_inotify_add_watch(int queue, const char* path, std::uint32_t mask);
int __real_open64(const char* path, int flags, ...);
int __real_statfs64(const char* path, struct statfs* status);
ssize_t __real_read(int descriptor, void* buffer, std::size_t size);
ssize_t __real_pread64(int descriptor, void* buffer, std::size_t size, off_t position);

int __wrap_inotify_add_watch(int queue, const char* path, std::uint32_t mask)
{
    errno = ENOSPC;
    return cannotWatch && cannotWatch(path, mask) ? -1
                                                  : __real_inotify_add_watch(queue, path, mask);
}

// Never creates a file, so there is no third argument.
int __wrap_open64(const char* path, int flags, ...)
{
    const std::string name = path;
    if (beforeOpen0 && name.size() > 2 && name.substr(name.size() - 2) == ".0") {
        std::exchange(beforeOpen0, {})();
    }
    return __real_open64(path, flags);
}

int __wrap_statfs64(const char* path, struct statfs* status)
{
    const int result = __real_statfs64(path, status);
    status->f_type = isOnNetwork ? 0x6969 : status->f_type; // NFS
    return result;
}

// Only the queue of inotify is read by this one.
ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size)
{
    if (beforeQueue) {
        std::exchange(beforeQueue, {})();
    }
    const ssize_t count = __real_read(descriptor, buffer, size);
    if (count <= 0 || !queueOverflows) {
        return count;
    }
    inotify_event event = {};
    event.wd = -1;
    event.mask = IN_Q_OVERFLOW;
    std::memcpy(buffer, &event, sizeof event);
    return sizeof event;
}

ssize_t __wrap_pread64(int descriptor, void* buffer, std::size_t size, off_t position)
{
    errno = readError;
    if (readError == EINTR) {
        readError = 0;
        return -1;
    }
    return readError != 0 ? -1 : __real_pread64(descriptor, buffer, size, position);
}
}
// NOLINTEND

namespace eventsviewer {
namespace {

using Lines = std::vector<std::string>;
using Step = std::function<void()>;

class LogFollowerTest : public testing::Test {
protected:
    ~LogFollowerTest() override
    {
        cannotWatch = nullptr;
        beforeOpen0 = beforeQueue = nullptr;
        isOnNetwork = queueOverflows = false;
        readError = 0;
    }

    void append(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder_.path(name), std::ios::app | std::ios::binary) << text;
    }

    void rename(const std::string& from, const std::string& to) const
    {
        std::filesystem::rename(folder_.path(from), folder_.path(to));
    }

    void rotate(const std::string& text) const
    {
        rename("log", "log.0");
        append("log", text);
    }

    // The lines of the log. Each step is done when everything before it has been read; after the
    // last one nobody reads the output any more.
    Lines follow(const std::vector<Step>& steps)
    {
        int output[2];
        EXPECT_EQ(0, pipe(output));
        std::size_t done = 0;
        LogFollower followed(folder_.path("log"), output[1]);
        followed.callWhenIdle([&] {
            if (done < steps.size()) {
                steps[done]();
            } else if (done == steps.size()) {
                close(output[0]);
            }
            ++done;
            notes_ += followed.takeNote();
        });
        Lines lines;
        while (followed.nextFile()) {
            LineReader reader(followed);
            std::string_view next;
            while (reader.next(next)) {
                while (!next.empty()) {
                    lines.emplace_back(takeFirstLine(next));
                }
            }
        }
        notes_ += followed.takeNote();
        error_ = followed.error();
        errorPath_ = followed.errorPath();
        close(output[1]);
        if (done <= steps.size()) {
            close(output[0]);
        }
        return lines;
    }

    TemporaryFolder folder_;
    std::string notes_;
    int error_ = 0;
    std::string errorPath_;
};

constexpr const char* kPolls =
    "cannot be watched; looked at once a second, so events may be missing";
constexpr const char* kMayBeMissing = "other files have taken its place; events may be missing";

TEST_F(LogFollowerTest, GivesTheOlderFileAndTheLogAndWhatIsWritten)
{
    append("log.0", "1\n2\n");
    append("log", "3\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4", "5"}),
              follow({[&] { append("log", "4\n"); }, [&] { append("log", "5\n"); }}));
    EXPECT_EQ("", notes_);
    EXPECT_EQ(0, error_);
}

TEST_F(LogFollowerTest, WaitsForALog)
{
    EXPECT_EQ((Lines{"1"}), follow({[] {}, [&] { append("log", "1\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, WaitsForALogThatWasJustRenamed)
{
    append("log.0", "1\n");
    EXPECT_EQ((Lines{"1", "2"}), follow({[] {}, [&] { append("log", "2\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, WaitsForTheEndOfALine)
{
    append("log", "1\n2");
    EXPECT_EQ((Lines{"1", "2345", "6"}),
              follow({[&] { append("log", "3"); }, [&] { append("log", "4"); },
                      [&] { append("log", "5\n6\n"); }}));
}

TEST_F(LogFollowerTest, GivesALineWithoutItsEndWhenTheFileHasBeenRotated)
{
    append("log", "1\n2");
    EXPECT_EQ((Lines{"1", "2", "3"}), follow({[&] { rotate("3\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, ReadsTheOldFileToItsEnd)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4", "5"}), follow({[&] {
                                                            rename("log", "log.0");
                                                            append("log.0", "2\n");
                                                        },
                                                        [&] { append("log.0", "3\n"); },
                                                        [&] {
                                                            append("log.0", "4\n");
                                                            append("log", "5\n");
                                                        }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, FollowsOneRotationAfterTheOther)
{
    append("log.0", "0\n");
    append("log", "1\n");
    EXPECT_EQ((Lines{"0", "1", "2", "3", "4"}),
              follow({[&] { rotate("2\n"); }, [&] { rotate(""); }, [&] { rotate("3\n"); },
                      [&] { append("log", "4\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, SaysSoIfItWasRotatedTwice)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2", "3"}), follow({[&] {
                  rotate("2\n");
                  rotate("3\n");
              }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, SaysSoIfItWasTruncated)
{
    append("log", "1\n2\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4"}),
              follow({[&] {
                          std::filesystem::resize_file(folder_.path("log"), 0);
                          append("log", "3\n");
                      },
                      [&] { append("log", "4\n"); }}));
    EXPECT_EQ("was truncated; events may be missing", notes_);
}

TEST_F(LogFollowerTest, SaysSoIfItWasTruncatedAndThenRotated)
{
    append("log", "1\n2\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4"}), follow({[&] {
                  std::filesystem::resize_file(folder_.path("log"), 0);
                  append("log", "3\n");
                  rotate("4\n");
              }}));
    EXPECT_EQ("was truncated; events may be missing", notes_);
}

TEST_F(LogFollowerTest, SaysSoIfItWasRemovedAndComesBack)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2"}), follow({[&] { std::filesystem::remove(folder_.path("log")); },
                                         [&] { append("log", "2\n"); }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, SaysSoIfAnotherFileTookItsPlace)
{
    append("log", "1\n2\n");
    append("other", "3\n4\n5\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4", "5"}), follow({[&] { rename("other", "log"); }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, SaysSoIfAShorterFileTookItsPlace)
{
    append("log", "1\n2\n");
    append("other", "1\n");
    EXPECT_EQ((Lines{"1", "2", "1"}), follow({[&] { rename("other", "log"); }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, ShowsTheOlderFileOnceIfOnlyTheLogIsReplaced)
{
    append("log.0", "0\n");
    append("log", "1\n");
    append("other", "2\n");
    EXPECT_EQ((Lines{"0", "1", "2"}), follow({[&] { rename("other", "log"); }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, LosesNothingIfItIsRotatedWhileItIsOpened)
{
    append("log", "1\n");
    beforeOpen0 = [&] { rotate("2\n"); };
    EXPECT_EQ((Lines{"1", "2"}), follow({}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, GivesEachFileOnceIfTheLogIsRotatedWhenTwoHaveBeenOpened)
{
    append("log.0", "1\n");
    append("log", "2\n");
    beforeQueue = [&] { rotate("3\n"); };
    EXPECT_EQ((Lines{"1", "2", "3"}), follow({}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, TakesOnlyAFileForThePredecessor)
{
    append("log", "1\n");
    std::filesystem::create_directory(folder_.path("log.0"));
    EXPECT_EQ(Lines{"1"}, follow({}));
    std::filesystem::remove(folder_.path("log.0"));
    ASSERT_EQ(0, mkfifo(folder_.path("log.0").c_str(), 0600));
    EXPECT_EQ(Lines{"1"}, follow({}));
    std::filesystem::remove(folder_.path("log"));
    EXPECT_EQ(Lines{"2"}, follow({[] {}, [&] { append("log", "2\n"); }}));
    EXPECT_EQ("", notes_);
    EXPECT_EQ(0, error_);
}

TEST_F(LogFollowerTest, SaysSoIfThePredecessorCannotBeOpened)
{
    append("log", "1\n");
    std::filesystem::create_symlink("log.0", folder_.path("log.0"));
    EXPECT_EQ(Lines{"1"}, follow({}));
    EXPECT_EQ("its predecessor cannot be read: Too many levels of symbolic links;"
              " events may be missing",
              notes_);
}

TEST_F(LogFollowerTest, WaitsForALogThatIsRemovedWhileItIsOpened)
{
    append("log", "1\n");
    beforeOpen0 = [&] { std::filesystem::remove(folder_.path("log")); };
    EXPECT_EQ(Lines{"2"}, follow({[] {}, [&] { append("log", "2\n"); }}));
}

TEST_F(LogFollowerTest, GoesOnInACopy)
{
    append("log", "1\n2");
    EXPECT_EQ((Lines{"1", "23", "4"}), follow({[&] {
                                                   append("copy", "1\n23\n");
                                                   rename("copy", "log");
                                               },
                                               [&] { append("log", "4\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, GoesOnInACopyOfWhatWasNotReadYet)
{
    append("log", "");
    EXPECT_EQ((Lines{"1", "2"}), follow({[&] {
                  append("log", "1\n");
                  append("copy", "1\n2\n");
                  rename("copy", "log");
              }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, GoesOnInACopyThatWasRotated)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2", "3"}), follow({[&] {
                  append("log.0", "1\n2\n");
                  std::filesystem::remove(folder_.path("log"));
                  append("log", "3\n");
              }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, NoticesWhatIsWrittenWhereALinkLeads)
{
    std::filesystem::create_directory(folder_.path("real"));
    append("real/log", "1\n");
    std::filesystem::create_symlink("real/log", folder_.path("log"));
    EXPECT_EQ((Lines{"1", "2"}), follow({[&] { append("real/log", "2\n"); }}));
}

TEST_F(LogFollowerTest, GoesOnInACopyWhereALinkLeads)
{
    std::filesystem::create_directory(folder_.path("real"));
    append("real/events", "1\n");
    std::filesystem::create_symlink("real/events", folder_.path("log"));
    EXPECT_EQ((Lines{"1", "2"}), follow({[&] {
                  append("real/copy", "1\n2\n");
                  rename("real/copy", "real/events");
              }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, LooksOnceASecondWhereNothingCanBeWatched)
{
    cannotWatch = [](const std::string&, std::uint32_t) { return true; };
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2", "3"}),
              follow({[] {}, [&] { append("log", "2\n"); }, [&] { rotate("3\n"); }}));
    EXPECT_EQ(kPolls, notes_);
}

TEST_F(LogFollowerTest, LooksOnceASecondWhereTheFileOrItsFolderCannotBeWatched)
{
    std::filesystem::create_directory(folder_.path("real"));
    append("real/log", "1\n");
    std::filesystem::create_symlink("real/log", folder_.path("log"));
    cannotWatch = [](const std::string&, std::uint32_t changes) { return changes == IN_MODIFY; };
    EXPECT_EQ((Lines{"1", "2"}), follow({[] {}, [&] { append("log", "2\n"); }}));
    EXPECT_EQ(kPolls, std::exchange(notes_, {}));
    cannotWatch = [](const std::string& path, std::uint32_t) {
        return path.back() == '/' && path.find("/real/") != std::string::npos;
    };
    EXPECT_EQ((Lines{"1", "2", "3"}), follow({[] {}, [&] { append("log", "3\n"); }}));
    EXPECT_EQ(kPolls, notes_);
}

TEST_F(LogFollowerTest, LooksOnceASecondWhereAnotherMachineMayWrite)
{
    isOnNetwork = true;
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2"}), follow({[] {}, [&] { append("log", "2\n"); }}));
    EXPECT_EQ(kPolls, notes_);
}

TEST_F(LogFollowerTest, WatchesAFileByItsPathWithoutProc)
{
    cannotWatch = [](const std::string& path, std::uint32_t) { return path.find("/proc/") == 0; };
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2"}), follow({[] {}, [&] { append("log", "2\n"); }}));
    EXPECT_EQ("", notes_);
}

TEST_F(LogFollowerTest, SaysSoIfAFileWasRemovedBeforeItWasRead)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "3"}), follow({[&] {
                  rotate("2\n");
                  std::filesystem::remove(folder_.path("log"));
                  append("log", "3\n");
              }}));
    EXPECT_EQ(kMayBeMissing, notes_);
}

TEST_F(LogFollowerTest, ReadsOnWhenTheQueueOverflows)
{
    queueOverflows = true;
    append("log", "1\n");
    EXPECT_EQ((Lines{"1", "2", "3", "4"}),
              follow({[] {}, [&] { append("log", "2\n"); }, [&] { rotate("3\n"); },
                      [&] { append("log", "4\n"); }}));
    EXPECT_EQ(kMayBeMissing, notes_); // it cannot know what it was not told
}

TEST_F(LogFollowerTest, WaitsForItsFolder)
{
    const std::string folder = folder_.path("").substr(0, folder_.path("").size() - 1);
    std::filesystem::remove(folder);
    EXPECT_EQ((Lines{"1"}), follow({[] {}, [&] { std::ofstream{folder}; },
                                    [&] {
                                        std::filesystem::remove(folder);
                                        std::filesystem::create_directory(folder);
                                        append("log", "1\n");
                                    }}));
}

TEST_F(LogFollowerTest, EndsAfterAReadError)
{
    append("log", "1\n");
    EXPECT_EQ((Lines{"1"}), follow({[&] {
                  append("log", "2\n");
                  readError = EIO;
              }}));
    EXPECT_EQ(EIO, error_);
    EXPECT_EQ(folder_.path("log"), errorPath_);
}

TEST_F(LogFollowerTest, GoesOnAfterAnInterruption)
{
    append("log", "1\n");
    readError = EINTR;
    EXPECT_EQ(Lines{"1"}, follow({}));
    EXPECT_EQ(0, error_);
}

TEST_F(LogFollowerTest, EndsIfNobodyReadsBeforeThereIsALog)
{
    EXPECT_EQ(Lines{}, follow({}));
    EXPECT_EQ(0, error_);
}

TEST_F(LogFollowerTest, FollowsOnlyAFile)
{
    std::filesystem::create_directory(folder_.path("log"));
    EXPECT_EQ(Lines{}, follow({}));
    EXPECT_EQ(EISDIR, error_);
    std::filesystem::remove(folder_.path("log"));
    ASSERT_EQ(0, mkfifo(folder_.path("log").c_str(), 0600));
    EXPECT_EQ(Lines{}, follow({}));
    EXPECT_EQ(ESPIPE, error_);
}

TEST_F(LogFollowerTest, EndsIfTheLogCannotBeOpened)
{
    append("log.0", "1\n");
    std::filesystem::create_symlink("log", folder_.path("log"));
    EXPECT_EQ(Lines{}, follow({}));
    EXPECT_EQ(ELOOP, error_);
    EXPECT_EQ(folder_.path("log"), errorPath_);
}

} // namespace
} // namespace eventsviewer
