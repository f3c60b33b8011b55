// reference_test [LINES [SEED]]: generates logs of LINES mutated lines in total. For each log it
// compares everything that the program prints for --all and for --show with 1, 10 and 100 events
// with what the reference prints. If there is a difference, it prints the smallest log that shows
// it, and fails.

#include "app/actions.h"
#include "reference/log_mutator.h"
#include "reference/naive.h"
#include "render/log_export.h"
#include "support/printable.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace eventsviewer::reference {

namespace {

constexpr std::size_t kShown[] = {1, 10, 100};

using Table = std::function<std::string()>;

// The two files of a log, each as its lines. The last line of a file may lack its newline.
struct Log {
    std::vector<std::string> older;
    std::vector<std::string> newer;
    bool endsWithNewline = true;
};

void writeLines(const std::string& path, const std::vector<std::string>& lines, bool newline)
{
    std::ofstream file(path, std::ios::binary);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        file << lines[i] << (newline || i + 1 < lines.size() ? "\n" : "");
    }
}

// What `table` prints and then returns.
std::string outputOf(const Table& table)
{
    std::stringbuf printed;
    std::streambuf* const screen = std::cout.rdbuf(&printed);
    const std::string text = table();
    std::cout.rdbuf(screen);
    return printed.str() + text;
}

// The same in a child process, which may abort, together with how it ended.
std::string outcomeOf(const Table& table, const std::string& outputPath)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        if (std::freopen(outputPath.c_str(), "wb", stdout) == nullptr) {
            _exit(1);
        }
        std::puts(table().c_str());
        std::fflush(stdout);
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    std::ostringstream outcome;
    outcome << "status " << status << "\n" << std::ifstream(outputPath, std::ios::binary).rdbuf();
    return outcome.str();
}

class Comparison {
public:
    explicit Comparison(const std::string& folder)
        : path_(folder + "/log"), outputPath_(folder + "/output")
    {
    }

    /// Whether the program and the reference print the same for `log`. A log that may end the
    /// process is read by child processes.
    bool agree(const Log& log, bool mayAbort)
    {
        writeLines(path_ + ".0", log.older, log.endsWithNewline);
        writeLines(path_, log.newer, log.endsWithNewline);
        action_ = "--all";
        if (!same([this] { return eventsviewer::allEventsTable(path_); },
                  [this] { return reference::allEventsTable(path_); }, mayAbort)) {
            return false;
        }
        for (const std::size_t count : kShown) {
            action_ = "--show --number " + std::to_string(count);
            if (!same([this, count] { return eventsviewer::recentEventsTable(path_, count); },
                      [this, count] { return reference::recentEventsTable(path_, count); },
                      mayAbort)) {
                return false;
            }
        }
        return true;
    }

    /// Removes lines as long as the difference remains, and prints what is left.
    void reportSmallest(Log log, bool mayAbort)
    {
        for (std::vector<std::string>* lines : {&log.older, &log.newer}) {
            for (std::size_t piece = lines->size(); piece > 0; piece /= 2) {
                for (std::size_t at = 0; at + piece <= lines->size();) {
                    const std::vector<std::string> before = *lines;
                    const auto from = lines->begin() + static_cast<std::ptrdiff_t>(at);
                    lines->erase(from, from + static_cast<std::ptrdiff_t>(piece));
                    if (agree(log, mayAbort)) {
                        *lines = before;
                        at += piece;
                    }
                }
            }
        }
        agree(log, mayAbort);
        std::cerr << "Output differs for " << action_ << ".\n";
        for (const std::string& line : log.older) {
            std::cerr << "older: " << printable(line) << '\n';
        }
        for (const std::string& line : log.newer) {
            std::cerr << "newer: " << printable(line) << '\n';
        }
        std::cerr << "-- the program:\n"
                  << printable(actual_) << "\n-- the reference:\n"
                  << printable(expected_) << "\n--\n";
    }

private:
    bool same(const Table& actual, const Table& expected, bool mayAbort)
    {
        actual_ = mayAbort ? outcomeOf(actual, outputPath_) : outputOf(actual);
        expected_ = mayAbort ? outcomeOf(expected, outputPath_) : outputOf(expected);
        return actual_ == expected_;
    }

    std::string path_;
    std::string outputPath_;
    std::string action_;
    std::string actual_;
    std::string expected_;
};

// Logs of a few lines, of some hundreds, and of more bytes than a block.
std::size_t logSize(LogMutator& mutator)
{
    if (mutator.oneIn(100)) {
        return 1500;
    }
    return mutator.oneIn(8) ? 50 + mutator.below(300) : mutator.below(30);
}

Log makeLog(LogMutator& mutator, bool deep)
{
    Log log;
    log.endsWithNewline = !mutator.oneIn(3);
    for (std::size_t left = logSize(mutator); left > 0; --left) {
        (mutator.oneIn(3) ? log.older : log.newer).push_back(mutator.line());
    }
    if (deep) {
        std::vector<std::string>& lines = mutator.oneIn(2) ? log.older : log.newer;
        // cppcheck-suppress mismatchingContainerIterator // both are of the same container
        lines.insert(lines.begin(), mutator.deepLine());
    }
    if (mutator.oneIn(60)) {
        log.newer.insert(log.newer.begin(), std::string(200000, mutator.oneIn(2) ? ' ' : '{'));
    }
    return log;
}

int run(std::size_t lineCount, std::uint32_t seed, const std::string& folder)
{
    LogMutator mutator(seed);
    Comparison comparison(folder);
    std::size_t done = 0;
    while (done < lineCount) {
        const bool deep = mutator.oneIn(8);
        const Log log = makeLog(mutator, deep);
        if (!comparison.agree(log, deep)) {
            std::cerr << "Seed " << seed << ", after " << done << " lines.\n";
            comparison.reportSmallest(log, deep);
            return 1;
        }
        done += log.older.size() + log.newer.size();
    }
    std::cout << "No difference in " << done << " lines.\n";
    return 0;
}

} // namespace

} // namespace eventsviewer::reference

int main(int argc, char** argv)
{
    const std::size_t lineCount = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 5000;
    const auto seed = static_cast<std::uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1);
    std::string folder =
        (std::filesystem::temp_directory_path() / "reference_test_XXXXXX").string();
    if (lineCount == 0 || mkdtemp(folder.data()) == nullptr) {
        std::cerr << "usage: reference_test [LINES [SEED]]\n";
        return 2;
    }
    const int status = eventsviewer::reference::run(lineCount, seed, folder);
    std::filesystem::remove_all(folder);
    return status;
}
