#include "describe/variables.h"

#include "jsonaccess/json_access.h"

namespace eventsviewer {

namespace {

std::optional<jsonaccess::PlainMembers> plainTexts(std::string_view details)
{
    return jsonaccess::takePlainTexts(details);
}

} // namespace

Variables::Variables(std::string_view details) : plain_(plainTexts(details))
{
    if (!plain_.has_value()) {
        jsonaccess::parse(details, root_);
    }
}

bool Variables::isText(std::string_view key) const
{
    if (plain_.has_value()) {
        return plain_->find(key) != nullptr;
    }
    return root_.isObject() && jsonaccess::isMember(root_, key) &&
           jsonaccess::get(root_, key).isString();
}

std::string_view Variables::text(std::string_view key) const
{
    if (plain_.has_value()) {
        const jsonaccess::PlainMember* const member = plain_->find(key);
        return member != nullptr ? member->text : std::string_view();
    }
    const char* const text = jsonaccess::asCString(jsonaccess::get(root_, key));
    return text != nullptr ? text : std::string_view();
}

} // namespace eventsviewer
