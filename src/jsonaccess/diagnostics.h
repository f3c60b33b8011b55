#pragma once

#include <string>
#include <vector>

namespace eventsviewer::jsonaccess {

/// Keeps what is printed on std::cout, the diagnostics of this module, from standard output.
void captureDiagnostics();

/// The diagnostics since the last call, or since the capture began, one line each, without what all
/// begin with.
std::vector<std::string> takeDiagnostics();

} // namespace eventsviewer::jsonaccess
