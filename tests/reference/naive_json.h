#pragma once

#include <json/value.h>

#include <cstdint>
#include <istream>
#include <string>

namespace eventsviewer::reference {

/// Reads one JSON value from `stream` into `root` with a reader made for this call. An error prints
/// a diagnostic on std::cout; one of the library's runtime errors aborts the process.
void extract(std::istream& stream, Json::Value& root);

/// `value` on one line, by a writer made for this call.
std::string compact(const Json::Value& value);

/// The member `key` of an object, or the empty string. A value that cannot have members gives the
/// empty string and a diagnostic.
Json::Value get(const Json::Value& value, const std::string& key);

/// The characters of a string. For anything else, prints a diagnostic and returns a null pointer.
const char* asCString(const Json::Value& value);

/// `value` as an integer of 32 bits. If it is not one, prints a diagnostic and returns a fallback.
std::int32_t asInt(const Json::Value& value);

} // namespace eventsviewer::reference
