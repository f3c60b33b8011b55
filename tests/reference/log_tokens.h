// What the mutator puts into the lines of a log. Most of it is here because the JSON library, or
// the fast path that avoids the library, treats it specially.

#pragma once

#include <string_view>
#include <vector>

namespace eventsviewer::reference {

using namespace std::string_view_literals;

// clang-format off

/// What may follow "id": numbers inside and outside every limit, and what is not a number.
inline const std::vector<std::string_view> kIdValues = {
    "0", "5", "1228", "001229", "999999999", "1000000000", "0000001229", "12292222222",
    "2147483647", "2147483648", "4294967296", "4294967297", "-1", "-2147483648", "-2147483649",
    "9223372036854775807", "9223372036854775808", "18446744073709551616", "NaN", "Infinity",
    "1.9", "1228.", "684.9", "1e3", "1e12", "-1e12", "1e400", "12e", "0x10", "1229x", "+1229", "--1",
    "12 29", "1 229", "1229\t", "1229\0"sv, "\x0b" "1229", "1229:", "1229]", "'1229'", "\"1229\"",
    "1229/**/", "1229//", "/*c*/1229", "null", "true", "false", "nul", "", "[]", "[1229]", "{}",
    "{\"id\":5}", "{\"id\":\"x\"}",
};

/// What any member may have for a value that can be read without the library, or nearly so.
inline const std::vector<std::string_view> kPlainValues = {
    "7", "001228", "999999999", "1000000000", "\"\"", "\"1228\"", "\"{\"", "{}", "{ }", "{\"a\":\"1\"}",
    "{\"b\":\"1\",\"a\":\"2\",\"b\":\"3\"}", "{\"a\":1}", "{\"a\":\"1\",}", "{\"\":\"\",}",
};

/// What may replace the key "id": other spellings of it, and near misses.
inline const std::vector<std::string_view> kIdKeys = {
    "\"id\"", "\"\\u0069d\"", "\"i\\u0064\"", "\"\\u0069\\u0064\"", "\"\\u006\"", "\"\\u00069d\"",
    "\"\\U0069d\"", "\"\\u0069d", "\"id \"", "\"ID\"", "\"Id\"", "id", "'id'", "\"id", "\"id\0\""sv,
    "\"i\\d\"", "\"\\id\"", "\"i\" /**/ \"d\"", "/**/\"id\"", "\"id\"/**/",
};

/// Whitespace; the library does not skip \x0b and \x0c. None is the usual case.
inline const std::vector<std::string_view> kWhitespace = {
    "", "", "", " ", "  ", "\t", "\r", "\x0b", "\x0c",
};

/// What may replace the colon after a key.
inline const std::vector<std::string_view> kNoColons = {
    "", " ", "::", "=", ",", ":,", "\0"sv, ":\0"sv, "/**/", ":/**/", "//:",
};

inline const std::vector<std::string_view> kPrefixes = {
    "Nov 20 08:15:02 logger: ", " ", "x\"id\"", "}", "\xef\xbb\xbf", "[", "//", "\\u0069 ", "\0"sv,
    "{", "{}", "[[", "\"{\"", "{\"a\":",
};

inline const std::vector<std::string_view> kSuffixes = {
    "\r", " ", "}", ",", "\"id\"", "{\"id\":\"x\"}", "\\u006", "\0"sv, "//\"id\"", "\xff",
    ",\"id\":[]}",
};

inline const std::vector<std::string_view> kTokens = {
    "{", "}", "[", "]", ":", ",", "\"", "\\", "'", "/*", "*/", "//", "/**/", "//c\r", "/*\0*/"sv,
    "\0"sv, "\r", "\t", " ", "\x0b", "\x0c", "\xef\xbb\xbf", "\x80", "\xff", "\xc3\xa9", "\xc3",
    "\xed\xa0\x80", "null", "true", "-", "1", "1e5", "%s", "},{", "}{", "\\n", "\\ud800",
    "\\ud83d\\ude00", "\\u0000", "\\u0069d", "\\u006", "\\u0064", "\"id\"", "\"id\":", "\"id\":7,",
    "\"id\":{\"id\":1},", "\"\\u0069d\":\"x\",", "\"vars\"", "\"vars\":", "\"vars\":{",
    "\"vars\":null,", "\"time\"", "\"time\":5,", "\"a\":null,", "\"\":0,",
};

/// Strings of variables.
inline const std::vector<std::string_view> kWords = {
    "UNKNOWN", "MBB", "BBM", "OUTAGE", "TIMED_OUT", "NO_UCP", "mbb", " MBB", "", "12", "19850000",
    "3.2.1.0", "deadbeef", "east", "L", "a/b", "%d %s", "x\\ny", "\\\"", "\\/", "\\u0000", "\\u00e9",
    "\\u2028", "\xc3\xa9", "\xff", "\xc0\x80", "e\x7f",
};

/// What a variable may be instead of a string.
inline const std::vector<std::string_view> kOtherValues = {
    "null", "true", "0", "-1.5", "0.1", "1e99", "4294967296", "12345678901234567890", "[]", "{}",
    "{\"a\":null}", "[1,null,\"x\"]", "{\"b\":{\"a\":[{}]}}", "nope", "\"unclosed", "\"/*\"",
    "/*c*/\"x\"", "\"x\"/*c*/", "//c\r\"x\"", "\"x\"//c\r", "/**//**/null", "\"x\",", "[0,]",
};

// Whole lines.
inline const std::vector<std::string_view> kShortLines = {
    "", " ", "{", "{}", "{\"id\"", "{\"id\":", "no braces", "\"id\":5", "\0\0\0"sv, "{\"id\":1228",
    "{\"id\":1228,", "{\"id\":1228}", "{ \"id\" : 1228 }", "[]",
};

// clang-format on

} // namespace eventsviewer::reference
