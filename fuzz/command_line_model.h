#pragma once

#include "app/options.h"

#include <optional>
#include <string>
#include <vector>

namespace eventsviewer::fuzz {

/// What parseOptions makes of the command line `arguments` (the program's name not among them),
/// worked out without getopt. `action` is the one that holds if none is given.
std::optional<Options> modelOptions(const std::vector<std::string>& arguments, Action action);

} // namespace eventsviewer::fuzz
