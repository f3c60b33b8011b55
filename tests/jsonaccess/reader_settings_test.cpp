// Each setting of the reader, as the parsed value and the output show it.

#include "jsonaccess/json_access.h"

#include "support/captured_cout.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <string>

namespace eventsviewer::jsonaccess {
namespace {

/// Expects that `text` parses silently to the value that is written as `written`.
void expectParsed(const std::string& text, const std::string& written)
{
    SCOPED_TRACE(text);
    const CapturedCout output;
    Json::Value root;
    parse(text, root);
    EXPECT_EQ("", output.text());
    EXPECT_EQ(written, writeString(root));
}

/// Expects that `text` breaks with `error`, and that what is kept is written as `written`.
void expectBroken(const std::string& text, const std::string& error, const std::string& written)
{
    SCOPED_TRACE(text);
    const CapturedCout output;
    Json::Value root;
    parse(text, root);
    EXPECT_EQ("Tarvik workaround: error occured in IStream in JsonCpp:" + error + "\n",
              output.text());
    EXPECT_EQ(written, writeString(root));
}

constexpr const char* kNoValueAtColumn2 =
    "* Line 1, Column 2\n  Syntax error: value, object or array expected.\n";

TEST(ReaderSettings, TakeACommaBeforeAClosingBraceForAnError)
{
    expectBroken(R"({"a":1,})", "* Line 1, Column 8\n  Missing '}' or object member name\n",
                 R"({"a":1})");
}

TEST(ReaderSettings, TakeACommaBeforeAClosingBracketForAnError)
{
    expectBroken("[1,]", "* Line 1, Column 4\n  Syntax error: value, object or array expected.\n",
                 "[1,null]");
}

TEST(ReaderSettings, DoNotSkipAByteOrderMark)
{
    expectBroken("\xEF\xBB\xBF{}",
                 "* Line 1, Column 1\n  Syntax error: value, object or array expected.\n", "null");
}

TEST(ReaderSettings, AllowComments)
{
    expectParsed("{\"a\":1, /* one */ \"b\":2} // two", R"({"a":1, /* one */"b":2} // two)");
}

TEST(ReaderSettings, CollectCommentsIntoTheValue)
{
    Json::Value root;
    parse("/* before */ {\"a\":1 /* after */}", root);
    EXPECT_EQ("/* before */", root.getComment(Json::commentBefore));
    EXPECT_EQ("/* after */", root["a"].getComment(Json::commentAfterOnSameLine));
}

TEST(ReaderSettings, AllowAnyValueAsRoot)
{
    expectParsed("5", "5");
    expectParsed("\"text\"", "\"text\"");
    expectParsed("true", "true");
    expectParsed("null", "null");
    expectParsed("[]", "[]");
}

TEST(ReaderSettings, TakeADroppedNullForAnError)
{
    expectBroken("[,1]", kNoValueAtColumn2, "[null]");
    expectBroken(R"({"a":})",
                 "* Line 1, Column 6\n  Syntax error: value, object or array expected.\n",
                 R"({"a":null})");
}

TEST(ReaderSettings, TakeANumericKeyForAnError)
{
    expectBroken("{1:2}", "* Line 1, Column 2\n  Missing '}' or object member name\n", "{}");
}

TEST(ReaderSettings, TakeSingleQuotesForAnError)
{
    expectBroken("['a']", kNoValueAtColumn2, "[null]");
    expectBroken("{'a':1}", "* Line 1, Column 2\n  Missing '}' or object member name\n", "{}");
}

TEST(ReaderSettings, TakeSpecialFloatsForErrors)
{
    expectBroken("[NaN]", kNoValueAtColumn2, "[null]");
    expectBroken("[Infinity]", kNoValueAtColumn2, "[null]");
    expectBroken("[-Infinity]", kNoValueAtColumn2, "[null]");
}

TEST(ReaderSettings, IgnoreWhatFollowsTheFirstValue)
{
    expectParsed(R"({"a":1}{"b":2})", R"({"a":1})");
    expectParsed("{} and more", "{}");
    expectParsed("{}\r", "{}");
}

TEST(ReaderSettings, KeepTheLaterValueOfARepeatedKey)
{
    expectParsed(R"({"a":1,"b":2,"a":3})", R"({"a":3,"b":2})");
}

std::string nestedArrays(std::size_t depth)
{
    return std::string(depth, '[') + std::string(depth, ']');
}

std::string nestedObjects(std::size_t depth)
{
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) {
        text += "{\"a\":";
    }
    return text + "0" + std::string(depth, '}');
}

TEST(ReaderSettings, Allow1000LevelsOfNesting)
{
    expectParsed(nestedArrays(1000), nestedArrays(1000));
    expectParsed(nestedObjects(999), nestedObjects(999));
}

void expectAbort(const std::string& text)
{
    const ChildResult result = runInChild([&text] {
        std::printf("not flushed yet");
        Json::Value root;
        parse(text, root);
        return 0;
    });
    EXPECT_EQ(SIGABRT, result.signal);
    EXPECT_EQ("", result.standardOutput);
    EXPECT_EQ("", result.standardError);
}

TEST(Parse, AbortsSilentlyAt1001LevelsAndFlushesNothing)
{
    expectAbort(nestedArrays(1001));
    expectAbort(nestedObjects(1001));
}

TEST(Parse, AbortsAlsoIfTheInputIsBrokenAfterTheLimit)
{
    expectAbort(std::string(1001, '['));
}

} // namespace
} // namespace eventsviewer::jsonaccess
