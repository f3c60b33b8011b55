#include "eventlog/event_line.h"

#include "jsonaccess/json_access.h"

#include <iostream>
#include <string>

namespace eventsviewer {

namespace {

constexpr std::string_view kId = "id";
constexpr std::string_view kTime = "time";

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
    const Json::Value& time = jsonaccess::get(root, kTime);
    return time.isString() ? jsonaccess::asCString(time) : "";
}

bool hasNullMember(const Json::Value& object)
{
    for (const Json::Value& member : object) {
        if (member.isNull()) {
            return true;
        }
    }
    return false;
}

void removeNullMembers(Json::Value& object)
{
    for (const std::string& name : jsonaccess::getMemberNames(object)) {
        if (jsonaccess::get(object, name).isNull()) {
            jsonaccess::removeMember(object, name);
        }
    }
}

SharedText detailsOf(Json::Value& root)
{
    Json::Value& variables = jsonaccess::member(root, "vars");
    if (!variables.isObject()) {
        return textFromLiteral("{}");
    }
    // Listing the names costs as much as parsing some of them, and hardly ever finds a null.
    if (hasNullMember(variables)) {
        removeNullMembers(variables);
    }
    return textFromLiteral(jsonaccess::writeCompact(variables).c_str());
}

} // namespace

std::unique_ptr<EventRecord> parseEventLine(std::string_view line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string_view::npos) {
        return nullptr;
    }
    Json::Value root = parseSilently(line.substr(brace));
    if (!root.isObject() || !jsonaccess::isMember(root, kId)) {
        return nullptr;
    }
    std::string time = timeOf(root);
    SharedText details = detailsOf(root);
    const std::int32_t code = jsonaccess::asInt(jsonaccess::get(root, kId));
    return std::make_unique<EventRecord>(code, std::move(time), std::move(details));
}

} // namespace eventsviewer
