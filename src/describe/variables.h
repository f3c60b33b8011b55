#pragma once

#include "jsonaccess/plain_object.h"

#include <json/value.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer {

/// The detail variables of one event.
class Variables {
public:
    /// Reads `details`, a JSON object that must outlive this. Prints a JSON diagnostic on std::cout
    /// if they do not parse; what was read before the error counts.
    explicit Variables(std::string_view details);

    /// Whether there is a variable `key` and it is a string. Prints nothing.
    bool isText(std::string_view key) const;

    /// The text of the variable `key` up to its first NUL, empty if there is none. A variable that
    /// is not a string is empty too and prints a JSON diagnostic on std::cout.
    std::string_view text(std::string_view key) const;

    /// The first key in their order that `isWanted` and whose variable is a string; empty if there
    /// is none. Prints nothing.
    template <typename IsWanted> std::string firstTextKey(IsWanted isWanted) const
    {
        if (plain_.has_value()) {
            for (const jsonaccess::PlainMember& member : *plain_) {
                if (isWanted(member.key)) {
                    return std::string(member.key);
                }
            }
            return {};
        }
        for (const std::string& key : parsedKeys()) {
            if (isWanted(key) && isText(key)) {
                return key;
            }
        }
        return {};
    }

    /// Each variable in the order of the keys: its key, and its text up to its first NUL or, if it
    /// is not a string, its JSON. Prints nothing.
    std::vector<std::pair<std::string, std::string>> all() const;

    /// All variables as compact JSON, without comments. Valid as long as the details and `made`,
    /// which may be used to make it. Prints nothing.
    std::string_view json(std::string& made) const;

private:
    std::vector<std::string> parsedKeys() const;

    std::string_view details_;
    const char* plainEnd_ = nullptr; // after plain details there may be comments
    std::optional<jsonaccess::PlainMembers> plain_;
    std::optional<Json::Value> root_; // where the details are not plain
};

} // namespace eventsviewer
