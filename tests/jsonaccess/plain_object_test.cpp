#include "jsonaccess/plain_object.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer::jsonaccess {
namespace {

bool isPlain(std::string_view text)
{
    const std::vector<char> exact(text.begin(), text.end());
    return readPlainObject({exact.data(), exact.size()}).has_value();
}

// What is left of `text` after the object, or where it is refused.
std::string restOf(std::string_view text)
{
    const char* end = nullptr;
    readPlainObject(text, &end);
    return std::string(end, text.data() + text.size());
}

std::string written(std::string_view object)
{
    std::string json = "left over";
    const auto members = readPlainTexts(object);
    EXPECT_TRUE(members.has_value()) << object;
    writeTexts(members.value_or(PlainMembers()), json);
    return json;
}

TEST(ReadPlainObject, GivesTheMembersAsSpansOfTheText)
{
    const std::string_view line = R"({"id":1228,"time":"Nov 20","vars":{"a":"1","b":""}} end)";
    const auto object = readPlainObject(line);
    ASSERT_TRUE(object.has_value());
    EXPECT_EQ(" end", restOf(line));

    const PlainMember* const id = object->members.find("id");
    ASSERT_NE(nullptr, id);
    EXPECT_EQ(PlainKind::Number, id->kind);
    EXPECT_EQ(1228, id->number);
    const PlainMember* const time = object->members.find("time");
    ASSERT_NE(nullptr, time);
    EXPECT_EQ(PlainKind::Text, time->kind);
    EXPECT_EQ("Nov 20", time->text);
    EXPECT_EQ(line.data() + line.find("Nov"), time->text.data());
    const PlainMember* const variables = object->members.find("vars");
    ASSERT_NE(nullptr, variables);
    EXPECT_EQ(PlainKind::Object, variables->kind);
    ASSERT_NE(nullptr, object->inner.find("a"));
    EXPECT_EQ("1", object->inner.find("a")->text);
    EXPECT_EQ("", object->inner.find("b")->text);
    EXPECT_EQ(nullptr, object->inner.find("c"));
    EXPECT_EQ(nullptr, object->members.find("a"));
}

TEST(ReadPlainObject, TakesWhatLogsAreMadeOf)
{
    EXPECT_TRUE(isPlain("{}"));
    EXPECT_TRUE(isPlain("{ }"));
    EXPECT_TRUE(isPlain(R"({ "id" : 7 , "vars" : { "a" : "b" } , "time" : "t" })"));
    EXPECT_TRUE(isPlain(R"({"vars":{},"id":0})"));
    EXPECT_TRUE(isPlain(R"({"id":000000007})"));
    EXPECT_TRUE(isPlain(R"({"id":123456789})"));
    EXPECT_TRUE(isPlain(R"({"":"","a b":"/* {[,:]} */ ~"})"));
    EXPECT_TRUE(isPlain("{\"id\":7}\r"));
    EXPECT_TRUE(isPlain("{\"id\":7}\x01\xFF"));
}

TEST(ReadPlainObject, TakesLinesOfEveryLength)
{
    // Characters are checked several bytes at a time, except near the end.
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string text =
            "{\"" + std::string(length, 'k') + "\":\"" + std::string(length, 't');
        EXPECT_TRUE(isPlain(text + "\"}")) << length;
        for (const char odd : {'\\', '\x1f', '\t', '\0', '\x80', '\xff'}) {
            EXPECT_FALSE(isPlain(text + odd + "\"}")) << length;
            EXPECT_FALSE(isPlain(text + odd + "1234567\"}")) << length;
        }
    }
}

TEST(ReadPlainObject, TakesAsciiFromSpaceOnAndNothingElseInATextAndAKey)
{
    for (int byte = 0; byte < 256; ++byte) {
        const bool plain = byte >= 0x20 && byte <= 0x7f && byte != '"' && byte != '\\';
        for (std::size_t before = 0; before < 20; ++before) {
            std::string characters(20, 'x');
            characters[before] = static_cast<char>(byte);
            EXPECT_EQ(plain, isPlain("{\"a\":\"" + characters + "\"}")) << byte;
            EXPECT_EQ(plain, isPlain("{\"" + characters + "\":\"a\"}")) << byte;
        }
    }
}

