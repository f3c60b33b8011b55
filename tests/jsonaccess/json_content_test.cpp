#include "jsonaccess/json_content.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace eventsviewer::jsonaccess {
namespace {

std::string jsonOf(std::string_view json)
{
    std::string copy(mostJsonBytes(json.size()), '\0');
    copy.resize(static_cast<std::size_t>(putJson(copy.data(), json) - copy.data()));
    return copy;
}

TEST(FirstCharacter, IsAByteWhereItIsNotUtf8)
{
    constexpr std::string_view kNotUtf8[] = {
        "\x80",
        "\xbf", // not the first of a character
        "\xc0\x80",
        "\xc1\xbf",
        "\xe0\x9f\xbf",
        "\xf0\x8f\xbf\xbf", // longer than needed
        "\xf4\x90\x80\x80",
        "\xf5\x80\x80\x80",
        "\xff\xbf\xbf\xbf", // above U+10FFFF
        "\xed\xa0\x80",
        "\xed\xbf\xbf", // half a character
        "\xc3",
        "\xe2\x82",
        "\xf0\x9f\x98", // cut off
        "\xc3(",
        "\xe2\x82(",
        "\xe2(\xa1",
        "\xf0\x9f\x98\xc0",
    };
    for (const std::string_view text : kNotUtf8) {
        const Character character = firstCharacter(text);
        EXPECT_EQ(static_cast<unsigned char>(text[0]), character.code) << text;
        EXPECT_EQ(1U, character.bytes) << text;
        EXPECT_FALSE(character.valid) << text;
        EXPECT_FALSE(character.safe) << text;
        EXPECT_EQ("\\ufffd", jsonContent(text).substr(0, 6)) << text;
    }
}

TEST(FirstCharacter, IsSafeUnlessItControlsATerminalOrTheDirectionOrEndsALine)
{
    const std::pair<std::string_view, bool> kCharacters[] = {
        {"\x1f", false},
        {" ", true},
        {"~", true},
        {"\x7f", false},
        {"\xc2\x80", false},
        {"\xc2\x9f", false},
        {"\xc2\xa0", true},
        {"\xd8\x9b", true},
        {"\xd8\x9c", false},
        {"\xe2\x80\x8d", true},
        {"\xe2\x80\x8e", false},
        {"\xe2\x80\x8f", false},
        {"\xe2\x80\xa7", true},
        {"\xe2\x80\xa8", false},
        {"\xe2\x80\xa9", false},
        {"\xe2\x80\xaa", false},
        {"\xe2\x80\xae", false},
        {"\xe2\x80\xaf", true},
        {"\xe2\x81\xa5", true},
        {"\xe2\x81\xa6", false},
        {"\xe2\x81\xa9", false},
        {"\xe2\x81\xaa", true},
        {"\xe0\xa0\x80", true},
        {"\xef\xbf\xbf", true},
        {"\xf0\x90\x80\x80", true},
        {"\xf4\x8f\xbf\xbf", true},
    };
    for (const auto& [text, safe] : kCharacters) {
        const Character character = firstCharacter(text);
        EXPECT_TRUE(character.valid) << text;
        EXPECT_EQ(text.size(), character.bytes) << text;
        EXPECT_EQ(safe, character.safe) << text;
        EXPECT_EQ(safe, jsonContent(text) == text) << text;
        EXPECT_EQ(safe, jsonOf(text) == text) << text;
    }
}

TEST(JsonContent, EscapesAQuoteAndABackslashWhereverTheyAre)
{
    for (std::size_t before = 0; before < 20; ++before) {
        const std::string plain(before, 'x');
        EXPECT_EQ(plain + R"(\"y)", jsonContent(plain + "\"y"));
        EXPECT_EQ(plain + R"(\\y\n)", jsonContent(plain + "\\y\n"));
        EXPECT_EQ(plain + R"("\y)", jsonOf(plain + R"("\y)"));
        EXPECT_EQ(plain + R"(\u007fyyyyyyyy)", jsonOf(plain + "\x7fyyyyyyyy"));
    }
}

} // namespace
} // namespace eventsviewer::jsonaccess
