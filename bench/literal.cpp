// literal FILE: prints the table of all events. Each step is done in the simplest way.

#include "reference/naive.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: literal FILE\n", stderr);
        return 2;
    }
    std::puts(eventsviewer::reference::allEventsTable(argv[1]).c_str());
}
