#include "jsonaccess/object_scan.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace eventsviewer::jsonaccess {

namespace {

using std::literals::operator""sv;

ObjectScan scanOf(std::string_view text)
{
    ObjectScan scan;
    scanObject(text, scan);
    return scan;
}

struct Row {
    std::string_view text;
    Fault fault;
    Fault stop;
    std::size_t end; // where the scan ends; 0 for the end of the text
};

constexpr Fault kNone = Fault::None;
constexpr Fault kCut = Fault::CutOff;
constexpr Fault kWrong = Fault::Syntax;

// clang-format off
const Row kRows[] = {
    {R"({})", kNone, kNone, 0},
    {R"({ "a" : "b" , "c":[ 1, {"d":[]} ,null ] } x)", kNone, kNone, 41},
    {R"({"a":true,"b":false})", kNone, kNone, 0},
    // escapes
    {R"({"a":"\"\\\/\b\f\n\r\t\u12aF"})", kNone, kNone, 0},
    {R"({"a":"\ud83d\uDE00"})", kNone, kNone, 0},
    {R"({"a":"\ud83d"})", kWrong, kNone, 0},
    {R"({"a":"\ud83d\n"})", kWrong, kNone, 0},
    {R"({"a":"\ud83d\u12"})", kWrong, kNone, 0},
    {R"({"a":"\ud83d\u0041"})", kWrong, kNone, 0},
    {R"({"a":"\ud83d\ue000"})", kWrong, kNone, 0},
    {R"({"a":"\ude00"})", kWrong, kNone, 0},
    {R"({"a":"\ue000"})", kNone, kNone, 0},
    {R"({"a":"\q"})", kWrong, kNone, 0},
    {R"({"a":"\u00g0"})", kWrong, kNone, 0},
    {R"({"a":"\)", kCut, kCut, 0},
    {R"({"a":"\u00)", kCut, kCut, 0},
    // numbers
    {R"({"a":[0,-0,10,-1,1.5,1e5,1E+5,1.5e-5]})", kNone, kNone, 0},
    {R"({"a":01})", kWrong, kNone, 0},
    {R"({"a":-})", kWrong, kNone, 0},
    {R"({"a":1.})", kWrong, kNone, 0},
    {R"({"a":-.5})", kWrong, kNone, 0},
    {R"({"a":1e})", kWrong, kNone, 0},
    {R"({"a":01e5})", kWrong, kNone, 0},
    {R"({"a":01.5})", kWrong, kNone, 0},
    {R"({"a":1e+})", kWrong, kNone, 0},
    {R"({"a":12)", kCut, kCut, 0},
    // literals
    {R"({"a":nul)", kCut, kCut, 0},
    {R"({"a":nul})", kWrong, kWrong, 5},
    {R"({"a":nux)", kWrong, kWrong, 5},
    {R"({"a":NaN})", kWrong, kWrong, 5},
    // what is between the tokens
    {R"({"a":1,})", kWrong, kWrong, 7},
    {R"({"a":1 "b":2})", kWrong, kWrong, 7},
    {R"({"a" 1})", kWrong, kWrong, 5},
    {R"({"a":[1,]})", kWrong, kWrong, 8},
    {R"({"a":[1 2]})", kWrong, kWrong, 8},
    {R"({"a":[1,)", kCut, kCut, 0},
    {R"({"a":[1)", kCut, kCut, 0},
    {R"({"a":[)", kCut, kCut, 0},
    {R"({"a":{)", kCut, kCut, 0},
    {R"({"a")", kCut, kCut, 0},
    {R"({"a":)", kCut, kCut, 0},
    {R"({"a)", kCut, kCut, 0},
    {R"({)", kCut, kCut, 0},
    {R"({/*c*/"a"/**/:1/*)", kWrong, kCut, 0},
    {"{//c\r\"a\":1}", kWrong, kNone, 0},
    {"{\"a\":1 //", kWrong, kCut, 0},
    {"{\"a\":1 /}", kWrong, kWrong, 7},
    {"{\0}"sv, Fault::ZeroBytes, Fault::ZeroBytes, 1},
    {"{\"a\":\xff}", Fault::NotUtf8, Fault::NotUtf8, 5},
    // what is in the strings
    {"{\"a\":\"b\0\"}"sv, Fault::ZeroBytes, kNone, 0},
    {"{\"a\":\"\t\"}", kWrong, kNone, 0},
    {"{\"a\":\"\xc3\xa9\x7f\"}", kNone, kNone, 0},
    {"{\"a\":\"\xc3(\"}", Fault::NotUtf8, kNone, 0},
    {"{\"\xff\":\"\0\"}"sv, Fault::NotUtf8, kNone, 0},
};
// clang-format on

} // namespace

TEST(ObjectScan, findsTheFirstFaultAndWhereTheObjectEnds)
{
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.text);
        const ObjectScan scan = scanOf(row.text);
        EXPECT_EQ(scan.fault, row.fault);
        EXPECT_EQ(scan.stop, row.stop);
        EXPECT_EQ(scan.end, row.end != 0 ? row.end : row.text.size());
    }
}

TEST(ObjectScan, acceptsAThousandLevelsAndNoMore)
{
    const auto nested = [](std::size_t arrays, const std::string& innermost) {
        return "{\"a\":" + std::string(arrays, '[') + innermost + std::string(arrays, ']') + '}';
    };
    EXPECT_EQ(scanOf(nested(999, "")).stop, Fault::None);
    EXPECT_EQ(scanOf(nested(998, "1")).stop, Fault::None);
    EXPECT_EQ(scanOf(nested(999, "1")).stop, Fault::TooDeep);
    EXPECT_EQ(scanOf(nested(100000, "")).stop, Fault::TooDeep);
}

TEST(ObjectScan, listsTheMembersOfTheObjectAndOfTheObjectsInIt)
{
    const ObjectScan scan = scanOf(R"({"id":1,"vars":{"a":"b","c":{"d":2}},"e":[{"f":3}],"g":"h)");
    std::string list;
    for (const ScannedMember& member : scan.members) {
        list += (member.isInner ? " " : "") + std::string(member.key) + '=' +
                std::string(member.value) + (member.isRead ? "\n" : " (not read)\n");
    }
    EXPECT_EQ(list, "id=1\nvars={\"a\":\"b\",\"c\":{\"d\":2}}\n a=b\n c={\"d\":2}\n"
                    "e=[{\"f\":3}]\ng=h (not read)\n");
}

TEST(ObjectScan, findsWhatLooksLikeMembersInAnyText)
{
    ObjectScan scan;
    findMembers("x\",\"a\" : \"1\\\"2\",b\"c\":3,\"d\":\"e\":\0\"f\":{\"g\":4]\"h\":\"i"sv, scan);
    findMembers("\"j\":", scan);
    findMembers("\"k\\", scan);
    std::string list;
    for (const ScannedMember& member : scan.members) {
        EXPECT_FALSE(member.isRead);
        list += std::string(member.key) + '=' + std::string(member.value) + '\n';
    }
    EXPECT_EQ(list, "a=1\\\"2\nc=3\nd=e\nf=\ng=4\nh=i\nj=\n");
}

} // namespace eventsviewer::jsonaccess
