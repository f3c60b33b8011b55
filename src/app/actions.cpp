#include "app/actions.h"

#include "eventlog/event_log.h"
#include "render/event_table.h"
#include "render/log_export.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace eventsviewer {

namespace {

void printHelp(const char* programName)
{
    std::puts("Events Viewer Tool\n");
    std::printf("Usage: %s [OPTIONS] [PARAMS]\n\n", programName);
    // The default files named here are not the ones in use (see Options); both are intentional.
    // clang-format off
    std::puts(
        "Options:\n"
        "  -s, --show                convert most recent events to human readable format and print in a table\n"
        "  -a, --all                 convert all events to human readable format and print in a table\n"
        "  -l, --log                 convert all events to human readable format and save to output_file\n"
        "  -h, --help                display this help and exit\n\n\n"
        "Parameters:\n"
        "  -i, --input_file <name>   read events (in machine format) from this file\n"
        "                              (default input file: /common/events_record)\n"
        "  -o, --output_file <name>  output events (in human readable format) to this file\n"
        "                              (default output file: /tmp/events_record)\n"
        "  -n, --number <number>     maximum number of events to show\n"
        "                              (default: 10 events)");
    // clang-format on
}

} // namespace

std::string recentEventsTable(const std::string& inputPath, std::size_t count)
{
    // The heading counts in 32 bits on every machine.
    return renderEventTable(loadRecentEvents(inputPath, count),
                            static_cast<std::uint32_t>(std::min<std::size_t>(count, UINT32_MAX)));
}

int runAction(const Options& options, const char* programName)
{
    switch (options.action) {
    case kActionNone:
        std::fprintf(stderr, "No action! --show, --all, --log, or --help must be specified\n");
        return kExitSuccess;
    case kActionShow:
        std::puts(recentEventsTable(options.inputPath, options.count).c_str());
        return kExitSuccess;
    case kActionAll:
        std::puts(allEventsTable(options.inputPath).c_str());
        return kExitSuccess;
    case kActionLog:
        std::printf("Saving table of events (from %s) to %s\n", options.inputPath.c_str(),
                    options.outputPath.c_str());
        saveEventTable(options.inputPath, options.outputPath);
        return kExitSuccess;
    case kActionHelp:
        printHelp(programName);
        return kExitSuccess;
    default: // no option leads here
        std::fprintf(stderr, "Internal Error! Invalid Action: %d\n", options.action);
        return kExitUsageError;
    }
}

} // namespace eventsviewer
