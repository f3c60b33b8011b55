#include "eventlog/event_line.h"

#include "eventlog/lines.h"
#include "jsonaccess/json_access.h"
#include "jsonaccess/plain_object.h"

#include <iostream>
#include <string>

namespace eventsviewer {

namespace {

constexpr std::string_view kId = "id";
constexpr std::string_view kTime = "time";
constexpr std::string_view kVariables = "vars"; // the details of the record
constexpr const char* kNoVariables = "{}";

SharedText detailsOf(const jsonaccess::PlainMembers& variables)
{
    static std::string json; // kept: memory for each event would cost more than the writing
    jsonaccess::writeTexts(variables, json);
    return textFromLiteral(json.c_str());
}

std::unique_ptr<EventRecord> plainEvent(std::int32_t code, const jsonaccess::PlainObject& object)
{
    const jsonaccess::PlainMember* const time = object.members.find(kTime);
    const jsonaccess::PlainMember* const variables = object.members.find(kVariables);
    const bool hasVariables =
        variables != nullptr && variables->kind == jsonaccess::PlainKind::Object;
    return std::make_unique<EventRecord>(
        code, std::string(time != nullptr ? time->text : std::string_view()),
        hasVariables ? detailsOf(object.inner) : textFromLiteral(kNoVariables));
}

// While one lives, what is written to std::cout is dropped. std::cout is good afterwards.
class SilencedCout {
public:
    SilencedCout() { std::cout.setstate(std::ios_base::failbit); }
    SilencedCout(const SilencedCout&) = delete;
    SilencedCout& operator=(const SilencedCout&) = delete;
    ~SilencedCout() { std::cout.clear(); }
};

// A damaged log is expected: the parser's messages about its lines are dropped.
Json::Value parseSilently(std::string_view text)
{
    const SilencedCout silence;
    Json::Value root;
    jsonaccess::parse(text, root);
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

Json::Value withoutNullMembers(Json::Value object)
{
    for (const std::string& name : jsonaccess::getMemberNames(object)) {
        if (jsonaccess::get(object, name).isNull()) {
            jsonaccess::removeMember(object, name);
        }
    }
    return object;
}

SharedText detailsOf(const Json::Value& root)
{
    const Json::Value& variables = jsonaccess::get(root, kVariables);
    if (!variables.isObject()) {
        return textFromLiteral(kNoVariables);
    }
    // A null is rare, and the copy that loses it costs as much as the parse.
    const std::string json = hasNullMember(variables)
                                 ? jsonaccess::writeString(withoutNullMembers(variables))
                                 : jsonaccess::writeString(variables);
    return textFromLiteral(json.c_str()); // a comment may hold a NUL
}

std::unique_ptr<EventRecord> parsedEvent(const Json::Value& root)
{
    if (!jsonaccess::isMember(root, kId)) {
        return nullptr;
    }
    std::string time = timeOf(root);
    SharedText details = detailsOf(root);
    const std::int32_t code = jsonaccess::asInt(jsonaccess::get(root, kId));
    return std::make_unique<EventRecord>(code, std::move(time), std::move(details));
}

} // namespace

std::unique_ptr<EventRecord> parseEventLine(std::string_view line)
{
    const std::size_t brace = firstBrace(line);
    if (brace == std::string_view::npos) {
        return nullptr;
    }
    std::cout.clear(); // even if an earlier diagnostic could not be written
    const std::string_view text = line.substr(brace);
    if (const auto object = jsonaccess::readPlainObject(text)) {
        const jsonaccess::PlainMember* const id = object->members.find(kId);
        if (id == nullptr) {
            return nullptr;
        }
        if (id->kind == jsonaccess::PlainKind::Number) {
            return plainEvent(id->number, *object);
        }
    }
    return parsedEvent(parseSilently(text));
}

} // namespace eventsviewer