TEST(ReadPlainObject, RefusesWhatOnlyTheLibraryCanTell)
{
    for (const char* const text : {"",
                                   "{",
                                   "x",
                                   "[]",
                                   "{]",
                                   R"({"a"})",
                                   R"({"a":})",
                                   R"({"a" "b"})",
                                   R"({a:"b"})",
                                   R"({"a":"b",})",
                                   R"({"a":"b")",
                                   R"({"a":"b" "c":"d"})",
                                   R"({,"a":"b"})",
                                   R"({"a":"b}))",
                                   R"({"a":-1})",
                                   R"({"a":+1})",
                                   R"({"a":1.0})",
                                   R"({"a":1e3})",
                                   R"({"a":1234567890})",
                                   R"({"a":0000000001})",
                                   R"({"a":1x})",
                                   R"({"a":null})",
                                   R"({"a":true})",
                                   R"({"a":[]})",
                                   R"({"a":"\u0041"})",
                                   R"({"a":"b"/**/})",
                                   R"({/**/"a":"b"})",
                                   R"({"a"://
"b"})",
                                   R"({"a":{"b":1}})",
                                   R"({"a":{"b":{}}})",
                                   R"({"a":{},"b":{}})",
                                   "{\t}",
                                   "{\"a\":\"\t\"}"}) {
        EXPECT_FALSE(isPlain(text)) << text;
    }
}

TEST(ReadPlainObject, StopsAtTheFirstByteThatIsNotPlain)
{
    EXPECT_EQ("", restOf(R"({"a":"b)"));
    EXPECT_EQ("-1}", restOf(R"({"a":-1})"));
    EXPECT_EQ("x}", restOf(R"({"a":1x})"));
    EXPECT_EQ("\\n\"}", restOf(R"({"a":"b\n"})"));
    EXPECT_EQ("}", restOf(R"({"a":"b",})"));
    EXPECT_EQ("{}}", restOf(R"({"a":{},"b":{}})"));
}

TEST(ReadPlainObject, TakesTwelveMembersAtMost)
{
    std::string members = R"("a":1)";
    for (std::size_t count = 1; count < PlainMembers::kMost; ++count) {
        members += R"(,"a":1)";
    }
    EXPECT_TRUE(isPlain('{' + members + '}'));
    EXPECT_FALSE(isPlain('{' + members + R"(,"a":1})"));
}

TEST(ReadPlainObject, TakesNoLongerObjectThan64KiB)
{
    const std::string begin = "{\"a\":\"";
    const std::string end = "\"}";
    const std::string text(65536 - begin.size() - end.size(), 'x');
    EXPECT_TRUE(isPlain(begin + text + end));
    EXPECT_TRUE(isPlain(begin + text + end + "after it"));
    EXPECT_FALSE(isPlain(begin + text + 'x' + end));
}

TEST(ReadPlainTexts, TakesAnObjectOfStringsOnly)
{
    const auto isOfTexts = [](std::string_view text) { return readPlainTexts(text).has_value(); };
    EXPECT_TRUE(isOfTexts("{}"));
    EXPECT_TRUE(isOfTexts(R"({"a":"b"} x)"));
    EXPECT_FALSE(isOfTexts(R"({"a":1})"));
    EXPECT_FALSE(isOfTexts(R"({"a":{}})"));
    EXPECT_FALSE(isOfTexts(R"({"a":"b")"));
}

TEST(PlainMembers, AnswerWithTheLastOfSeveral)
{
    const std::string_view text = R"({"a":"first","b":"x","a":"last"})";
    const auto members = readPlainTexts(text);
    ASSERT_TRUE(members.has_value());
    EXPECT_EQ("last", members->find("a")->text);
    EXPECT_EQ("x", members->find("b")->text);
    EXPECT_EQ(nullptr, members->find(""));
}

TEST(WriteTexts, SortsTheKeysByTheirBytesAndKeepsTheLastOfSeveral)
{
    EXPECT_EQ("{}", written("{ }"));
    EXPECT_EQ(
        R"({"":"e","A":"d","a":"longer than before","aa":"c","b":"b"})",
        written(R"({ "b" : "b", "aa":"c","A":"d", "a":"a","":"e", "a":"longer than before"})"));
    EXPECT_EQ(R"({"a":"b c"})", written(R"({"a":"b","a":"b c"} {"d":"e"})"));
}

} // namespace
} // namespace eventsviewer::jsonaccess
