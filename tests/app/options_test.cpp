#include "app/options.h"

#include "support/child_process.h"

#include <getopt.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

bool libraryGoesBeyondTheEnd = false;

} // namespace

// The linker redirects the program's own calls of getopt_long to here (--wrap). NOLINTBEGIN
extern "C" {

int __real_getopt_long(int argc, char* const* argv, const char* letters, const option* names,
                       int* index);

int __wrap_getopt_long(int argc, char* const* argv, const char* letters, const option* names,
                       int* index)
{
    const int found = __real_getopt_long(argc, argv, letters, names, index);
    if (libraryGoesBeyondTheEnd && found == '?') {
        optind = argc + 1;
    }
    return found;
}
}
// NOLINTEND

namespace eventsviewer {
namespace {

/// Parses the command line "tool" and `arguments` in a child process, because a process can parse
/// options only once. The child prints the options; its status is 0 if there are any.
ChildResult parse(const std::vector<std::string>& arguments)
{
    return runInChild([&arguments] {
        std::vector<std::string> elements = {"tool"};
        elements.insert(elements.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& element : elements) {
            argv.push_back(element.data());
        }
        argv.push_back(nullptr);
        const auto options = parseOptions(static_cast<int>(elements.size()), argv.data());
        if (!options) {
            return 1;
        }
        std::printf("action %d, from %s to %s, %zu events", options->action,
                    options->inputPath.c_str(), options->outputPath.c_str(), options->count);
        return 0;
    });
}

void expectOptions(const std::vector<std::string>& arguments, const std::string& expected)
{
    const ChildResult result = parse(arguments);
    SCOPED_TRACE(testing::PrintToString(arguments));
    EXPECT_EQ(expected, result.standardOutput);
    EXPECT_EQ("", result.standardError);
    EXPECT_EQ(0, result.exitStatus);
}

void expectError(const std::vector<std::string>& arguments, const std::string& message)
{
    const ChildResult result = parse(arguments);
    SCOPED_TRACE(testing::PrintToString(arguments));
    EXPECT_EQ("", result.standardOutput);
    EXPECT_EQ(message, result.standardError);
    EXPECT_EQ(1, result.exitStatus);
}

std::string action(int number)
{
    return "action " + std::to_string(number) +
           ", from /common/events_report to /tmp/events_report, 10 events";
}

std::string showing(const std::string& count)
{
    return "action 1, from /common/events_report to /tmp/events_report, " + count + " events";
}

const std::string kLargestCount = std::to_string(SIZE_MAX);

TEST(ParseOptions, GivesTheDefaultsWithoutArguments)
{
    expectOptions({}, action(0));
}

TEST(ParseOptions, KnowsEachActionByItsLetterAndByItsName)
{
    expectOptions({"-s"}, action(1));
    expectOptions({"-a"}, action(2));
    expectOptions({"-l"}, action(3));
    expectOptions({"-h"}, action(4));
    expectOptions({"--show"}, action(1));
    expectOptions({"--all"}, action(2));
    expectOptions({"--log"}, action(3));
    expectOptions({"--help"}, action(4));
}

TEST(ParseOptions, TakesTheLastOfSeveralActions)
{
    expectOptions({"--show", "--all"}, action(2));
    expectOptions({"-s", "-h"}, action(4));
    expectOptions({"-h", "-s"}, action(1));
    expectOptions({"--help", "-l"}, action(3));
    expectOptions({"-l", "--show"}, action(1));
    expectOptions({"-sal"}, action(3));
}

TEST(ParseOptions, TakesPathsInEveryFormOfAnArgument)
{
    const std::string expected = "action 0, from in to out, 10 events";
    expectOptions({"-i", "in", "-o", "out"}, expected);
    expectOptions({"-iin", "-oout"}, expected);
    expectOptions({"--input_file", "in", "--output_file", "out"}, expected);
    expectOptions({"--input_file=in", "--output_file=out"}, expected);
}

TEST(ParseOptions, TakesTheLastOfSeveralPaths)
{
    expectOptions({"-i", "a", "-o", "b", "--input_file", "c", "-od"},
                  "action 0, from c to d, 10 events");
}

TEST(ParseOptions, TakesAnEmptyPath)
{
    expectOptions({"--input_file=", "-o", ""}, "action 0, from  to , 10 events");
}

TEST(ParseOptions, AcceptsAnOutputPathWithAnyAction)
{
    expectOptions({"-o", "file", "-s"}, "action 1, from /common/events_report to file, 10 events");
}

TEST(ParseOptions, AbbreviatesLongNames)
{
    expectOptions({"--sh", "--num", "3"}, showing("3"));
    expectOptions({"--s", "--n=3"}, showing("3"));
    expectOptions({"--in", "a", "--out", "b"}, "action 0, from a to b, 10 events");
}

TEST(ParseOptions, GroupsLetters)
{
    expectOptions({"-sn", "3"}, showing("3"));
    expectOptions({"-sn3"}, showing("3"));
    expectOptions({"-sifile"}, "action 1, from file to /tmp/events_report, 10 events");
}

TEST(ParseOptions, IgnoresOtherArguments)
{
    expectOptions({"-s", "foo"}, action(1));
    expectOptions({"foo", "-s", "bar", "-n", "3"}, showing("3"));
}

TEST(ParseOptions, EndsAtTwoDashes)
{
    expectOptions({"-s", "--", "-a", "-x"}, action(1));
}

TEST(ParseOptions, ReadsTheCountUpToItsFirstOtherCharacter)
{
    expectOptions({"-s", "-n", "12abc"}, showing("12"));
    expectOptions({"-s", "-n", "  7"}, showing("7"));
    expectOptions({"-s", "-n", "+7"}, showing("7"));
    expectOptions({"-s", "-n", "1.9"}, showing("1"));
    expectOptions({"-s", "-n", "1"}, showing("1"));
}

TEST(ParseOptions, TakesTheLastOfSeveralCounts)
{
    expectOptions({"-s", "-n", "3", "--number", "5"}, showing("5"));
}

TEST(ParseOptions, TakesMinusOneAndHugeNumbersForTheLargestCount)
{
    expectOptions({"-s", "-n", "-1"}, showing(kLargestCount));
    expectOptions({"-s", "-n", "99999999999999999999"}, showing(kLargestCount));
    expectOptions({"-s", "-n", kLargestCount}, showing(kLargestCount));
}

TEST(ParseOptions, RejectsACountThatIsNotANumber)
{
    expectError({"-n", "abc"}, "Invalid number of events: abc\n");
    expectError({"-s", "-n", ""}, "Invalid number of events: \n");
    expectError({"-n", " x 1"}, "Invalid number of events:  x 1\n");
    expectError({"--number=-"}, "Invalid number of events: -\n");
    expectError({"-n", "-s"}, "Invalid number of events: -s\n");
}

TEST(ParseOptions, RejectsACountOfZeroWhateverTheAction)
{
    const std::string message = "Number of events to show must be greater than zero\n";
    expectError({"-n", "0"}, message);
    expectError({"-a", "-n", "0"}, message);
    expectError({"-n", "0", "-h"}, message);
    expectError({"-n", "0x10"}, message);
    expectError({"-n", "-0"}, message);
}

TEST(ParseOptions, StopsAtTheFirstError)
{
    expectError({"-n", "0", "-n", "abc", "-x"},
                "Number of events to show must be greater than zero\n");
    expectError({"-n", "abc", "-n", "0"}, "Invalid number of events: abc\n");
}

TEST(ParseOptions, RejectsAnUnknownLetter)
{
    expectError({"-x"}, "tool: invalid option -- 'x'\nInvalid Argument: -x\n");
    expectError({"-h", "-x"}, "tool: invalid option -- 'x'\nInvalid Argument: -x\n");
    expectError({"-x", "-h"}, "tool: invalid option -- 'x'\nInvalid Argument: -x\n");
}

TEST(ParseOptions, ReportsTheElementBeforeAGroupWithAnUnknownLetter)
{
    expectError({"-xs"}, "tool: invalid option -- 'x'\nInvalid Argument: tool\n");
    expectError({"-a", "-xs"}, "tool: invalid option -- 'x'\nInvalid Argument: -a\n");
    expectError({"-sx"}, "tool: invalid option -- 'x'\nInvalid Argument: -sx\n");
}

TEST(ParseOptions, RejectsAnUnknownName)
{
    expectError({"--nothing"}, "tool: unrecognized option '--nothing'\n"
                               "Invalid Argument: --nothing\n");
    expectError({"--Show"}, "tool: unrecognized option '--Show'\nInvalid Argument: --Show\n");
}

TEST(ParseOptions, RejectsAMissingArgument)
{
    expectError({"-n"}, "tool: option requires an argument -- 'n'\nInvalid Argument: -n\n");
    expectError({"-s", "-i"}, "tool: option requires an argument -- 'i'\nInvalid Argument: -i\n");
    expectError({"-o"}, "tool: option requires an argument -- 'o'\nInvalid Argument: -o\n");
    expectError({"--number"}, "tool: option '--number' requires an argument\n"
                              "Invalid Argument: --number\n");
}

TEST(ParseOptions, RejectsAnArgumentOfAnOptionThatTakesNone)
{
    expectError({"--show=5"}, "tool: option '--show' doesn't allow an argument\n"
                              "Invalid Argument: --show=5\n");
}

TEST(ParseOptions, DoesNotReportAnElementAfterTheEnd)
{
    // Some C libraries count a missing argument as if it were there.
    libraryGoesBeyondTheEnd = true;
    expectError({"-n"}, "tool: option requires an argument -- 'n'\nInvalid Argument: \n");
    libraryGoesBeyondTheEnd = false;
}

} // namespace
} // namespace eventsviewer
