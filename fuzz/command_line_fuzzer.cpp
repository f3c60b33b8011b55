// The input is a command line, one argument a line.
//
// - The options are those that a plain model of the command line finds.
// - A usage error says so on standard error, and nothing else does.
// - The action prints and saves what it should, and nothing more.
//
// The paths of the input are parsed but not used: the actions run on a log of their own.

#include "app/actions.h"
#include "app/options.h"
#include "checks.h"
#include "command_line_model.h"
#include "render/log_export.h"
#include "support/temporary_folder.h"

#include <getopt.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer::fuzz {

namespace {

constexpr const char* kProgram = "events-viewer";

// Catches what is written to a stream of the C library, and gives the stream back.
class CapturedStream {
public:
    explicit CapturedStream(std::FILE*& stream)
        : stream_(stream), original_(stream), capture_(open_memstream(&text_, &size_))
    {
        check(capture_ != nullptr, "there is memory for a stream");
        stream_ = capture_;
    }
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;
    ~CapturedStream()
    {
        stream_ = original_;
        std::fclose(capture_);
        std::free(text_);
    }

    std::string text() const
    {
        std::fflush(capture_);
        return {text_, size_};
    }

private:
    std::FILE*& stream_;
    std::FILE* const original_;
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::FILE* const capture_;
};

std::vector<std::string> splitAtLineFeeds(std::string_view input)
{
    std::vector<std::string> arguments;
    while (!input.empty()) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        // An argument ends at its NUL.
        arguments.emplace_back(std::string(input.substr(0, end)).c_str());
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return arguments;
}

std::optional<Options> parse(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), kProgram);
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    optind = 0; // getopt starts anew
    return parseOptions(static_cast<int>(arguments.size()), argv.data());
}

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// The complaint quotes an argument or the program's name, or nothing.
bool isComplaint(const std::string& text, const std::vector<std::string>& arguments)
{
    if (text == "Number of events to show must be greater than zero\n") {
        return true;
    }
    if (beginsWith(text, "Invalid number of events: ")) {
        return text.back() == '\n';
    }
    // The C library's line stands in front.
    if (!beginsWith(text, std::string(kProgram) + ": ")) {
        return false;
    }
    std::vector<std::string> quotable = arguments;
    quotable.insert(quotable.end(), {"", kProgram});
    return std::any_of(quotable.begin(), quotable.end(), [&text](const std::string& quoted) {
        return endsWith(text, "\nInvalid Argument: " + quoted + "\n");
    });
}

void writeLog(const TemporaryFolder& folder)
{
    std::string log;
    for (int i = 1; i <= 3; ++i) {
        log += "{\"id\":1228,\"time\":\"t" + std::to_string(i) + "\",\"vars\":{\"inet_id\":\"" +
               std::to_string(i) + "\"}}\n";
    }
    folder.write("log", log);
}

// What standard output gets when the action of `options` runs.
std::string expectedOutput(const Options& options)
{
    static const std::string allEvents = allEventsTable(options.inputPath);
    switch (options.action) {
    case kActionShow:
        return recentEventsTable(options.inputPath, options.count) + "\n";
    case kActionAll:
        return allEvents + "\n";
    case kActionLog:
        return "Saving table of events (from " + options.inputPath + ") to " + options.outputPath +
               "\n";
    default:
        return "Events Viewer Tool\n\nUsage: events-viewer [OPTIONS] [PARAMS]\n\nOptions:\n";
    }
}

void checkAction(Options options)
{
    static const TemporaryFolder folder;
    static const bool written = (writeLog(folder), true);
    check(written, "there is a log");
    options.inputPath = folder.path("log");
    options.outputPath = folder.path("export");
    const std::string expected = expectedOutput(options);

    std::string printed;
    {
        const CapturedStream output(stdout);
        check(runAction(options, kProgram) == kExitSuccess, "an action succeeds");
        printed = output.text();
    }
    if (options.action == kActionHelp) {
        check(beginsWith(printed, expected), "the help page");
        check(endsWith(printed, "(default: 10 events)\n"), "the help page is whole");
        return;
    }
    checkSame(printed, expected, "the action prints what it should");
    if (options.action == kActionLog) {
        static const std::string allEvents = allEventsTable(options.inputPath);
        checkSame(folder.read("export"), allEvents, "the action exports what it should");
        std::remove(options.outputPath.c_str());
    }
    check(std::fopen(options.outputPath.c_str(), "rb") == nullptr, "only --log exports");
}

void checkCommandLine(const std::vector<std::string>& arguments)
{
    // The action of the last command line stays in the process. This makes it a known one.
    check(parse({"--help"}).has_value(), "--help is accepted");
    std::optional<Options> options;
    std::string complaint;
    {
        const CapturedStream errors(stderr);
        options = parse(arguments);
        complaint = errors.text();
    }
    const std::optional<Options> expected = modelOptions(arguments, kActionHelp);
    check(options.has_value() == expected.has_value(), "errors are the model's errors");
    if (!options) {
        check(isComplaint(complaint, arguments), "an error is reported");
        return;
    }
    checkSame(complaint, "", "no complaint without an error");
    check(options->action == expected->action, "the action is the model's");
    checkSame(options->inputPath, expected->inputPath, "the input path is the model's");
    checkSame(options->outputPath, expected->outputPath, "the output path is the model's");
    check(options->count == expected->count, "the count is the model's");
    checkAction(*options);
}

} // namespace

} // namespace eventsviewer::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer looks for this name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace eventsviewer::fuzz;
    checkCommandLine(splitAtLineFeeds({reinterpret_cast<const char*>(data), size}));
    return 0;
}
