// write_lines COUNT SEED: prints mutated lines of a log; some of them nest too deep.

#include "reference/log_mutator.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: write_lines COUNT SEED\n";
        return 2;
    }
    constexpr std::size_t kLinesForADeepOne = 300;
    const auto seed = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    eventsviewer::reference::LogMutator mutator(seed);
    for (std::size_t left = std::strtoul(argv[1], nullptr, 10); left > 0; --left) {
        std::cout << (mutator.oneIn(kLinesForADeepOne) ? mutator.deepLine() : mutator.line())
                  << '\n';
    }
    return std::cout.flush().good() ? 0 : 1;
}
