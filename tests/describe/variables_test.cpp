#include "describe/variables.h"

#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <string>

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

} // namespace
} // namespace eventsviewer
