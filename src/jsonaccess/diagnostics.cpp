#include "jsonaccess/diagnostics.h"

#include <iostream>
#include <sstream>
#include <string_view>

namespace eventsviewer::jsonaccess {

namespace {

constexpr std::string_view kDiagnostic = "Tarvik workaround: ";

std::stringbuf* captured = nullptr; // std::cout uses it up to the end

} // namespace

void captureDiagnostics()
{
    captured = new std::stringbuf;
    std::cout.rdbuf(captured);
}

std::vector<std::string> takeDiagnostics()
{
    std::vector<std::string> diagnostics;
    if (captured->in_avail() <= 0) { // as nearly always
        return diagnostics;
    }
    std::istringstream lines(captured->str());
    captured->str({});
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, kDiagnostic.size(), kDiagnostic) == 0) {
            diagnostics.push_back(line.substr(kDiagnostic.size()));
        } else if (!line.empty()) { // the rest of one
            diagnostics.back() += ' ' + line.substr(line.find_first_not_of(' '));
        }
    }
    return diagnostics;
}

} // namespace eventsviewer::jsonaccess
