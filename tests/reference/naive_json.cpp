#include "reference/naive_json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <cstdlib>
#include <iostream>

namespace eventsviewer::reference {

namespace {

void complain(const std::string& message)
{
    std::cout << "Tarvik workaround: " << message << std::endl;
}

// The low 32 bits, as a signed number.
std::int32_t lowBits(std::uint64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

} // namespace

void extract(std::istream& stream, Json::Value& root)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = true;
    builder["allowComments"] = true;
    builder["allowTrailingCommas"] = false;
    builder["strictRoot"] = false;
    builder["allowDroppedNullPlaceholders"] = false;
    builder["allowNumericKeys"] = false;
    builder["allowSingleQuotes"] = false;
    builder["stackLimit"] = 1000;
    builder["failIfExtra"] = false;
    builder["rejectDupKeys"] = false;
    builder["allowSpecialFloats"] = false;
    builder["skipBom"] = false;
    Json::String errors;
    bool ok = false;
    try {
        ok = Json::parseFromStream(builder, stream, &root, &errors);
    } catch (const Json::RuntimeError&) {
        std::abort();
    }
    if (!ok) {
        complain("error occured in IStream in JsonCpp:" + errors);
    }
}

std::string compact(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    try {
        return Json::writeString(builder, value);
    } catch (const Json::RuntimeError&) {
        std::abort();
    }
}

Json::Value get(const Json::Value& value, const std::string& key)
{
    try {
        return value.get(key, Json::Value(""));
    } catch (const Json::LogicError& error) {
        complain(error.what());
        return "";
    }
}

const char* asCString(const Json::Value& value)
{
    if (value.type() == Json::stringValue) {
        return value.asCString();
    }
    complain("in Json::Value::asCString(): requires stringValue");
    return nullptr;
}

std::int32_t asInt(const Json::Value& value)
{
    switch (value.type()) {
    case Json::nullValue:
        return 0;
    case Json::booleanValue:
        return value.asBool() ? 1 : 0;
    case Json::intValue:
        if (value.asInt64() < INT32_MIN || value.asInt64() > INT32_MAX) {
            complain("LargestInt out of Int range");
        }
        return lowBits(static_cast<std::uint64_t>(value.asInt64()));
    case Json::uintValue:
        if (value.asUInt64() > INT32_MAX) {
            complain("LargestUInt out of Int range");
        }
        return lowBits(value.asUInt64());
    case Json::realValue: {
        const double real = value.asDouble();
        if (real >= INT32_MIN && real <= INT32_MAX) {
            return static_cast<std::int32_t>(real);
        }
        complain("double out of Int range");
        if (real > INT32_MAX) {
            return INT32_MAX;
        }
        return real < INT32_MIN ? INT32_MIN : 0;
    }
    case Json::stringValue:
    case Json::arrayValue:
    case Json::objectValue:
        break;
    }
    complain("Value is not convertible to Int.");
    return 0;
}

} // namespace eventsviewer::reference
