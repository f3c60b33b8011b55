#pragma once

#include "jsonaccess/plain_object.h"

#include <json/value.h>

#include <optional>
#include <string_view>

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

private:
    std::optional<jsonaccess::PlainMembers> plain_;
    Json::Value root_; // where the details are not plain
};

} // namespace eventsviewer
