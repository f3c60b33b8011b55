#include "jsonaccess/json_access.h"

#include <json/reader.h>
#include <json/writer.h>

#include <cstdlib>
#include <iostream>
#include <limits>
#include <memory>
#include <sstream>

namespace eventsviewer::jsonaccess {

namespace {

void (*runtimeErrorHandler)() = std::abort;

void printDiagnostic(std::string_view message)
{
    std::cout << "Tarvik workaround: " << message << std::endl;
}

struct Switch {
    const char* setting;
    bool on;
};

// Every setting is given, also where it is the library's default: the defaults of
// allowTrailingCommas and skipBom are not these, and others may change with a release.
constexpr Switch kReaderSwitches[] = {
    {"collectComments", true},
    {"allowComments", true},
    {"allowTrailingCommas", false},
    {"strictRoot", false},
    {"allowDroppedNullPlaceholders", false},
    {"allowNumericKeys", false},
    {"allowSingleQuotes", false},
    {"failIfExtra", false},
    {"rejectDupKeys", false},
    {"allowSpecialFloats", false},
    {"skipBom", false},
};

constexpr Switch kWriterSwitches[] = {
    {"enableYAMLCompatibility", false},
    {"dropNullPlaceholders", false},
    {"useSpecialFloats", false},
    {"emitUTF8", false},
};

std::unique_ptr<Json::CharReader> makeReader()
{
    Json::CharReaderBuilder builder;
    for (const Switch& option : kReaderSwitches) {
        builder[option.setting] = option.on;
    }
    builder["stackLimit"] = kMostNesting;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

std::unique_ptr<Json::StreamWriter> makeWriter(const char* commentStyle)
{
    Json::StreamWriterBuilder builder;
    for (const Switch& option : kWriterSwitches) {
        builder[option.setting] = option.on;
    }
    builder["commentStyle"] = commentStyle;
    builder["indentation"] = "";
    builder["precision"] = 17;
    builder["precisionType"] = "significant";
    return std::unique_ptr<Json::StreamWriter>(builder.newStreamWriter());
}

std::string written(const Json::Value& value, Json::StreamWriter& writer)
{
    static std::ostringstream stream; // made once, like the writers
    stream.str({});
    try {
        writer.write(value, &stream);
    } catch (const Json::RuntimeError&) {
        runtimeErrorHandler();
    }
    return stream.str();
}

// Whether `value` can have members at all. The library would throw where it cannot.
bool mayHaveMembers(const Json::Value& value, const char* diagnostic)
{
    if (value.isObject() || value.isNull()) {
        return true;
    }
    printDiagnostic(diagnostic);
    return false;
}

const Json::Value* find(const Json::Value& value, std::string_view key)
{
    if (!mayHaveMembers(value,
                        "in Json::Value::find(begin, end): requires objectValue or nullValue")) {
        return nullptr;
    }
    return value.find(key.data(), key.data() + key.size());
}

} // namespace

void setRuntimeErrorHandler(void (*handler)())
{
    runtimeErrorHandler = handler;
}

void parse(std::string_view text, Json::Value& root)
{
    // Made once, since a new reader costs more than most parses. It must forget the text before it:
    // above all a comment that belongs to no value yet, which one member of the reader holds. The
    // library does not promise that, so a test reads one text after another.
    static const std::unique_ptr<Json::CharReader> reader = makeReader();
    Json::String errors;
    bool parsed = false;
    try {
        parsed = reader->parse(text.data(), text.data() + text.size(), &root, &errors);
    } catch (const Json::RuntimeError&) {
        runtimeErrorHandler();
    }
    if (!parsed) {
        // The spelling "occured" is intentional.
        printDiagnostic("error occured in IStream in JsonCpp:" + errors);
    }
}

std::string writeString(const Json::Value& value)
{
    // Made once: a new writer costs as much as the writing.
    static const std::unique_ptr<Json::StreamWriter> writer = makeWriter("All");
    return written(value, *writer);
}

std::string writeWithoutComments(const Json::Value& value)
{
    static const std::unique_ptr<Json::StreamWriter> writer = makeWriter("None");
    return written(value, *writer);
}

bool isMember(const Json::Value& value, std::string_view key)
{
    return find(value, key) != nullptr;
}

const Json::Value& get(const Json::Value& value, std::string_view key)
{
    static const Json::Value emptyText("");
    const Json::Value* const found = find(value, key);
    return found != nullptr ? *found : emptyText;
}

std::vector<std::string> getMemberNames(const Json::Value& value)
{
    if (!mayHaveMembers(value, "in Json::Value::getMemberNames(), value must be objectValue")) {
        return {};
    }
    return value.getMemberNames();
}

void removeMember(Json::Value& value, const std::string& key)
{
    if (mayHaveMembers(value, "in Json::Value::removeMember(): requires objectValue")) {
        value.removeMember(key);
    }
}

const char* asCString(const Json::Value& value)
{
    if (!value.isString()) {
        printDiagnostic("in Json::Value::asCString(): requires stringValue");
        return nullptr;
    }
    return value.asCString();
}

std::int32_t asInt(const Json::Value& value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    try {
        return value.asInt();
    } catch (const Json::LogicError&) {
        // Distinguished below: the wording of the library's own message depends on its release.
    }
    switch (value.type()) {
    case Json::intValue:
        printDiagnostic("LargestInt out of Int range");
        return static_cast<std::int32_t>(value.asLargestInt());
    case Json::uintValue:
        printDiagnostic("LargestUInt out of Int range");
        return static_cast<std::int32_t>(value.asLargestUInt());
    case Json::realValue:
        printDiagnostic("double out of Int range");
        if (value.asDouble() > 0) {
            return Limits::max();
        }
        return value.asDouble() < 0 ? Limits::min() : 0;
    case Json::nullValue:
    case Json::booleanValue:
    case Json::stringValue:
    case Json::arrayValue:
    case Json::objectValue:
        break;
    }
    printDiagnostic("Value is not convertible to Int.");
    return 0;
}

} // namespace eventsviewer::jsonaccess
