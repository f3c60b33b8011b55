#include "eventlog/silent_lines.h"

#include "eventlog/event_line.h"
#include "eventlog/lines.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

// In an allocation of exactly its size, so that sanitizers notice a read past its end.
std::size_t silentLengthOf(const std::string& lines)
{
    const std::vector<char> bytes(lines.begin(), lines.end());
    return silentLength({bytes.data(), bytes.size()});
}

bool isSilent(const std::string& line)
{
    return silentLengthOf(line) == line.size();
}

TEST(SilentLength, CountsALineWithAShortNumberForAnId)
{
    EXPECT_TRUE(isSilent("{\"id\":1228,\"time\":\"t\",\"vars\":{}}"));
    EXPECT_TRUE(isSilent("{\"time\":\"t\",\"id\":0}"));
    EXPECT_TRUE(isSilent("{\"id\":007,"));
    EXPECT_TRUE(isSilent("{\"id\":123456789}"));
}

TEST(SilentLength, CountsALineWithoutAnId)
{
    EXPECT_TRUE(isSilent(""));
    EXPECT_TRUE(isSilent("\n\n"));
    EXPECT_TRUE(isSilent("{}"));
    EXPECT_TRUE(isSilent("{\"time\":\"t\",\"inet_id\":\"x\",\"ID\":\"y\",\"i\":null}"));
    EXPECT_TRUE(isSilent("{\"id"));
    EXPECT_TRUE(isSilent("{id\"iid\"\"i\"d\""));
}

TEST(SilentLength, AllowsSpacesAndTabsBetweenTheTokens)
{
    EXPECT_TRUE(isSilent("{ \t\"id\" \t: \t12 \t, \"time\": \"t\"}"));
    EXPECT_TRUE(isSilent("{ \"id\" : 12 }"));
}

TEST(SilentLength, StopsAtAnIdThatIsNotAShortNumber)
{
    for (const char* const id : {"\"5\"", "", "null", "true", "-5", "+5", "5.5", "5e3", "[5]", "{}",
                                 "x5", "5x", "5/5", "5:5", "1234567890", "0000000005"}) {
        EXPECT_EQ(0U, silentLengthOf(std::string("{\"id\":") + id + ",\"a\":1}")) << id;
    }
}

TEST(SilentLength, StopsAtAnIdThatNothingEnds)
{
    for (const char* const line :
         {"{\"id\":5", "{\"id\":5 ", "{\"id\":5]", "{\"id\":5;", "{\"id\":5\n}",
          "{\"id\":", "{\"id\":\n5}", "{\"id\"", "{\"id\"5,", "{\"id\":5/**/,", "{\"id\":5\r,"}) {
        EXPECT_EQ(0U, silentLengthOf(line)) << line;
    }
}

TEST(SilentLength, StopsAtAnyFurtherIdThatIsNotAShortNumber)
{
    EXPECT_TRUE(isSilent("{\"id\":5,\"id\":6,\"vars\":{\"id\":7}}"));
    EXPECT_EQ(0U, silentLengthOf("{\"id\":5,\"id\":\"x\"}"));
    EXPECT_EQ(0U, silentLengthOf("{\"id\":5,\"vars\":{\"id\":\"x\"}}"));
    EXPECT_EQ(0U, silentLengthOf("{\"id\":5,\"id\""));
    EXPECT_EQ(0U, silentLengthOf("{\"id\":5}\"id\""));
}

TEST(SilentLength, StopsAtAnEscapedLetterOfId)
{
    EXPECT_EQ(0U, silentLengthOf("{\"\\u0069d\":5}"));
    EXPECT_EQ(0U, silentLengthOf("{\"i\\u0064\":5}"));
    EXPECT_EQ(0U, silentLengthOf("{\"\\u0069\\u0064\":5}"));
    EXPECT_EQ(0U, silentLengthOf("{\"id\":5,\"\\u0069d\":\"x\"}"));
    EXPECT_EQ(0U, silentLengthOf("\"\\u006"));
    EXPECT_EQ(0U, silentLengthOf("\"i\\u006"));
    EXPECT_TRUE(
        isSilent("{\"id\":5,\"\\u0070\":\"\\u0070\\u00e9\\n\",\"i\\u0070\":\"x\\u0069d\"}"));
    EXPECT_TRUE(isSilent("\"\\u00"));
    EXPECT_TRUE(isSilent("\"i\\u00"));
}

