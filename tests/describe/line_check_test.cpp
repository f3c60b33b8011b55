#include "describe/line_check.h"

#include "describe/describe_event.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace eventsviewer {

namespace {

using std::literals::operator""sv;

// The finding in `object`, which gives the event 1228 with these variables, as one string.
std::string findingIn(std::string_view object, std::string_view time = "t",
                      std::string_view details = "{}")
{
    const Variables variables(details);
    const LineEvent event = {1228, time, variables, findDescription(1228)};
    const auto finding = findingOf(object, &event);
    return finding ? finding->kind + (": " + finding->effect) : "";
}

} // namespace

TEST(LineCheck, findsNothingInASoundLine)
{
    EXPECT_EQ(
        findingIn(R"({"id":1228,"time":"t","vars":{"inet_id":"7"}} )", "t", R"({"inet_id":"7"})"),
        "");
    EXPECT_EQ(findingIn(R"({"id":-2147483648,"time":"","other":[1],"vars":{}})"), "");
    EXPECT_EQ(findingIn("{\"id\":1228}\r\0"sv), "");
}

TEST(LineCheck, tellsACodeFromOtherValues)
{
    const std::string wrong =
        "wrong type: the code is not a whole number of 32 bits and reads as 1228";
    EXPECT_EQ(findingIn(R"({"id":2147483647})"), "");
    EXPECT_EQ(findingIn(R"({"id":2147483648})"), wrong);
    EXPECT_EQ(findingIn(R"({"id":-2147483649})"), wrong);
    EXPECT_EQ(findingIn(R"({"id":100000000000})"), wrong);
    EXPECT_EQ(findingIn(R"({"id":1.0})"), wrong);
    EXPECT_EQ(findingIn(R"({"id":{}})"), wrong);
}

TEST(LineCheck, namesASecondEvent)
{
    const std::string second = "more than one object: a second event";
    EXPECT_EQ(findingIn(R"({"id":1228}{"id":4,"time":"a","id":5,"time":"b","vars":{"id":"6"}})"),
              second + " (5, b) is not shown");
    EXPECT_EQ(findingIn(R"({"id":1228}{"id":5,"ti)"), second + " (5) is not shown");
    EXPECT_EQ(findingIn(R"({"id":1228}{"id":)"), second + " is not shown");
    EXPECT_EQ(findingIn(R"({"id":1228}{"id":")" + std::string(50, 'x') + R"("})"),
              second + " (" + std::string(40, 'x') + "...) is not shown");
}

TEST(LineCheck, comparesWhatALineSaysWithItsEvent)
{
    EXPECT_EQ(findingIn(R"({"id":1228,"time":"t"}{"x":1})"),
              "more than one object: the value of x is lost; what follows is lost");
    EXPECT_EQ(findingIn(R"({"id":1228,"time":"t"}{})"), "more than one object: nothing is lost");
    EXPECT_EQ(findingIn("{\"id\":1228,\"time\":\"ab\xff\"}", "ab\xff"),
              "not UTF-8: the value of time is changed");
    EXPECT_EQ(findingIn("{\"id\":1228,\"time\":\"\xf0"
                        "abcd\"}",
                        "\u0822d"),
              "not UTF-8: the value of time is changed");
    EXPECT_EQ(findingIn("{\"id\":1228,\"time\":\"a\0b\"}"sv, "a"),
              "zero bytes: the value of time ends at a zero byte; "
              "what was in the place of zero bytes is lost");
    EXPECT_EQ(findingIn("{\"id\":1228,\"ti\0me\":\"t\"}"sv, ""),
              "zero bytes: a name is changed; what was in the place of zero bytes is lost");
    EXPECT_EQ(findingIn(R"({"id":1228,"vars":{"inet_id":"7","po)", "", R"({"inet_id":"7"})"),
              "cut off: what followed inet_id is lost");
    EXPECT_EQ(findingIn("{"), "cut off: what followed is lost");
    EXPECT_EQ(findingIn(R"({"id":1228,"vars":)", ""),
              "cut off: the value of vars is lost; what followed is lost");
    EXPECT_EQ(findingIn(R"({"id":01228,"\u0061":"t","x":1})", ""),
              "syntax error: the code may be wrong; the values of \\u0061 and x are lost");
    EXPECT_EQ(findingIn(R"({"id":1228,"a":0,"b":0,"c":0,"d":0,"e":0,"f":0,"g":0,"h":0,"i":0,)"
                        R"("j":0,"k":0,"l":0,"m":0} 7)"),
              "syntax error: the values of a, b, c, d, e, f, g, h, i, j, k, l and others are lost; "
              "what follows is lost");
}

} // namespace eventsviewer
