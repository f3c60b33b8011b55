#include "jsonaccess/diagnostics.h"

#include <iostream>
#include <sstream>
#include <streambuf>
#include <string_view>
#include <utility>

namespace eventsviewer::jsonaccess {

namespace {

constexpr std::string_view kDiagnostic = "Tarvik workaround: ";

// Keeps what is written.
class Capture : public std::streambuf {
public:
    std::string text;

protected:
    int_type overflow(int_type c) override
    {
        text += traits_type::to_char_type(c);
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* written, std::streamsize count) override
    {
        text.append(written, static_cast<std::size_t>(count));
        return count;
    }
};

Capture* captured = nullptr; // std::cout uses it up to the end

} // namespace

void captureDiagnostics()
{
    captured = new Capture;
    std::cout.rdbuf(captured);
}

std::vector<std::string> takeDiagnostics()
{
    std::vector<std::string> diagnostics;
    if (captured->text.empty()) { // as nearly always
        return diagnostics;
    }
    std::istringstream lines(std::exchange(captured->text, {}));
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