TEST(SilentLength, FindsANeedleWhateverIsAroundIt)
{
    // Needles are searched several bytes at a time, except near the end.
    for (const std::string needle : {"\"id\"", "\"\\u006", "\"i\\u006"}) {
        for (std::size_t before = 0; before < 40; ++before) {
            for (const char filler : {'x', '"', 'i', 'd', '0', 'u', '\\', '}'}) {
                for (std::size_t after = 0; after < 20; ++after) {
                    const std::string line =
                        std::string(before, filler) + needle + std::string(after, 'x');
                    EXPECT_EQ(0U, silentLengthOf(line)) << line;
                }
            }
        }
    }
}

TEST(SilentLength, StopsAtALineThatMayNestTooDeep)
{
    EXPECT_TRUE(isSilent(std::string(1000, '[')));
    EXPECT_TRUE(isSilent(std::string(999, '[') + "\n"));
    EXPECT_EQ(0U, silentLengthOf(std::string(1001, '[')));
    EXPECT_EQ(0U, silentLengthOf(std::string(1000, '[') + "\n"));
    EXPECT_EQ(0U, silentLengthOf(std::string(100'000, 'x')));
}

TEST(SilentLength, StopsBeforeTheLineThatMayPrint)
{
    const std::string silent = "{\"id\":5,\"a\":\"b\"}\n";
    const std::string unsafe = "{\"id\":\"5\"}\n";
    const std::string tooLong(2000, 'x');
    std::string lines;
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(lines.size(), silentLengthOf(lines + unsafe + silent));
        EXPECT_EQ(lines.size(), silentLengthOf(lines + tooLong + "\n" + silent));
        EXPECT_EQ(lines.size(), silentLengthOf(lines));
        lines += silent;
    }
}

TEST(KindOfSilentLine, SeesAnEventInAnIdThatComesFirst)
{
    EXPECT_EQ(LineKind::Event, kindOfSilentLine("{\"id\":5}"));
    EXPECT_EQ(LineKind::Event, kindOfSilentLine("{ \t\"id\" : 5 , \"time\":\"t\"}"));
    EXPECT_EQ(LineKind::Event, kindOfSilentLine("logger: {\"id\":5}"));
    EXPECT_EQ(LineKind::Event, kindOfSilentLine("{\"id\":5,\"vars\":{\"a\":"));
    EXPECT_EQ(LineKind::Event, kindOfSilentLine("{\"id\":5,]]\\x"));
}

TEST(KindOfSilentLine, SeesNoEventWithoutABrace)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine(""));
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine("\"id\":5,"));
}

TEST(KindOfSilentLine, SeesNoEventWithoutTheKeyIdAfterTheBrace)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine("{}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine("{"));
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine("{\"time\":\"t\",\"inet_id\":5}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfSilentLine("\"id\":5, {\"time\":\"t\"}"));
}

TEST(KindOfSilentLine, LeavesAnIdThatIsNotTheFirstMemberToTheParser)
{
    EXPECT_EQ(LineKind::Unclear, kindOfSilentLine("{\"time\":\"t\",\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfSilentLine("{\"vars\":{\"id\":5}}"));
    EXPECT_EQ(LineKind::Unclear, kindOfSilentLine("{/**/\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfSilentLine("{,\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfSilentLine("{{\"id\":5}"));
}

void expectThePromiseKept(const std::string& line)
{
    std::string_view rest = line;
    if (!isSilent(line)) {
        return;
    }
    const CapturedCout output;
    while (!rest.empty()) {
        const std::string_view silent = takeFirstLine(rest);
        const bool isEvent = parseEventLine(silent) != nullptr;
        const LineKind kind = kindOfSilentLine(silent);
        EXPECT_TRUE(kind == LineKind::Unclear || (kind == LineKind::Event) == isEvent) << line;
    }
    EXPECT_EQ("", output.text()) << line;
}

TEST(SilentLines, AgreeWithTheParserOnDamagedLines)
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
