#include "eventlog/quiet_lines.h"

#include "eventlog/event_line.h"
#include "eventlog/lines.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

// In an allocation of exactly its size, so that sanitizers notice a look behind its end.
std::size_t quietLengthOf(const std::string& lines)
{
    const std::vector<char> bytes(lines.begin(), lines.end());
    return quietLength({bytes.data(), bytes.size()});
}

bool isQuiet(const std::string& line)
{
    return quietLengthOf(line) == line.size();
}

TEST(QuietLength, CountsALineWithAShortNumberForAnId)
{
    EXPECT_TRUE(isQuiet("{\"id\":1228,\"time\":\"t\",\"vars\":{}}"));
    EXPECT_TRUE(isQuiet("{\"time\":\"t\",\"id\":0}"));
    EXPECT_TRUE(isQuiet("{\"id\":007,"));
    EXPECT_TRUE(isQuiet("{\"id\":123456789}"));
}

TEST(QuietLength, CountsALineWithoutAnId)
{
    EXPECT_TRUE(isQuiet(""));
    EXPECT_TRUE(isQuiet("\n\n"));
    EXPECT_TRUE(isQuiet("{}"));
    EXPECT_TRUE(isQuiet("{\"time\":\"t\",\"inet_id\":\"x\",\"ID\":\"y\",\"i\":null}"));
    EXPECT_TRUE(isQuiet("{\"id"));
    EXPECT_TRUE(isQuiet("{id\"iid\"\"i\"d\""));
}

TEST(QuietLength, AllowsBlanksAndTabsBetweenTheTokens)
{
    EXPECT_TRUE(isQuiet("{ \t\"id\" \t: \t12 \t, \"time\": \"t\"}"));
    EXPECT_TRUE(isQuiet("{ \"id\" : 12 }"));
}

TEST(QuietLength, StopsAtAnIdThatIsNotAShortNumber)
{
    for (const char* const id : {"\"5\"", "", "null", "true", "-5", "+5", "5.5", "5e3", "[5]", "{}",
                                 "x5", "5x", "5/5", "5:5", "1234567890", "0000000005"}) {
        EXPECT_EQ(0U, quietLengthOf(std::string("{\"id\":") + id + ",\"a\":1}")) << id;
    }
}

TEST(QuietLength, StopsAtAnIdThatNothingEnds)
{
    for (const char* const line :
         {"{\"id\":5", "{\"id\":5 ", "{\"id\":5]", "{\"id\":5;", "{\"id\":5\n}",
          "{\"id\":", "{\"id\":\n5}", "{\"id\"", "{\"id\"5,", "{\"id\":5/**/,", "{\"id\":5\r,"}) {
        EXPECT_EQ(0U, quietLengthOf(line)) << line;
    }
}

TEST(QuietLength, StopsAtAnyFurtherIdThatIsNotAShortNumber)
{
    EXPECT_TRUE(isQuiet("{\"id\":5,\"id\":6,\"vars\":{\"id\":7}}"));
    EXPECT_EQ(0U, quietLengthOf("{\"id\":5,\"id\":\"x\"}"));
    EXPECT_EQ(0U, quietLengthOf("{\"id\":5,\"vars\":{\"id\":\"x\"}}"));
    EXPECT_EQ(0U, quietLengthOf("{\"id\":5,\"id\""));
    EXPECT_EQ(0U, quietLengthOf("{\"id\":5}\"id\""));
}

TEST(QuietLength, StopsAtAnEscapedLetterOfId)
{
    EXPECT_EQ(0U, quietLengthOf("{\"\\u0069d\":5}"));
    EXPECT_EQ(0U, quietLengthOf("{\"i\\u0064\":5}"));
    EXPECT_EQ(0U, quietLengthOf("{\"\\u0069\\u0064\":5}"));
    EXPECT_EQ(0U, quietLengthOf("{\"id\":5,\"\\u0069d\":\"x\"}"));
    EXPECT_EQ(0U, quietLengthOf("\"\\u006"));
    EXPECT_EQ(0U, quietLengthOf("\"i\\u006"));
    EXPECT_TRUE(isQuiet("{\"id\":5,\"\\u0070\":\"\\u0070\\u00e9\\n\",\"i\\u0070\":\"x\\u0069d\"}"));
    EXPECT_TRUE(isQuiet("\"\\u00"));
    EXPECT_TRUE(isQuiet("\"i\\u00"));
}

TEST(QuietLength, FindsAMarkWhateverStandsAroundIt)
{
    // Marks are looked for in several bytes at a time, until close to the end.
    for (const std::string mark : {"\"id\"", "\"\\u006", "\"i\\u006"}) {
        for (std::size_t before = 0; before < 40; ++before) {
            for (const char filler : {'x', '"', 'i', 'd', '0', 'u', '\\', '}'}) {
                for (std::size_t behind = 0; behind < 20; ++behind) {
                    const std::string line =
                        std::string(before, filler) + mark + std::string(behind, 'x');
                    EXPECT_EQ(0U, quietLengthOf(line)) << line;
                }
            }
        }
    }
}

