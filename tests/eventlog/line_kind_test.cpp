#include "eventlog/line_kind.h"

#include "eventlog/event_line.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace eventsviewer {
namespace {

TEST(KindOfLine, SeesAPlainEventInAnIdThatComesFirst)
{
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":1228,\"time\":\"t\",\"vars\":{}}"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":0}"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":007,"));
}

TEST(KindOfLine, AllowsBlanksAndTabsBetweenTheTokens)
{
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{ \t\"id\" \t: \t12 \t, \"time\": \"t\"}"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{ \"id\" : 12 }"));
}

TEST(KindOfLine, LooksBehindAPrefix)
{
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("\"id\" \\u0069 logger: {\"id\":5}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("\"id\" \\u0069 logger: {}"));
}

TEST(KindOfLine, DoesNotMindDamageBehindThePlainId)
{
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":5,\"vars\":{\"a\":"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":5,]]\\x"));
}

TEST(KindOfLine, SeesNoEventWithoutABraceHoweverLongTheLine)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfLine(""));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("\"id\":5"));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine(std::string(100'000, 'x') + "\"id\""));
}

TEST(KindOfLine, SeesNoEventWithoutTheKeyId)
{
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{\"time\":\"t\",\"inet_id\":5,\"ID\":6,\"i\":7}"));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{\"id"));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{id\""));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{\"\\u0070\":5,\"\\\\\":6}"));
}

TEST(KindOfLine, LeavesAnIdThatIsNotAShortNumberToTheParser)
{
    for (const char* const id : {"\"5\"", "", "null", "true", "-5", "+5", "5.5", "5e3", "[5]", "{}",
                                 "x5", "5x", "1234567890", "0000000005"}) {
        EXPECT_EQ(LineKind::Unclear, kindOfLine(std::string("{\"id\":") + id + ",\"a\":1}")) << id;
    }
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":123456789}"));
}

TEST(KindOfLine, LeavesAnIdThatNothingEndsToTheParser)
{
    for (const char* const line :
         {"{\"id\":5", "{\"id\":5 ", "{\"id\":5]", "{\"id\":5;", "{\"id\":", "{\"id\"", "{\"id\"5,",
          "{\"id\":5/**/,", "{\"id\":5\r,"}) {
        EXPECT_EQ(LineKind::Unclear, kindOfLine(line)) << line;
    }
}

TEST(KindOfLine, LeavesAnIdThatIsNotTheFirstMemberToTheParser)
{
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"time\":\"t\",\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"vars\":{\"id\":5}}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{/**/\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{,\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{{\"id\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"id\""));
}

TEST(KindOfLine, LeavesASecondIdToTheParser)
{
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"id\":5,\"id\":\"x\"}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"id\":5,\"id\""));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"id\":5}\"id\""));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":5,\"id"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":5,id\"iid\"\"i\"d\"}"));
}

TEST(KindOfLine, LeavesAnEscapedLetterOfIdToTheParser)
{
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"\\u0069d\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"i\\u0064\":5}"));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{\"id\":5,\"\\u0069d\":\"x\"}"));
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine("{\"id\":5,\"a\":\"\\u0070\\n\"}"));
}

TEST(KindOfLine, LeavesWhatMayNestTooDeepToTheParser)
{
    const std::string plain = "{\"id\":5,\"a\":";
    EXPECT_EQ(LineKind::PlainEvent, kindOfLine(plain + std::string(999 - plain.size(), '[')));
    EXPECT_EQ(LineKind::Unclear, kindOfLine(plain + std::string(1000 - plain.size(), '[')));
    EXPECT_EQ(LineKind::NoEvent, kindOfLine("{" + std::string(998, '[')));
    EXPECT_EQ(LineKind::Unclear, kindOfLine("{" + std::string(999, '[')));
}

void expectThePromiseKept(const std::string& line)
{
    const LineKind kind = kindOfLine(line);
    if (kind == LineKind::Unclear) {
        return;
    }
    const CapturedCout output;
    const bool isEvent = parseEventLine(line) != nullptr;
    EXPECT_EQ(kind == LineKind::PlainEvent, isEvent) << line;
    EXPECT_EQ("", output.text()) << line;
}

TEST(KindOfLine, AgreesWithTheParserOnDamagedLines)
{
    const std::vector<std::string> lines = {
        R"(Nov 20 {"id":1228,"time":"t","vars":{"inet_id":"12","x":null}} end)",
        R"({ "id" : 5 , "vars" : { "id" : "x" } , "id" : "6" })",
        R"({"time":"t","vars":{"a":[1,{"b":2.5}]},"id":4294967296})",
        R"({"i\u0064":"7","\u0069d":8,"id":9,})",
        R"({"id":123456789,/* "id":"x" */"a":1}{"id":"y"})",
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
