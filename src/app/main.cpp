#include "app/actions.h"
#include "app/options.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>

namespace {

// The export may take the descriptor of a standard output that is closed. Diagnostics, which alone
// are written while a file is open, would then go into the export. To open /dev/null in its place
// could fail, or take the descriptor that the log needs.
void dropDiagnosticsIfOutputIsClosed()
{
    if (fcntl(STDOUT_FILENO, F_GETFD) < 0) {
        std::cout.rdbuf(nullptr);
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
    dropDiagnosticsIfOutputIsClosed();

    const auto options = eventsviewer::parseOptions(argc, argv);
    return options ? eventsviewer::runAction(*options, argv[0]) : eventsviewer::kExitUsageError;
}
