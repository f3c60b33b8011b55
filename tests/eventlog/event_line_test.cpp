#include "eventlog/event_line.h"

#include "jsonaccess/json_access.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>
#include <json/version.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <type_traits>

namespace eventsviewer {
namespace {

static_assert(!std::is_copy_constructible_v<EventRecord>, "a record has one owner");
static_assert(!std::is_copy_assignable_v<EventRecord>, "a record has one owner");

/// Expects a record of `line` with these fields, and that nothing is printed.
void expectRecord(std::string_view line, std::int32_t code, const std::string& time,
                  const std::string& details)
{
    SCOPED_TRACE(line);
    const CapturedCout output;
    const auto record = parseEventLine(line);
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(code, record->code);
    EXPECT_EQ(time, record->time);
    EXPECT_EQ(details, record->details.characters());
    EXPECT_EQ(0, record->reserved);
    EXPECT_EQ("", output.text());
}

void expectNoRecord(std::string_view line)
{
    SCOPED_TRACE(line);
    const CapturedCout output;
    EXPECT_EQ(nullptr, parseEventLine(line));
    EXPECT_EQ("", output.text());
    EXPECT_TRUE(std::cout.good());
}

TEST(EventRecord, TakesAShareOfItsDetails)
{
    const SharedText details = textFromLiteral("{}");
    const EventRecord record(684, "now", details);
    EXPECT_EQ(details.characters(), record.details.characters());
    EXPECT_EQ(684, record.code);
    EXPECT_EQ("now", record.time);
    EXPECT_EQ(0, record.reserved);
}

TEST(ParseEventLine, ReadsCodeTimeAndVariables)
{
    expectRecord(R"({"id":1228,"time":"Nov 20 08:15:02","vars":{"inet_id":"12"}})", 1228,
                 "Nov 20 08:15:02", R"({"inet_id":"12"})");
}

TEST(ParseEventLine, IgnoresOtherMembers)
{
    expectRecord(R"({"Id":1,"extra":[1,{"id":2}],"id":684,"TIME":"x"})", 684, "", "{}");
}

TEST(ParseEventLine, TakesNoOtherObjectForTheVariables)
{
    expectRecord(R"({"id":684,"other":{"a":"1"}})", 684, "", "{}");
    expectRecord(R"({"id":684,"vars":"x","other":{"a":"1"}})", 684, "", "{}");
    expectRecord(R"({"id":684,"vars":7,"other":{"a":"1"}})", 684, "", "{}");
    expectRecord(R"({"id":684,"vars":{},"other":{"a":"1"}})", 684, "", "{}");
    expectRecord(R"({"id":684,"other":{"a":"1"},"vars":{"b":"2"}})", 684, "", R"({"b":"2"})");
    expectRecord(R"({"id":684,"vars":{"a":"1"},"vars":"x"})", 684, "", "{}");
    expectRecord(R"({"id":684,"vars":{"a":"1"},"vars":{"b":"2"}})", 684, "", R"({"b":"2"})");
    expectRecord(R"({"id":684,"time":{"a":"1"},"vars":{"b":"2"}})", 684, "", R"({"b":"2"})");
}

TEST(ParseEventLine, SkipsALineWithoutAnEvent)
{
    for (const char* const line :
         {"", "   ", "no brace", "[1,2]", "{}", "{", "}", "{\"time\":\"t\"}", "{\"id", "{\"id\"",
          "{nonsense", "{1:2}", "{'id':1}"}) {
        expectNoRecord(line);
    }
    expectNoRecord(std::string(16, '\0'));
}

TEST(ParseEventLine, IgnoresWhatComesBeforeTheFirstBrace)
{
    expectRecord(R"(Nov 20 modem[12]: "x" {"id":684})", 684, "", "{}");
    expectRecord("\xEF\xBB\xBF{\"id\":684}", 684, "", "{}");
}

TEST(ParseEventLine, TakesTheFirstBraceEvenIfALaterOneWouldDo)
{
    expectNoRecord(R"(prefix {x} {"id":684})");
}

TEST(ParseEventLine, IgnoresWhatFollowsTheObject)
{
    expectRecord(R"({"id":684}{"id":685})", 684, "", "{}");
    expectRecord("{\"id\":684}\r", 684, "", "{}");
    expectRecord(R"({"id":684} ] garbage)", 684, "", "{}");
}

TEST(ParseEventLine, AcceptsCommentsAndRepeatedKeys)
{
    expectRecord(R"({/* old */"id":684,"time":"a","id":685,"time":"b"})", 685, "b", "{}");
}

TEST(ParseEventLine, KeepsWhatWasReadBeforeACut)
{
    expectRecord(R"({"id":684,"time":"t","vars":{"a":"1","b":"2","c)", 684, "t",
                 R"({"a":"1","b":"2"})");
    expectRecord(R"({"id":684,"time":"t","vars":{"a":"1","b":)", 684, "t", R"({"a":"1"})");
    expectRecord(R"({"id":684,"time":"t)", 684, "", "{}");
    expectRecord(R"({"id":684,)", 684, "", "{}");
}

TEST(ParseEventLine, HasNoTimeWhereTheLineBreaksBeforeIt)
{
    expectRecord(R"({"id":1228,"vars":{"inet_id":"x",},"time":"t"})", 1228, "",
                 R"({"inet_id":"x"})");
}

TEST(ParseEventLine, TakesAnIdWithoutAValueForNull)
{
    expectRecord(R"({"id":)", 0, "", "{}");
    expectRecord(R"({"id":tru)", 0, "", "{}");
}

TEST(ParseEventLine, ConvertsNullBooleansAndRealsToACode)
{
    expectRecord(R"({"id":null})", 0, "", "{}");
    expectRecord(R"({"id":true})", 1, "", "{}");
    expectRecord(R"({"id":false})", 0, "", "{}");
    expectRecord(R"({"id":684.9})", 684, "", "{}");
    expectRecord(R"({"id":-1})", -1, "", "{}");
}

void expectRecordAndDiagnostic(const std::string& id, std::int32_t code,
                               const std::string& diagnostic)
{
    SCOPED_TRACE(id);
    const CapturedCout output;
    const auto record = parseEventLine(R"({"time":"t","id":)" + id + "}");
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(code, record->code);
    EXPECT_EQ("t", record->time);
    EXPECT_EQ("Tarvik workaround: " + diagnostic + "\n", output.text());
}

TEST(ParseEventLine, PrintsTheDiagnosticOfAnIdThatIsNotAnInteger)
{
    expectRecordAndDiagnostic("\"684\"", 0, "Value is not convertible to Int.");
    expectRecordAndDiagnostic("[684]", 0, "Value is not convertible to Int.");
    expectRecordAndDiagnostic("{}", 0, "Value is not convertible to Int.");
    expectRecordAndDiagnostic("4294967296", 0, "LargestInt out of Int range");
    expectRecordAndDiagnostic("2147483648", INT32_MIN, "LargestInt out of Int range");
    expectRecordAndDiagnostic("9223372036854775808", 0, "LargestUInt out of Int range");
    expectRecordAndDiagnostic("1e12", INT32_MAX, "double out of Int range");
}

TEST(ParseEventLine, PrintsTheDiagnosticOfAnIdEvenWhereTheLineBreaksLater)
{
    const CapturedCout output;
    EXPECT_NE(nullptr, parseEventLine(R"({"id":"684","time":)"));
    EXPECT_EQ("Tarvik workaround: Value is not convertible to Int.\n", output.text());
}

TEST(ParseEventLine, TakesATimeThatIsNotAStringForEmpty)
{
    for (const char* const time : {"5", "5.5", "true", "null", "[\"t\"]", "{\"t\":1}"}) {
        expectRecord(R"({"id":684,"time":)" + std::string(time) + "}", 684, "", "{}");
    }
}

TEST(ParseEventLine, KeepsTheBytesOfTheTimeUpToItsFirstNul)
{
    expectRecord("{\"id\":684,\"time\":\"a\xFF\xC3\xA9 \\u00e9\\u0000b\"}", 684,
                 "a\xFF\xC3\xA9 \xC3\xA9", "{}");
}

TEST(ParseEventLine, TakesVariablesThatAreNotAnObjectForNone)
{
    for (const char* const variables : {"5", "true", "null", "\"{}\"", "[{\"a\":\"b\"}]"}) {
        expectRecord(R"({"id":684,"vars":)" + std::string(variables) + "}", 684, "", "{}");
    }
}

TEST(ParseEventLine, RemovesNullVariablesAtTheTopLevelOnly)
{
    expectRecord(R"({"id":684,"vars":{"z":null,"a":{"b":null,"c":[null]},"m":null,"k":"v"}})", 684,
                 "", R"({"a":{"b":null,"c":[null]},"k":"v"})");
    expectRecord(R"({"id":684,"vars":{"a":null}})", 684, "", "{}");
}

TEST(ParseEventLine, RemovesTheNamesakeOfANullVariableWhoseKeyHoldsANul)
{
    // JsonCpp removes by the key up to its NUL; 1.9.7, and no other release, by the whole key.
    const bool whole = JSONCPP_VERSION_PATCH == 7;
    expectRecord(R"({"id":684,"vars":{"a":"x","a\u0000b":null}})", 684, "",
                 whole ? R"({"a":"x"})" : R"({"a\u0000b":null})");
}

TEST(ParseEventLine, WritesTheVariablesAsCompactJsonInOrderOfTheirKeys)
{
    expectRecord(R"({ "id" : 684 , "vars" : { "b" : 0.1 , "a" : [ 1 , "x" ] , "B" : { } } })", 684,
                 "", R"({"B":{},"a":[1,"x"],"b":0.10000000000000001})");
}

TEST(ParseEventLine, WritesIllFormedUtf8InVariablesAsTheReplacementCharacter)
{
    // JsonCpp before 1.9.3 does not look at such a string where char is unsigned.
    const bool asItIs = JSONCPP_VERSION_PATCH < 3 && JSONCPP_CHAR_IS_UNSIGNED;
    expectRecord("{\"id\":684,\"vars\":{\"a\":\"\xFF\",\"b\":\"\xC3\xA9\"}}", 684, "",
                 asItIs ? "{\"a\":\"\xFF\",\"b\":\"\xC3\xA9\"}" : R"({"a":"\ufffd","b":"\u00e9"})");
}

TEST(ParseEventLine, KeepsACommentAmongTheVariables)
{
    expectRecord(R"({"id":684,"vars":{"a":"1" /* why */}})", 684, "", R"({"a":"1" /* why */})");
    expectRecord("{\"id\":684,\"vars\":{\"a\":\"1\" // why\n}}", 684, "", R"({"a":"1" // why})");
}

TEST(ParseEventLine, LeavesStandardOutputGoodWhateverItWasBefore)
{
    const CapturedCout output;
    for (const auto state :
         {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
        std::cout.clear(state);
        EXPECT_NE(nullptr, parseEventLine(R"({"id":684})"));
        EXPECT_TRUE(std::cout.good());
    }
    std::cout << "heard";
    EXPECT_EQ("heard", output.text());
}

struct NestedTooDeep {};

TEST(ParseEventLine, LeavesStandardOutputGoodWhenAHandlerOfRuntimeErrorsThrows)
{
    const CapturedCout output;
    jsonaccess::setRuntimeErrorHandler([] { throw NestedTooDeep(); });
    EXPECT_THROW(parseEventLine("{\"id\":" + std::string(1001, '[')), NestedTooDeep);
    jsonaccess::setRuntimeErrorHandler(std::abort);
    EXPECT_TRUE(std::cout.good());
    EXPECT_EQ("", output.text());
}

TEST(ParseEventLine, LeavesStandardOutputAloneWithoutABrace)
{
    const CapturedCout output;
    std::cout.setstate(std::ios_base::failbit);
    EXPECT_EQ(nullptr, parseEventLine("no brace"));
    EXPECT_TRUE(std::cout.fail());
    std::cout.clear();
}

} // namespace
} // namespace eventsviewer
