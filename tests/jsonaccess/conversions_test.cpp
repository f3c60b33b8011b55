#include "jsonaccess/json_access.h"

#include "jsonaccess/parsed.h"
#include "support/captured_cout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace eventsviewer::jsonaccess {
namespace {

constexpr const char* kSignedRange = "Tarvik workaround: LargestInt out of Int range\n";
constexpr const char* kUnsignedRange = "Tarvik workaround: LargestUInt out of Int range\n";
constexpr const char* kRealRange = "Tarvik workaround: double out of Int range\n";
constexpr const char* kNoConversion = "Tarvik workaround: Value is not convertible to Int.\n";

void expectInt(std::int32_t number, const char* diagnostic, const Json::Value& value)
{
    SCOPED_TRACE(writeString(value));
    const CapturedCout output;
    EXPECT_EQ(number, asInt(value));
    EXPECT_EQ(diagnostic, output.text());
}

TEST(AsInt, TakesNullForZero)
{
    expectInt(0, "", Json::Value());
}

TEST(AsInt, TakesABooleanForZeroOrOne)
{
    expectInt(0, "", parsed("false"));
    expectInt(1, "", parsed("true"));
}

TEST(AsInt, TakesAnIntegerWithin32Bits)
{
    expectInt(684, "", parsed("684"));
    expectInt(-1, "", parsed("-1"));
    expectInt(INT32_MAX, "", parsed("2147483647"));
    expectInt(INT32_MIN, "", parsed("-2147483648"));
    expectInt(7, "", Json::Value(Json::UInt64{7}));
    expectInt(INT32_MAX, "", Json::Value(Json::UInt64{2147483647}));
}

TEST(AsInt, CutsALongerSignedIntegerToItsLow32Bits)
{
    expectInt(INT32_MIN, kSignedRange, parsed("2147483648"));
    expectInt(INT32_MAX, kSignedRange, parsed("-2147483649"));
    expectInt(-1, kSignedRange, parsed("4294967295"));
    expectInt(0, kSignedRange, parsed("4294967296"));
    expectInt(684, kSignedRange, parsed("4294967980"));
    expectInt(-1, kSignedRange, parsed("9223372036854775807"));
}

TEST(AsInt, CutsALongUnsignedIntegerToItsLow32Bits)
{
    expectInt(0, kUnsignedRange, parsed("9223372036854775808"));
    expectInt(-1, kUnsignedRange, parsed("18446744073709551615"));
    expectInt(INT32_MIN, kUnsignedRange, Json::Value(Json::UInt64{2147483648U}));
}

TEST(AsInt, TruncatesARealTowardsZero)
{
    expectInt(684, "", parsed("684.9"));
    expectInt(-684, "", parsed("-684.9"));
    expectInt(0, "", parsed("0.9"));
    expectInt(0, "", parsed("-0.9"));
    expectInt(1225, "", parsed("1.225e3"));
    expectInt(INT32_MAX, "", parsed("2147483647.0"));
    expectInt(INT32_MIN, "", parsed("-2147483648.0"));
}

TEST(AsInt, TakesTheNearestLimitForARealOutsideTheRange)
{
    using Limits = std::numeric_limits<double>;
    expectInt(INT32_MAX, kRealRange, parsed("1e12"));
    expectInt(INT32_MIN, kRealRange, parsed("-1e12"));
    expectInt(INT32_MAX, kRealRange, parsed("2147483648.0"));
    expectInt(INT32_MIN, kRealRange, parsed("-2147483649.0"));
    expectInt(INT32_MAX, kRealRange, Json::Value(Limits::infinity()));
    expectInt(INT32_MIN, kRealRange, Json::Value(-Limits::infinity()));
}

TEST(AsInt, TakesNotANumberForZero)
{
    expectInt(0, kRealRange, Json::Value(std::numeric_limits<double>::quiet_NaN()));
}

TEST(AsInt, ConvertsNoStringArrayOrObject)
{
    expectInt(0, kNoConversion, parsed("\"684\""));
    expectInt(0, kNoConversion, parsed("\"\""));
    expectInt(0, kNoConversion, parsed("[]"));
    expectInt(0, kNoConversion, parsed("[684]"));
    expectInt(0, kNoConversion, parsed("{}"));
    expectInt(0, kNoConversion, parsed("{\"id\":684}"));
}

TEST(AsInt, FlushesItsDiagnostic)
{
    const CapturedCout output;
    asInt(parsed("1"));
    EXPECT_EQ(0, output.flushes());
    asInt(parsed("[]"));
    EXPECT_EQ(1, output.flushes());
}

TEST(AsCString, GivesTheCharactersOfAString)
{
    const CapturedCout output;
    const Json::Value value = parsed("\"text\"");
    EXPECT_STREQ("text", asCString(value));
    EXPECT_STREQ("", asCString(Json::Value("")));
    EXPECT_EQ("", output.text());
}

TEST(AsCString, EndsAtTheFirstNul)
{
    const Json::Value value = parsed(R"("ab\u0000cd")");
    EXPECT_STREQ("ab", asCString(value));
}

TEST(AsCString, OfAnyOtherValuePrintsADiagnosticAndGivesANullPointer)
{
    for (const char* const text : {"null", "0", "7", "-1", "7.5", "true", "false", "[]", "{}",
                                   "9223372036854775808", "[\"a\"]"}) {
        SCOPED_TRACE(text);
        const CapturedCout output;
        EXPECT_EQ(nullptr, asCString(parsed(text)));
        EXPECT_EQ("Tarvik workaround: in Json::Value::asCString(): requires stringValue\n",
                  output.text());
        EXPECT_EQ(1, output.flushes());
    }
}

TEST(AsCString, IsSilentOnAFailedStream)
{
    const CapturedCout output;
    std::cout.setstate(std::ios_base::failbit);
    EXPECT_EQ(nullptr, asCString(parsed("7")));
    std::cout.clear();
    EXPECT_EQ("", output.text());
}

} // namespace
} // namespace eventsviewer::jsonaccess
