#include "eventlog/event_line.h"

#include "jsonaccess/json_access.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace eventsviewer {

namespace {

// A damaged log is no news to its reader: what the parser says about its lines is dropped.
Json::Value parseSilently(std::string_view text)
{
    Json::Value root;
    std::cout.setstate(std::ios_base::failbit);
    jsonaccess::parse(text, root);
    std::cout.clear();
    return root;
}

std::string timeOf(const Json::Value& root)
{
    const Json::Value& time = jsonaccess::get(root, "time");
    return time.isString() ? jsonaccess::asCString(time) : "";
}

bool isNull(const Json::Value& value)
{
    return value.isNull();
}

void removeNullMembers(Json::Value& object)
{
    // Listing the names costs as much as parsing some of them, and hardly ever finds a null.
    if (std::none_of(object.begin(), object.end(), isNull)) {
        return;
    }
    for (const std::string& name : jsonaccess::getMemberNames(object)) {
        if (jsonaccess::get(object, name).isNull()) {
            jsonaccess::removeMember(object, name);
        }
    }
}

std::string detailsOf(Json::Value& root)
{
    Json::Value& variables = jsonaccess::member(root, "vars");
    if (!variables.isObject()) {
        return "{}";
    }
    removeNullMembers(variables);
    return jsonaccess::writeCompact(variables);
}

} // namespace

std::unique_ptr<EventRecord> parseEventLine(std::string_view line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return nullptr;
    }
    Json::Value root = parseSilently(line.substr(brace));
    if (!root.isObject() || !jsonaccess::isMember(root, "id")) {
        return nullptr;
    }
    std::string time = timeOf(root);
    SharedText details = textFromLiteral(detailsOf(root).c_str());
    const std::int32_t code = jsonaccess::asInt(jsonaccess::get(root, "id"));
    return std::make_unique<EventRecord>(code, std::move(time), std::move(details));
}

} // namespace eventsviewer
