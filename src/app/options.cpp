#include "app/options.h"

#include <getopt.h>

#include <cstdio>

namespace eventsviewer {

namespace {

bool parseCount(const char* text, std::size_t& count)
{
    if (std::sscanf(text, "%zu", &count) != 1) {
        std::fprintf(stderr, "Invalid number of events: %s\n", text);
        return false;
    }
    if (count == 0) {
        std::fprintf(stderr, "Number of events to show must be greater than zero\n");
        return false;
    }
    return true;
}

} // namespace

std::optional<Options> parseOptions(int argc, char** argv)
{
    static Action action = kActionNone;
    static const option longOptions[] = {
        {"show", no_argument, &action, kActionShow},
        {"all", no_argument, &action, kActionAll},
        {"log", no_argument, &action, kActionLog},
        {"help", no_argument, &action, kActionHelp},
        {"input_file", required_argument, nullptr, 'i'},
        {"output_file", required_argument, nullptr, 'o'},
        {"number", required_argument, nullptr, 'n'},
        {nullptr, 0, nullptr, 0},
    };

    Options options;
    int found = 0;
    while ((found = getopt_long(argc, argv, "salhi:o:n:", longOptions, nullptr)) != -1) {
        switch (found) {
        case 0: // a long option has set the action itself
            break;
        case 's':
            action = kActionShow;
            break;
        case 'a':
            action = kActionAll;
            break;
        case 'l':
            action = kActionLog;
            break;
        case 'h':
            action = kActionHelp;
            break;
        case 'i':
            options.inputPath = optarg;
            break;
        case 'o':
            options.outputPath = optarg;
            break;
        case 'n':
            if (!parseCount(optarg, options.count)) {
                return std::nullopt;
            }
            break;
        default:
            // The element before optind is not always the wrong one: within a group of letters
            // optind is still at the group, and the element before that may be the program's name.
            std::fprintf(stderr, "Invalid Argument: %s\n", optind > argc ? "" : argv[optind - 1]);
            return std::nullopt;
        }
    }
    options.action = action;
    return options;
}

} // namespace eventsviewer
