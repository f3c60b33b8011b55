// Every JSON operation that can fail goes through these functions. They call JsonCpp with fixed
// settings and let none of its errors out:
// - A text that does not parse, and an operation on a value of the wrong type, prints one line on
//   std::cout that begins with "Tarvik workaround: ", and the caller goes on with the result given
//   below. To print no such line, set std::cout to failed first.
// - What the library calls a runtime error (nesting of more than kMostNesting levels above all)
//   ends the process by abort, silently, unless setRuntimeErrorHandler says otherwise.
// - Exhausted memory is not caught.

#pragma once

#include <json/value.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer::jsonaccess {

/// How many objects and arrays may be inside each other in a text.
inline constexpr int kMostNesting = 1000;

/// Called instead of abort when the library reports a runtime error. `handler` must not return, but
/// may throw. std::abort unless set.
void setRuntimeErrorHandler(void (*handler)());

/// Parses the JSON value at the beginning of `text` into `root`, which must be null. Text after
/// the value is ignored. After an error `root` keeps what was read before it.
void parse(std::string_view text, Json::Value& root);

/// `value` as JSON on one line, without spaces between the tokens.
std::string writeString(const Json::Value& value);

/// The same without the comments of `value`.
std::string writeWithoutComments(const Json::Value& value);

/// Whether the object `value` has a member `key`. Null and any other value have none; the latter
/// prints a diagnostic.
bool isMember(const Json::Value& value, std::string_view key);

/// The member `key` of the object `value`, or the empty JSON string where there is none. Null and
/// any other value have no members; the latter prints a diagnostic. Valid as long as `value`.
const Json::Value& get(const Json::Value& value, std::string_view key);

/// The keys of the object `value` in ascending byte order. Null and any other value have none; the
/// latter prints a diagnostic.
std::vector<std::string> getMemberNames(const Json::Value& value);

/// Removes the member `key` of the object `value`, if there is one. Null and any other value are
/// left as they are; the latter prints a diagnostic.
void removeMember(Json::Value& value, const std::string& key);

/// The text of the JSON string `value`, to be read up to its first NUL; valid as long as `value`.
/// Any other value prints a diagnostic and gives a null pointer.
const char* asCString(const Json::Value& value);

/// `value` as an integer: null is 0, a Boolean 0 or 1, a real is truncated. A number
/// outside 32 bits prints a diagnostic and gives its low 32 bits (an integer) or the nearest limit
/// (a real). A string, an array or an object prints a diagnostic and gives 0.
std::int32_t asInt(const Json::Value& value);

} // namespace eventsviewer::jsonaccess
