#include "query/options.h"

#include "eventlog/terminal.h"
#include "query/messages.h"
#include "text/shell_words.h"

#include <getopt.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace eventsviewer::query {

namespace {

[[noreturn]] void refuse(const std::string& usage)
{
    report(safe(usage) + " (see events-query --help)");
    std::exit(kError);
}

// What an option without a letter is known by here. The conflicts below have these numbers.
enum : char { kCatalog = 1, kColour, kVersion, kYear, kName, kProgress, kCheck };

const option kLongOptions[] = {
    {"event", required_argument, nullptr, 'e'},    {"grep", required_argument, nullptr, 'g'},
    {"since", required_argument, nullptr, 'S'},    {"until", required_argument, nullptr, 'U'},
    {"year", required_argument, nullptr, kYear},   {"number", required_argument, nullptr, 'n'},
    {"context", required_argument, nullptr, 'C'},  {"reverse", no_argument, nullptr, 'r'},
    {"follow", no_argument, nullptr, 'f'},         {"merge", no_argument, nullptr, 'm'},
    {"name", required_argument, nullptr, kName},   {"count", required_argument, nullptr, 'c'},
    {"output", required_argument, nullptr, 'o'},   {"color", optional_argument, nullptr, kColour},
    {"progress", no_argument, nullptr, kProgress}, {"check", no_argument, nullptr, kCheck},
    {"catalog", no_argument, nullptr, kCatalog},   {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, kVersion},   {nullptr, 0, nullptr, 0},
};
constexpr const char* kLetters = ":e:g:S:U:n:C:rfmc:o:h";

constexpr std::int32_t kFollowedNumber = 10, kPageNumber = 10000;
// Options that mean nothing together. The manual has the same table.
constexpr std::pair<char, std::string_view> kConflicts[] = {
    {'c', "rfC"}, {'f', "rm\5\6"}, {kCheck, "gnrfmCc\4\1"}, {kCatalog, "SUnrfmCc\4\5\6"}};

// What users of events-viewer try.
constexpr std::pair<char, const char*> kHints[] = {
    {'i', "-i is an option of events-viewer; here the log is named by itself: events-query FILE"},
    {'s', "-s is an option of events-viewer; here -n 10 shows the last 10 events"},
    {'a', "-a is an option of events-viewer; here all events are shown without it"},
};

constexpr std::pair<const char*, Format> kFormats[] = {
#ifdef EVENTS_QUERY_HTML
    {"html", Format::Html},
#endif
    {"table", Format::Table}, {"lines", Format::Lines},
    {"csv", Format::Csv},     {"json", Format::Json},
};

std::string_view environment(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

bool isColourful(std::string_view when)
{
    const bool isWanted = environment("NO_COLOR").empty() && environment("TERM") != "dumb";
    return when == "always" || (when == "auto" && isatty(STDOUT_FILENO) != 0 && isWanted);
}

// "-n" or "--catalog".
std::string nameOf(char letter)
{
    for (const option& row : kLongOptions) {
        if (row.val == letter && letter <= kCheck) {
            return std::string("--") + row.name;
        }
    }
    return std::string("-") + letter;
}

// Refuses what getopt_long does not know, which has read up to `argument`.
[[noreturn]] void refuseOption(char letter, const char* argument)
{
    for (const auto& [tried, text] : kHints) {
        if (tried == letter) {
            refuse(text);
        }
    }
    if (letter == '\0') {
        refuse(argument + std::string(": no such option, or more than one begins like this"));
    }
    const bool isKnown =
        letter <= kCheck || (letter != ':' && std::strchr(kLetters, letter) != nullptr);
    refuse(nameOf(letter) + (isKnown ? " takes no value" : ": no such option"));
}

// The number that `text` is; nothing if it is not a whole one from `least` to `most`.
std::optional<std::int32_t> numberIn(const char* text, long long least, long long most)
{
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, 10);
    const bool isNumber = text[0] >= '0' && text[0] <= '9' && *end == '\0';
    const bool isRight = isNumber && number >= least && number <= most;
    return isRight ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

// Takes the value of the option `letter`.
void take(Options& options, char letter, const char* value)
{
    const auto require = [letter, value](bool isRight, const std::string& otherwise) {
        if (!isRight) {
            refuse(nameOf(letter) + ' ' + value + ": " + otherwise);
        }
    };
    constexpr const char* kTimes = "not a time; give 'Nov 20 08:14', 08:14, -2h or 2026-11-20";
    constexpr const char* kCount = "not a number of events; give a whole number";
    std::string error;
    switch (letter) {
    case 'e':
    case 'g':
    case 'c':
        error = letter == 'e'   ? options.events.add(value)
                : letter == 'g' ? options.text.set(value)
                                : takeCountKeys(value, options.count);
        return require(error.empty(), error);
    case 'S':
    case 'U':
        (letter == 'S' ? options.since : options.until) = TimeBound::parse(value);
        return require((letter == 'S' ? options.since : options.until).has_value(), kTimes);
    case kYear:
        options.year = numberIn(value, 1000, 9999);
        return require(options.year.has_value(), "not a year; give for example 2026");
    case 'n':
        options.number = numberIn(value, 1, INT32_MAX);
        return require(options.number.has_value(), kCount + std::string(" from 1 on"));
    case 'C':
        options.context = numberIn(value, 0, INT32_MAX);
        return require(options.context.has_value(), kCount);
    case 'o':
        for (const auto& [name, format] : kFormats) {
            if (std::strcmp(name, value) == 0) {
                options.format = format;
                return;
            }
        }
        return require(false, "not a format; give " EVENTS_QUERY_FORMATS);
    case kColour:
        options.colour = value != nullptr ? value : "always";
        if (options.colour != "auto" && options.colour != "always" && options.colour != "never") {
            refuse("--color=" + options.colour + ": give auto, always or never");
        }
        return;
    case 'r':
    case 'm':
    case kProgress:
        (letter == 'r' ? options.reverse : letter == 'm' ? options.merge : options.progress) = true;
        return;
    case 'f':
        options.follow = true;
        options.number = options.number.value_or(kFollowedNumber);
        return;
    case kName:
        options.name = value;
        return;
    case kCatalog:
    case kCheck:
        options.action = letter == kCheck ? Action::CheckLogs : Action::ListCatalog;
        return;
    default:
        options.action = letter == kVersion ? Action::ShowVersion : Action::ShowHelp;
    }
}

// Refuses what means nothing together; `given` are the letters of the options.
void checkTogether(const Options& options, const std::string& given)
{
    for (const auto& [one, others] : kConflicts) {
        const std::size_t other = given.find_first_of(others);
        if (given.find(one) != std::string::npos && other != std::string::npos) {
            refuse(nameOf(one) + " and " + nameOf(given[other]) + " mean nothing together");
        }
    }
    const bool isTable = options.format == Format::Table;
    const bool isCatalog = options.action == Action::ListCatalog;
    const bool isOfEvents = options.action == Action::ShowEvents && options.count.empty();
    if (options.colour == "always" && (!isTable || !isOfEvents)) {
        refuse("--color=always means nothing without a table of events");
    }
    if (options.isPage() && options.follow) {
        refuse("-f and -o html mean nothing together");
    }
    if (!isOfEvents && !isCatalog && (options.format == Format::Lines || options.isPage())) {
        refuse("-c and --check are shown with -o table, csv or json");
    }
    if (isCatalog && !isTable && options.format != Format::Json) {
        refuse("--catalog is shown with -o table or -o json");
    }
}

} // namespace

Options parseOptions(int argc, char** argv)
{
    Options options;
    if constexpr (kHasPages) {
        options.command = "events-query" + shellWords(argv + 1, argv + argc);
    }
    std::string given;
    opterr = 0;
    int found = 0;
    while ((found = getopt_long(argc, argv, kLetters, kLongOptions, nullptr)) != -1) {
        const auto letter = static_cast<char>(found);
        if (letter == ':') {
            refuse(nameOf(static_cast<char>(optopt)) + " needs a value");
        }
        if (letter == '?') {
            refuseOption(static_cast<char>(optopt), argv[optind - 1]);
        }
        if (letter != 'e' && given.find(letter) != std::string::npos) {
            refuse(nameOf(letter) + " is given twice");
        }
        given += letter;
        take(options, letter, optarg);
        if (options.action == Action::ShowHelp || options.action == Action::ShowVersion) {
            return options;
        }
    }
    const std::vector<std::string> logs(argv + optind, argv + argc);
    if (!logs.empty() && options.action == Action::ListCatalog) {
        refuse("--catalog reads no log");
    }
    options.logs = logs.empty() ? options.logs : logs;
    checkTogether(options, given);
    if (options.follow && (options.logs.size() > 1 || options.logs[0] == "-")) {
        refuse("-f follows one log, which is a file");
    }
    if (options.isPage()) { // its events are shown in one order, at the end
        options.merge = true;
        options.number = options.number.value_or(kPageNumber);
    }
    options.layout = layoutOfTerminal(isColourful(options.colour));
    return options;
}

} // namespace eventsviewer::query
