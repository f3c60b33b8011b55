#include "describe/variables.h"

#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer {
namespace {

constexpr const char* kNotAText =
    "Tarvik workaround: in Json::Value::asCString(): requires stringValue\n";

// The same variables, read by the scan and, because of the number or the comment, by the library.
constexpr const char* kDetails[] = {
    R"({"a":"text","b":""})",
    R"({"a":"text","b":"","n":1})",
    R"({"a":"text"/**/,"b":""})",
};

TEST(Variables, GiveTheTextOfAVariable)
{
    for (const char* const details : kDetails) {
        const CapturedCout output;
        const Variables variables(details);
        EXPECT_TRUE(variables.isText("a"));
        EXPECT_EQ("text", variables.text("a"));
        EXPECT_TRUE(variables.isText("b"));
        EXPECT_EQ("", variables.text("b"));
        EXPECT_EQ("", output.text());
    }
}

TEST(Variables, AreEmptyIfMissing)
{
    for (const char* const details : kDetails) {
        const CapturedCout output;
        const Variables variables(details);
        EXPECT_FALSE(variables.isText("c"));
        EXPECT_EQ("", variables.text("c"));
        EXPECT_EQ("", output.text());
    }
}

TEST(Variables, AreEmptyAndPrintADiagnosticIfTheyAreNotStrings)
{
    for (const char* const value : {"1", "1.5", "true", "null", "[\"x\"]", "{}", "{\"x\":\"y\"}"}) {
        const std::string details = std::string("{\"a\":") + value + "}";
        const Variables variables(details);
        const CapturedCout output;
        EXPECT_FALSE(variables.isText("a")) << value;
        EXPECT_EQ("", output.text()) << value;
        EXPECT_EQ("", variables.text("a")) << value;
        EXPECT_EQ(kNotAText, output.text()) << value;
    }
}

TEST(Variables, EndAtTheirFirstNul)
{
    const Variables variables(R"({"a":"x\u0000y"})");
    EXPECT_EQ("x", variables.text("a"));
}

TEST(Variables, AreThoseBeforeTheBreak)
{
    const CapturedCout output;
    const Variables variables(R"({"a":"x","b":)");
    EXPECT_NE("", output.text());
    EXPECT_EQ("x", variables.text("a"));
    EXPECT_FALSE(variables.isText("b"));
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(Variables, AreGivenAllInTheOrderOfTheKeys)
{
    EXPECT_EQ((Pairs{{"a", "text"}, {"b", ""}}), Variables(kDetails[0]).all());
    EXPECT_EQ((Pairs{{"a", "text"}, {"b", ""}, {"n", "1"}}), Variables(kDetails[1]).all());
    EXPECT_EQ((Pairs{{"a", "text"}, {"b", ""}}), Variables(kDetails[2]).all());
    EXPECT_EQ((Pairs{{"a", R"([{"x":null},"y"])"}, {"b", "z"}}),
              Variables(R"({"b":"z\u0000y","a":[{"x":null},/*c*/"y"]})").all());
}

TEST(Variables, AreJsonWithoutComments)
{
    std::string made;
    EXPECT_EQ(kDetails[0], Variables(kDetails[0]).json(made));
    EXPECT_EQ(kDetails[1], Variables(kDetails[1]).json(made));
    EXPECT_EQ(kDetails[0], Variables(kDetails[2]).json(made));
    for (const char* const comment : {" /**/", "//{}", " /*c*/\n// }"}) {
        const std::string details = std::string(kDetails[0]) + comment;
        EXPECT_EQ(kDetails[0], Variables(details).json(made)) << comment;
    }
}

TEST(Variables, AreNoneIfTheDetailsAreNotAnObject)
{
    std::string made;
    for (const char* const details : {"", "7", "[\"a\"]", "\"a\""}) {
        const CapturedCout output;
        const Variables variables(details);
        EXPECT_EQ(Pairs{}, variables.all()) << details;
        EXPECT_EQ("{}", variables.json(made)) << details;
        EXPECT_EQ("", variables.firstTextKey([](std::string_view) { return true; })) << details;
    }
}

TEST(Variables, HaveAFirstKeyOfAString)
{
    const auto any = [](std::string_view) { return true; };
    const auto notA = [](std::string_view key) { return key != "a"; };
    const auto none = [](std::string_view) { return false; };
    for (const char* const details : kDetails) {
        EXPECT_EQ("a", Variables(details).firstTextKey(any)) << details;
        EXPECT_EQ("b", Variables(details).firstTextKey(notA)) << details;
        EXPECT_EQ("", Variables(details).firstTextKey(none)) << details;
    }
    EXPECT_EQ("b", Variables(R"({"a":1,"b":"x","c":"y"})").firstTextKey(any));
    EXPECT_EQ("", Variables(R"({"a":1})").firstTextKey(any));
}

} // namespace
} // namespace eventsviewer
