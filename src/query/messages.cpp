#include "query/messages.h"

#include "eventlog/reading_progress.h"
#include "eventlog/terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace eventsviewer::query {

namespace {

// Returns false after an error, which errno tells.
bool writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

} // namespace

void report(const std::string& message)
{
    if (message.empty()) {
        return;
    }
    flushOutput();
    hideProgress(false);
    writeAll(STDERR_FILENO, "events-query: " + message + '\n');
}

bool isPossible(const TimeRange& range, const std::string& log)
{
    const bool isRightWay = range.since <= range.until;
    if (!isRightWay) {
        report((log.empty() ? "" : safe(log) + ": ") + "-S is " + range.since +
               ", which is after -U, " + range.until);
    }
    return isRightWay;
}

void explainNothing(const TimeRange& range, std::optional<Moment> first, std::optional<Moment> last)
{
    if (last && range.since > isoTime(*last)) {
        report("-S is " + range.since + ", after the last event, " + isoTime(*last));
    } else if (first && range.until < isoTime(*first)) {
        report("-U is " + range.until + ", before the first event, " + isoTime(*first));
    }
}

void endOutOfMemory()
{
    writeAll(STDERR_FILENO, "events-query: out of memory\n"); // which takes none
    std::_Exit(kError);
}

std::string& output()
{
    static std::string text;
    return text;
}

void flushOutput()
{
    if (output().empty()) {
        return;
    }
    hideProgress(true);
    const bool written = writeAll(STDOUT_FILENO, output());
    output().clear();
    if (!written && errno != EPIPE) { // a reader that closes the pipe has read enough
        report(std::string("standard output: ") + std::strerror(errno));
    }
    if (!written) {
        std::_Exit(kError);
    }
}

} // namespace eventsviewer::query
