#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace eventsviewer::jsonaccess {

/// What the value of a plain member is.
enum class PlainKind { Text, Number, Object };

/// One member of a plain object, as spans of the text that it was read from.
struct PlainMember {
    std::string_view key;
    PlainKind kind = PlainKind::Text;
    std::string_view text;   ///< of a text: what is between the quotes; empty for the others
    std::int32_t number = 0; ///< of a number
};

/// The members of a plain object in the order in which they were written.
class PlainMembers {
public:
    /// A log line has three, the longest description eight. Many would take long to put in order.
    static constexpr std::size_t kMost = 12;

    PlainMembers() noexcept {} // NOLINT(modernize-use-equals-default): the union needs it

    /// A new member to be filled in; null if there are kMost already.
    PlainMember* add() { return count_ < kMost ? new (&members_[count_++]) PlainMember : nullptr; }

    /// The member `key`, the last one if there are several; null if there is none.
    const PlainMember* find(std::string_view key) const;

    const PlainMember* begin() const { return members_; }
    const PlainMember* end() const { return members_ + count_; }

private:
    union { // so that no time goes into members that are not used
        PlainMember members_[kMost];
    };
    std::size_t count_ = 0;
};

/// An object whose members are strings, short numbers, and at most one object of strings only.
struct PlainObject {
    PlainObject() noexcept {} // NOLINT(modernize-use-equals-default): that would zero all first

    PlainMembers members;
    bool hasInner = false;
    PlainMembers inner; ///< the members of that one object
};

/// The plain object at the beginning of `text`, with the members that the library would read.
/// Nothing if the object is not plain: then only the library can parse it. `end`, if given, is set
/// to where the object ends, or to the first byte that is not plain, or to the end of `text`.
std::optional<PlainObject> readPlainObject(std::string_view text, const char** end = nullptr);

/// The same for an object of strings only.
std::optional<PlainMembers> readPlainTexts(std::string_view text, const char** end = nullptr);

/// Makes `json` what the library would write for an object with `members`, all of them strings: one
/// line, without spaces between the tokens.
void writeTexts(const PlainMembers& members, std::string& json);

} // namespace eventsviewer::jsonaccess
