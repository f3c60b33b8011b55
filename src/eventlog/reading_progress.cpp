#include "eventlog/reading_progress.h"

#include "eventlog/terminal.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace eventsviewer {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kQuietTime(2);
constexpr std::chrono::milliseconds kPause(200);

struct Progress {
    bool isOn = false;
    bool isWanted = false;
    bool isShown = false;
    Clock::time_point next; // the line is not written before
    std::size_t logs = 0;
    std::size_t logsDone = 0;
    std::uint64_t bytes = 0;
    std::uint64_t bytesRead = 0;
    unsigned times = 1;
};
Progress progress;

// The line is only for a person: if it cannot be written, nothing is lost.
void writeLine(std::string_view text)
{
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

// Whether the output appears on the terminal as well. What reads a pipe may be a pager.
bool isInTheWay()
{
    struct stat output = {};
    fstat(STDOUT_FILENO, &output); // what is closed is no pipe
    return isatty(STDOUT_FILENO) != 0 || (S_ISFIFO(output.st_mode) && !progress.isWanted);
}

} // namespace

void startProgress(bool isWanted, std::size_t logs, std::uint64_t bytes, unsigned times)
{
    progress.isWanted = isWanted;
    progress.isOn = isWanted || isatty(STDERR_FILENO) != 0;
    progress.next = Clock::now() + (isWanted ? Clock::duration::zero() : kQuietTime);
    progress.logs = logs;
    progress.bytes = bytes;
    progress.times = times;
}

void showProgress(const std::string& file, std::uint64_t bytes)
{
    progress.bytesRead += bytes;
    const Clock::time_point now = progress.isOn ? Clock::now() : Clock::time_point();
    if (!progress.isOn || now < progress.next) {
        return;
    }
    const std::uint64_t done = progress.bytesRead / progress.times;
    std::string text = std::to_string(progress.logsDone) + " of " + std::to_string(progress.logs) +
                       " logs, " + std::to_string(done / 1000) + " of " +
                       std::to_string(std::max(done, progress.bytes) / 1000) + " kB: " + file;
    std::size_t length = std::min(text.size(), terminalWidth(STDERR_FILENO) - 1);
    while (length < text.size() && (text[length] & 0xc0) == 0x80) { // within a character
        --length;
    }
    writeLine('\r' + text.substr(0, length) + "\033[K");
    progress.isShown = true;
    progress.next = now + kPause;
}

void countLog()
{
    ++progress.logsDone;
}

void hideProgress(bool isOutput)
{
    if (progress.isShown) {
        progress.isShown = false;
        writeLine("\r\033[K");
    }
    progress.isOn = progress.isOn && (!isOutput || !isInTheWay());
}

} // namespace eventsviewer
