// generate_log LINES [STYLE [DAMAGED [SEED]]]: writes a log to standard output. STYLE is one of
// those that styleNamed knows, DAMAGED the number of damaged lines in a thousand.

#include "log_generator.h"

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    using namespace eventsviewer::bench;

    const auto style = styleNamed(argc > 2 ? argv[2] : "compact");
    if (argc < 2 || !style.has_value()) {
        std::cerr << "usage: generate_log LINES [STYLE [DAMAGED [SEED]]]\n";
        return 2;
    }
    const auto number = [&](int index, unsigned long fallback) {
        return argc > index ? std::strtoul(argv[index], nullptr, 10) : fallback;
    };
    std::ios::sync_with_stdio(false);
    LogGenerator generator(static_cast<std::uint32_t>(number(4, 1)), *style, number(3, 0));
    for (unsigned long left = number(1, 0); left > 0; --left) {
        std::cout << generator.line();
    }
    return std::cout.flush() ? 0 : 1;
}