TEST(QuietLength, StopsAtALineThatMayNestTooDeep)
{
    EXPECT_TRUE(isQuiet(std::string(1000, '[')));
    EXPECT_TRUE(isQuiet(std::string(999, '[') + "\n"));
    EXPECT_EQ(0U, quietLengthOf(std::string(1001, '[')));
    EXPECT_EQ(0U, quietLengthOf(std::string(1000, '[') + "\n"));
    EXPECT_EQ(0U, quietLengthOf(std::string(100'000, 'x')));
}

TEST(QuietLength, StopsInFrontOfTheLineInDoubt)
{
    const std::string quiet = "{\"id\":5,\"a\":\"b\"}\n";
    const std::string doubtful = "{\"id\":\"5\"}\n";
    const std::string tooLong(2000, 'x');
    std::string lines;
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(lines.size(), quietLengthOf(lines + doubtful + quiet));
        EXPECT_EQ(lines.size(), quietLengthOf(lines + tooLong + "\n" + quiet));
        EXPECT_EQ(lines.size(), quietLengthOf(lines));
        lines += quiet;
    }
}

TEST(KindOfQuietLine, SeesAnEventInAnIdThatComesFirst)
{
    EXPECT_EQ(LineKind::Event, kindOfQuietLine("{\"id\":5}"));
    EXPECT_EQ(LineKind::Event, kindOfQuietLine("{ \t\"id\" : 5 , \"time\":\"t\"}"));
    EXPECT_EQ(LineKind::Event, kindOfQuietLine("logger: {\"id\":5}"));
    EXPECT_EQ(LineKind::Event, kindOfQuietLine("{\"id\":5,\"vars\":{\"a\":"));
    EXPECT_EQ(LineKind::Event, kindOfQuietLine("{\"id\":5,]]\\x"));
}

TEST(KindOfQuietLine, SeesNoEventWithoutABrace)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine(""));
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine("\"id\":5,"));
}

TEST(KindOfQuietLine, SeesNoEventWithoutTheKeyIdBehindTheBrace)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine("{}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine("{"));
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine("{\"time\":\"t\",\"inet_id\":5}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfQuietLine("\"id\":5, {\"time\":\"t\"}"));
}

TEST(KindOfQuietLine, LeavesAnIdThatIsNotTheFirstMemberToTheParser)
{
    EXPECT_EQ(LineKind::Unclear, kindOfQuietLine("{\"time\":\"t\",\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfQuietLine("{\"vars\":{\"id\":5}}"));
    EXPECT_EQ(LineKind::Unclear, kindOfQuietLine("{/**/\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfQuietLine("{,\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfQuietLine("{{\"id\":5}"));
}

void expectThePromiseKept(const std::string& line)
{
    std::string_view rest = line;
    if (!isQuiet(line)) {
        return;
    }
    const CapturedCout output;
    while (!rest.empty()) {
        const std::string_view quiet = takeFirstLine(rest);
        const bool isEvent = parseEventLine(quiet) != nullptr;
        const LineKind kind = kindOfQuietLine(quiet);
        EXPECT_TRUE(kind == LineKind::Unclear || (kind == LineKind::Event) == isEvent) << line;
    }
    EXPECT_EQ("", output.text()) << line;
}

TEST(QuietLines, AgreeWithTheParserOnDamagedLines)
{
    const std::vector<std::string> lines = {
        R"(Nov 20 {"id":1228,"time":"t","vars":{"inet_id":"12","x":null}} end)",
        R"({ "id" : 5 , "vars" : { "id" : 8 } , "id" : 60 })",
        R"({ "id" : 5 , "vars" : { "id" : "x" } , "id" : "6" })",
        R"({"time":"t","vars":{"a":[1,{"b":2.5}]},"id":429496729})",
        R"({"i\u0064":"7","\u0069d":8,"id":9,})",
        R"({"id":123456789,/* "id":7, */"a":1}{"id":"y"})",
    };
    const std::string damages("\r\n\t \"\\{}[],:/*09aidu-.\xFF\0", 24);
    for (const std::string& line : lines) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            expectThePromiseKept(line.substr(0, at));
            expectThePromiseKept(line.substr(at));
            expectThePromiseKept(line.substr(0, at) + line.substr(at + 1));
            for (const char damage : damages) {
                std::string damaged = line;
                damaged[at] = damage;
                expectThePromiseKept(damaged);
            }
        }
    }
}

} // namespace
} // namespace eventsviewer
