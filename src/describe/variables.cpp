#include "describe/variables.h"

#include "jsonaccess/json_access.h"

namespace eventsviewer {

Variables::Variables(std::string_view details)
    : details_(details), plain_(jsonaccess::readPlainTexts(details, &plainEnd_))
{
    if (!plain_.has_value()) {
        jsonaccess::parse(details, root_.emplace());
    }
}

bool Variables::isText(std::string_view key) const
{
    if (plain_.has_value()) {
        return plain_->find(key) != nullptr;
    }
    return root_->isObject() && jsonaccess::isMember(*root_, key) &&
           jsonaccess::get(*root_, key).isString();
}

std::string_view Variables::text(std::string_view key) const
{
    if (plain_.has_value()) {
        const jsonaccess::PlainMember* const member = plain_->find(key);
        return member != nullptr ? member->text : std::string_view();
    }
    const char* const text = jsonaccess::asCString(jsonaccess::get(*root_, key));
    return text != nullptr ? text : std::string_view();
}

std::vector<std::pair<std::string, std::string>> Variables::all() const
{
    std::vector<std::pair<std::string, std::string>> variables;
    if (plain_.has_value()) {
        for (const jsonaccess::PlainMember& member : *plain_) {
            variables.emplace_back(member.key, member.text);
        }
        return variables;
    }
    for (std::string& key : parsedKeys()) {
        const Json::Value& value = jsonaccess::get(*root_, key);
        std::string written = value.isString() ? jsonaccess::asCString(value)
                                               : jsonaccess::writeWithoutComments(value);
        variables.emplace_back(std::move(key), std::move(written));
    }
    return variables;
}

std::vector<std::string> Variables::parsedKeys() const
{
    return root_->isObject() ? jsonaccess::getMemberNames(*root_) : std::vector<std::string>();
}

std::string_view Variables::json(std::string& made) const
{
    if (plain_.has_value()) {
        return details_.substr(0, static_cast<std::size_t>(plainEnd_ - details_.data()));
    }
    made = root_->isObject() ? jsonaccess::writeWithoutComments(*root_) : "{}";
    return made;
}

} // namespace eventsviewer
