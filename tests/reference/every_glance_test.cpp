// every_glance_test PIECES: reads every line of up to PIECES pieces after some beginnings at a
// glance. What is told of a line has to be what parseEventLine gives: whether there is an event,
// its code and its time. If nothing is told, nothing is compared.

#include "eventlog/event_line.h"
#include "eventlog/silent_lines.h"
#include "support/captured_cout.h"
#include "support/printable.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

namespace {

using namespace std::string_view_literals;

const std::vector<std::string_view> kBeginnings = {
    "", "{", "{\"id\":5,", "x { \t\"id\" : 005 , ", "{\"id\":5,\"time\":\"t\"", "{\"a\":\"",
};
const std::vector<std::string_view> kPieces = {
    "{",
    "}",
    ",",
    ":",
    "\"",
    " ",
    "5",
    "1234567890",
    "\\",
    "\"id\"",
    "\"id\":7",
    "\"\\u0069d\":8",
    "\"i\\u0064\":\"x\"",
    "\"time\"",
    "\"time\":\"u\"",
    "\"\\u0074ime\":\"v\"",
    "\"t\\u0069me\":",
    "\"time\":9",
    "\"time\":\"\\n\"",
    "\"time\":\"\0.\""sv,
    "\"time\":\"\x01\"",
    "\"time\":\"\xff\"",
    "id",
    "time",
    "null",
    "//",
    "/*",
    "*/",
    "\xef\xbb\xbf",
    "\0"sv,
};

// About how many lines this is told.
std::size_t codes = 0;
std::size_t times = 0;

[[noreturn]] void fail(std::string_view line, const char* what)
{
    std::fprintf(stderr, "not what the parser gives: %s, of: %s\n", what,
                 printable(std::string(line)).c_str());
    std::exit(1);
}

void check(bool same, std::string_view line, const char* what)
{
    if (!same) {
        fail(line, what);
    }
}

void compare(const std::string& text)
{
    // In an allocation of exactly its size, so that sanitizers notice a read past its end.
    const std::vector<char> bytes(text.begin(), text.end());
    const std::string_view line(bytes.data(), bytes.size());
    const Glance glance = glanceAt(line);
    const auto time = timeAtAGlance(line);
    if (glance.kind == LineKind::Unclear && !time) {
        return;
    }
    codes += glance.kind == LineKind::Event ? 1 : 0;
    times += time ? 1 : 0;
    const CapturedCout printed;
    const auto event = parseEventLine(line);
    if (glance.kind != LineKind::Unclear) {
        check((event != nullptr) == (glance.kind == LineKind::Event), line,
              "whether it is an event");
        check(event == nullptr || event->code == glance.code, line, "the code");
        check(printed.text().empty(), line, "the silence");
    }
    if (time) {
        check(event != nullptr, line, "an event with a time");
        check(event->time == *time, line, "the time");
    }
}

void compareAll(std::string& text, std::size_t pieces)
{
    compare(text);
    const std::size_t size = text.size();
    for (std::size_t i = 0; pieces > 0 && i < kPieces.size(); ++i) {
        text += kPieces[i];
        compareAll(text, pieces - 1);
        text.resize(size);
    }
}

} // namespace

} // namespace eventsviewer

int main(int argc, char** argv)
{
    using namespace eventsviewer;
    if (argc != 2) {
        std::fputs("usage: every_glance_test PIECES\n", stderr);
        return 2;
    }
    for (const std::string_view beginning : kBeginnings) {
        std::string text(beginning);
        compareAll(text, std::strtoul(argv[1], nullptr, 10));
    }
    // Keys are searched several bytes at a time, except near the end.
    for (const std::string_view beginning : kBeginnings) {
        for (std::size_t filled = 0; filled < 40; ++filled) {
            std::string text =
                std::string(beginning) + ",\"a\":\"" + std::string(filled, 'x') + '"';
            compareAll(text, 2);
        }
    }
    std::printf("The code is told of %zu lines, the time of %zu.\n", codes, times);
    return codes > 0 && times > 0 ? 0 : 1;
}
