#include "jsonaccess/json_access.h"

#include "jsonaccess/parsed.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>
#include <json/version.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace eventsviewer::jsonaccess {
namespace {

constexpr const char* kParseError = "Tarvik workaround: error occured in IStream in JsonCpp:";
constexpr const char* kFindDiagnostic =
    "Tarvik workaround: in Json::Value::find(begin, end): requires objectValue or nullValue\n";

/// Values that can have no members.
std::vector<Json::Value> valuesWithoutMembers()
{
    return {parsed("1"),    parsed("1.5"), parsed("\"text\""),
            parsed("true"), parsed("[1]"), Json::Value(Json::UInt64{1})};
}

TEST(Parse, OfEmptyInputLeavesNull)
{
    const CapturedCout output;
    EXPECT_TRUE(parsed("").isNull());
    EXPECT_EQ(std::string(kParseError) + "* Line 1, Column 1\n"
                                         "  Syntax error: value, object or array expected.\n\n",
              output.text());
}

TEST(Parse, KeepsTheMembersBeforeTheBreak)
{
    const CapturedCout output;
    EXPECT_EQ(R"({"a":1,"b":{"c":2}})", writeString(parsed(R"({"a":1,"b":{"c":2,)")));
    EXPECT_EQ(R"({"a":1})", writeString(parsed(R"({"a":1,"b)")));
}

TEST(Parse, KeepsTheKeyWhoseValueIsBroken)
{
    const CapturedCout output;
    EXPECT_EQ(R"({"id":null})", writeString(parsed(R"({"id":)")));
    EXPECT_EQ(R"({"a":1,"b":null})", writeString(parsed(R"({"a":1,"b":tru)")));
}

TEST(Parse, TellsTheSecondPlaceOfAnError)
{
    const CapturedCout output;
    parsed(R"(["\u12"])");
    EXPECT_EQ(std::string(kParseError) +
                  "* Line 1, Column 2\n"
                  "  Bad unicode escape sequence in string: four digits expected.\n"
                  "See Line 1, Column 5 for detail.\n\n",
              output.text());
}

TEST(Parse, FlushesItsDiagnosticAndNothingElse)
{
    const CapturedCout output;
    parsed("{}");
    EXPECT_EQ(0, output.flushes());
    parsed("");
    EXPECT_EQ(1, output.flushes());
}

TEST(Parse, ForgetsTheErrorsOfTheInputBefore)
{
    const CapturedCout output;
    parsed("/* a comment */ [");
    const std::string first = output.text();
    EXPECT_EQ("{}", writeString(parsed("{}")));
    EXPECT_EQ(first, output.text());
}

TEST(Parse, ForgetsTheCommentsOfTheInputBefore)
{
    // The library keeps a comment until it knows the value that it belongs to.
    const CapturedCout output;
    for (const char* const before :
         {"/* before */", "// before", "/* before */ x", "/* before", "[1] /* before */",
          "[1] // before", "[1, /* before */", "[1, 2 /* before */", "[ /* before */ ]",
          "{ /* before */", "{\"a\": /* before */", "{\"a\":1 /* before */",
          "{\"a\":1} /* before */ /* before */", "{\"a\":1, /* before */ }", "1 /* before */"}) {
        for (const char* const after : {"{}", "{\"a\":1}", "[[1],{\"b\":\"c\"}]", "2"}) {
            parsed(before);
            EXPECT_EQ(after, writeString(parsed(after))) << before;
        }
        parsed(before);
        EXPECT_EQ("[/* own */1]", writeString(parsed("[/* own */ 1]"))) << before;
        parsed(before);
        EXPECT_EQ("[1 /* own */]", writeString(parsed("[1 /* own */]"))) << before;
    }
}

TEST(Parse, ReadsInputThatNoNulEnds)
{
    EXPECT_EQ("[1]", writeString(parsed(std::string_view("[1]]]", 3))));
}

TEST(Parse, IsSilentOnAFailedStream)
{
    const CapturedCout output;
    std::cout.setstate(std::ios_base::failbit);
    EXPECT_EQ(R"({"a":1})", writeString(parsed(R"({"a":1,)")));
    EXPECT_TRUE(std::cout.fail());
    std::cout.clear();
    EXPECT_EQ("", output.text());
}

TEST(Parse, HoldsIntegersInTheSmallestTypeThatFits)
{
    EXPECT_EQ(Json::intValue, parsed("2147483648").type());
    EXPECT_EQ(Json::intValue, parsed("9223372036854775807").type());
    EXPECT_EQ(Json::uintValue, parsed("9223372036854775808").type());
    EXPECT_EQ(Json::realValue, parsed("18446744073709551616").type());
}

struct NestedTooDeep {};

TEST(SetRuntimeErrorHandler, LetsOutWhatTheHandlerThrows)
{
    const CapturedCout output;
    setRuntimeErrorHandler([] { throw NestedTooDeep(); });
    EXPECT_EQ("[[]]", writeString(parsed("[[]]")));
    EXPECT_THROW(parsed("/* a comment */" + std::string(1001, '[')), NestedTooDeep);
    EXPECT_EQ(R"({"a":1})", writeString(parsed(R"({"a":1})"))); // nothing is left of that text
    setRuntimeErrorHandler(std::abort);
    EXPECT_EQ("", output.text());
}

TEST(IsMember, TellsWhetherTheObjectHasTheKey)
{
    const CapturedCout output;
    const Json::Value value = parsed(R"({"a":null,"b":1})");
    EXPECT_TRUE(isMember(value, "a"));
    EXPECT_TRUE(isMember(value, "b"));
    EXPECT_FALSE(isMember(value, "c"));
    EXPECT_FALSE(isMember(value, "A"));
    EXPECT_FALSE(isMember(value, ""));
    EXPECT_EQ("", output.text());
}

TEST(IsMember, ComparesTheWholeKey)
{
    const Json::Value value = parsed(R"({"a\u0000b":1})");
    EXPECT_TRUE(isMember(value, std::string_view("a\0b", 3)));
    EXPECT_FALSE(isMember(value, "a"));
    EXPECT_FALSE(isMember(parsed(R"({"a":1})"), std::string_view("a\0b", 3)));
}

TEST(IsMember, OfNullIsFalseSilently)
{
    const CapturedCout output;
    EXPECT_FALSE(isMember(Json::Value(), "a"));
    EXPECT_EQ("", output.text());
}

TEST(IsMember, OfAValueWithoutMembersPrintsADiagnostic)
{
    for (const Json::Value& value : valuesWithoutMembers()) {
        const CapturedCout output;
        EXPECT_FALSE(isMember(value, "a"));
        EXPECT_EQ(kFindDiagnostic, output.text());
    }
}

TEST(Get, GivesTheMember)
{
    const CapturedCout output;
    const Json::Value value = parsed(R"({"a":5,"b":null})");
    EXPECT_EQ(&value["a"], &get(value, "a"));
    EXPECT_TRUE(get(value, "b").isNull());
    EXPECT_EQ("", output.text());
}

TEST(Get, GivesTheEmptyJsonStringForAMissingMember)
{
    const CapturedCout output;
    EXPECT_EQ(Json::Value(""), get(parsed("{}"), "a"));
    EXPECT_EQ(Json::Value(""), get(Json::Value(), "a"));
    EXPECT_EQ("", output.text());
}

TEST(Get, OfAValueWithoutMembersPrintsADiagnosticAndGivesTheEmptyJsonString)
{
    for (const Json::Value& value : valuesWithoutMembers()) {
        const CapturedCout output;
        EXPECT_EQ(Json::Value(""), get(value, "a"));
        EXPECT_EQ(kFindDiagnostic, output.text());
    }
}

TEST(GetMemberNames, ListsTheKeysInByteOrder)
{
    const CapturedCout output;
    EXPECT_EQ((std::vector<std::string>{"", "B", "a", "aa", "b", "\xC3\xA9"}),
              getMemberNames(parsed("{\"b\":1,\"aa\":2,\"\xC3\xA9\":3,\"B\":4,\"a\":5,\"\":6}")));
    EXPECT_TRUE(getMemberNames(parsed("{}")).empty());
    EXPECT_EQ("", output.text());
}

TEST(GetMemberNames, OfNullIsEmptySilently)
{
    const CapturedCout output;
    EXPECT_TRUE(getMemberNames(Json::Value()).empty());
    EXPECT_EQ("", output.text());
}

TEST(GetMemberNames, OfAValueWithoutMembersPrintsADiagnostic)
{
    for (const Json::Value& value : valuesWithoutMembers()) {
        const CapturedCout output;
        EXPECT_TRUE(getMemberNames(value).empty());
        EXPECT_EQ("Tarvik workaround: in Json::Value::getMemberNames(), value must be "
                  "objectValue\n",
                  output.text());
    }
}

TEST(RemoveMember, RemovesTheMemberIfThereIsOne)
{
    const CapturedCout output;
    Json::Value value = parsed(R"({"a":1,"b":2})");
    removeMember(value, "a");
    removeMember(value, "c");
    EXPECT_EQ(R"({"b":2})", writeString(value));
    EXPECT_EQ("", output.text());
}

TEST(RemoveMember, TakesTheKeyUpToItsFirstNul)
{
    // JsonCpp 1.9.7, and no other release, takes the whole key.
    const bool whole = JSONCPP_VERSION_PATCH == 7;
    Json::Value value = parsed(R"({"a":1,"a\u0000b":2})");
    removeMember(value, std::string("a\0b", 3));
    EXPECT_EQ(whole ? R"({"a":1})" : R"({"a\u0000b":2})", writeString(value));
}

TEST(RemoveMember, OfNullDoesNothingSilently)
{
    const CapturedCout output;
    Json::Value value;
    removeMember(value, "a");
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ("", output.text());
}

TEST(RemoveMember, OfAValueWithoutMembersPrintsADiagnosticAndLeavesIt)
{
    for (Json::Value value : valuesWithoutMembers()) { // NOLINT(performance-for-range-copy)
        const CapturedCout output;
        const Json::Value before = value;
        removeMember(value, "a");
        EXPECT_EQ(before, value);
        EXPECT_EQ("Tarvik workaround: in Json::Value::removeMember(): requires objectValue\n",
                  output.text());
    }
}

} // namespace
} // namespace eventsviewer::jsonaccess
