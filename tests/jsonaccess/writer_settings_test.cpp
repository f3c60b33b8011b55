// Each setting of the writer, as the output shows it.

#include "jsonaccess/json_access.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

namespace eventsviewer::jsonaccess {
namespace {

std::string rewritten(std::string_view text)
{
    Json::Value root;
    parse(text, root);
    return writeString(root);
}

TEST(WriteString, PutsNoSpaceBetweenTheTokens)
{
    EXPECT_EQ(
        R"({"a":[1,true,null,"x"],"b":{"c":{},"d":[]}})",
        rewritten(R"( { "a" : [ 1 , true , null , "x" ] , "b" : { "c" : { } , "d" : [ ] } })"));
}

TEST(WriteString, ForgetsWhatItWroteBefore)
{
    EXPECT_EQ(R"({"long":"text"})", rewritten(R"({"long":"text"})"));
    EXPECT_EQ("1", rewritten("1"));
}

TEST(WriteString, PutsNoNewlineAtTheEnd)
{
    EXPECT_EQ("{}", rewritten("{}\n"));
}

TEST(WriteString, SortsTheKeysByTheirBytes)
{
    EXPECT_EQ(R"({"A":1,"B":2,"_":3,"a":4,"aa":5,"b":6})",
              rewritten(R"({"b":6,"aa":5,"a":4,"_":3,"B":2,"A":1})"));
}

TEST(WriteString, EscapesWhatIsNotAscii)
{
    EXPECT_EQ(R"({"k\u00e9y":"\u00e9 \u20ac \ud83d\ude00"})",
              rewritten("{\"k\xC3\xA9y\":\"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\"}"));
}

TEST(WriteString, WritesIllFormedUtf8AsTheReplacementCharacter)
{
    EXPECT_EQ(R"({"a":"x\ufffdy"})", rewritten("{\"a\":\"x\xFFy\"}"));
}

TEST(WriteString, EscapesControlCharactersQuotesAndBackslashes)
{
    EXPECT_EQ(R"("\u0001\"\\/\b\f\n\r\t\u0000.")", rewritten(R"("\u0001\"\\\/\b\f\n\r\t\u0000.")"));
}

TEST(WriteString, GivesRealsSeventeenSignificantDigits)
{
    EXPECT_EQ("0.10000000000000001", rewritten("0.1"));
    EXPECT_EQ("100.09999999999999", rewritten("100.1"));
    EXPECT_EQ("1.0000000000000001e-05", rewritten("1e-5"));
}

TEST(WriteString, TellsARealFromAnInteger)
{
    EXPECT_EQ("1.0", rewritten("1.0"));
    EXPECT_EQ("1", rewritten("1"));
}

TEST(WriteString, WritesNoSpecialFloats)
{
    using Limits = std::numeric_limits<double>;
    EXPECT_EQ("null", writeString(Json::Value(Limits::quiet_NaN())));
    EXPECT_EQ("1e+9999", writeString(Json::Value(Limits::infinity())));
    EXPECT_EQ("-1e+9999", writeString(Json::Value(-Limits::infinity())));
}

TEST(WriteString, WritesNulls)
{
    EXPECT_EQ(R"({"a":null,"b":[null,null]})", rewritten(R"({"a":null,"b":[null,null]})"));
}

TEST(WriteString, KeepsComments)
{
    EXPECT_EQ(R"({"a":1 /* one */})", rewritten(R"({"a":1 /* one */})"));
    EXPECT_EQ(R"({/* one */"a":1})", rewritten(R"({"a": /* one */ 1})"));
}

TEST(WriteString, DoesNotEndTheLineAfterALineComment)
{
    // What follows has become part of the comment.
    EXPECT_EQ("{\"a\":1 // one}", rewritten("{\"a\":1 // one\n}"));
}

TEST(WriteWithoutComments, LeavesThemOutAndNothingElse)
{
    Json::Value root;
    parse("{/*a*/\"k\":/*b*/[1,//c\n\"x/*d*/\",null,0.1,{}]/*e*/}/*f*/", root);
    EXPECT_EQ(R"({"k":[1,"x/*d*/",null,0.10000000000000001,{}]})", writeWithoutComments(root));
    EXPECT_NE(writeString(root), writeWithoutComments(root));
    // JsonCpp before 1.9.3 does not look at such a string where char is unsigned.
    const bool asItIs = JSONCPP_VERSION_PATCH < 3 && JSONCPP_CHAR_IS_UNSIGNED;
    EXPECT_EQ(asItIs ? "\"\xC3\xA9\xFF\"" : R"("\u00e9\ufffd")",
              writeWithoutComments(Json::Value("\xC3\xA9\xFF")));
    EXPECT_EQ("1e+9999",
              writeWithoutComments(Json::Value(std::numeric_limits<double>::infinity())));
}

} // namespace
} // namespace eventsviewer::jsonaccess
