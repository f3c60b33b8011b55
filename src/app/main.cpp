#include "app/actions.h"
#include "app/options.h"

#include <fcntl.h>

#include <cstdlib>
#include <exception>
#include <new>

namespace {

// A file opened while a standard stream is closed would take its place, and what is printed would
// go into the export.
void openMissingStreams()
{
    for (const int stream : {0, 1, 2}) {
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) != stream) {
            std::abort();
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    // Streams catch bad_alloc and go on without what they should have read or written. A run that
    // is out of memory ends instead: no table is better than one that lacks events. It also ends
    // silently if the JSON library runs out of memory and throws.
    std::set_new_handler(std::abort);
    std::set_terminate(std::abort);
    openMissingStreams();

    const auto options = eventsviewer::parseOptions(argc, argv);
    return options ? eventsviewer::runAction(*options, argv[0]) : eventsviewer::kExitUsageError;
}
