#include "eventlog/event_line.h"
#include "eventlog/event_log.h"
#include "log_generator.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <vector>

namespace eventsviewer::bench {

namespace {

constexpr std::size_t kLines = 20000;

// A log in the working directory, removed at the end of the process.
class LogFile {
public:
    explicit LogFile(Style style) : path_("events_" + std::to_string(static_cast<int>(style)))
    {
        LogGenerator generator(1, style, 5);
        std::ofstream file(path_);
        for (std::size_t i = 0; i < kLines; ++i) {
            file << generator.line();
        }
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() { std::remove(path_.c_str()); }

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

const std::string& logPath(Style style)
{
    static std::map<Style, LogFile> files;
    return files.try_emplace(style, style).first->second.path();
}

void countLines(benchmark::State& state, std::size_t linesEach)
{
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * linesEach));
}

void parseLine(benchmark::State& state, Style style)
{
    LogGenerator generator(1, style, 0);
    std::vector<std::string> lines(1000);
    for (std::string& line : lines) {
        line = generator.line();
        line.pop_back();
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseEventLine(lines[next]));
        next = (next + 1) % lines.size();
    }
    countLines(state, 1);
}

void loadAll(benchmark::State& state, Style style)
{
    const std::string& path = logPath(style);
    for (auto _ : state) {
        benchmark::DoNotOptimize(loadAllEvents(path));
    }
    countLines(state, kLines);
}

void loadRecent(benchmark::State& state, Style style)
{
    const std::string& path = logPath(style);
    for (auto _ : state) {
        benchmark::DoNotOptimize(loadRecentEvents(path, 10));
    }
    countLines(state, kLines);
}

BENCHMARK_CAPTURE(parseLine, compact, Style::Compact);
BENCHMARK_CAPTURE(parseLine, spaced, Style::Spaced);
BENCHMARK_CAPTURE(loadAll, compact, Style::Compact)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadRecent, compact, Style::Compact)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadRecent, spaced, Style::Spaced)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadRecent, id_last, Style::IdLast)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace eventsviewer::bench
