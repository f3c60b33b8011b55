// Why a scan can replace the library. JsonCpp 1.9 with our settings reports no error for an
// object that is plain, and reads and writes the same members, since:
//
// - It has only the ASCII characters from space on, and no backslash. The parser takes these in
//   keys and strings as they are, up to the next quote, and the writer puts them between quotes as
//   they are. Any other may be escaped, replaced or refused by the parser or the writer.
// - Its numbers are one to nine digits. The parser makes each an integer that fits 32 bits,
//   whatever zeros it begins with. A sign, a point or an exponent may make it something else.
// - Between its tokens are only spaces. A comment would stick to a value and be written with it,
//   so a slash there is not plain.
// - A comma in it is followed by a key. If a brace follows instead, the parser usually reports an
//   error, but not after the key "".
// - Of members with the same key the last one wins: the parser replaces the previous value, even if
//   it is an object. It keeps members in the order of the bytes of their keys.
// - At most one object is inside it, and none inside that: far less than the parser refuses.
// - It ends with the brace that closes it. The parser still reads comments and one token after
//   that, but reports none of it.
// - It has fewer than 2^30 bytes. The library ends the process for a key of that length.

#include "jsonaccess/plain_object.h"

#include "jsonaccess/plain_tokens.h"
#include "jsonaccess/word.h"

#include <algorithm>
#include <utility>

namespace eventsviewer::jsonaccess {

namespace {

constexpr std::size_t kMostBytes = 65536;

bool isPlain(char c)
{
    return c >= ' ' && c <= '\x7f' && c != '\\';
}

// SWAR: whether each byte of `word` is plain. May report false negatives, never false positives. (A
// byte beyond ASCII leaves the highest bit set in one of the two differences.)
bool arePlain(Word word)
{
    const Word others = (word - everyByte(' ')) | ((word ^ everyByte('\\')) - everyByte(1));
    return (others & everyByte(0x80)) == 0;
}

// The plain characters at the beginning of `text`.
std::string_view plainPart(std::string_view text)
{
    const char* at = text.data();
    const char* const end = at + std::min(text.size(), kMostBytes);
    while (static_cast<std::size_t>(end - at) >= sizeof(Word) && arePlain(wordAt(at))) {
        at += sizeof(Word);
    }
    while (at != end && isPlain(*at)) {
        ++at;
    }
    return {text.data(), static_cast<std::size_t>(at - text.data())};
}

// Takes an object, braces included, and each of its values with `takeValue`.
template <typename TakeValue>
bool takeMembers(PlainTokens& tokens, PlainMembers& members, TakeValue takeValue)
{
    if (!tokens.take('{')) {
        return false;
    }
    tokens.skipBlanks();
    if (tokens.take('}')) {
        return true;
    }
    for (;;) {
        PlainMember* const member = members.add();
        if (member == nullptr || !tokens.takeQuoted(member->key) || !tokens.takeColon() ||
            !takeValue(tokens, *member)) {
            return false;
        }
        tokens.skipBlanks();
        if (tokens.take('}')) {
            return true;
        }
        if (!tokens.take(',')) {
            return false;
        }
        tokens.skipBlanks();
    }
}

bool takeTexts(PlainTokens& tokens, PlainMembers& members)
{
    return takeMembers(tokens, members, [](PlainTokens& value, PlainMember& member) {
        return value.takeQuoted(member.text);
    });
}

bool takeObject(PlainTokens& tokens, PlainObject& object)
{
    return takeMembers(tokens, object.members, [&object](PlainTokens& value, PlainMember& member) {
        if (value.beginsWith('"')) {
            return value.takeQuoted(member.text);
        }
        if (value.beginsWith('{')) {
            member.kind = PlainKind::Object;
            return !std::exchange(object.hasInner, true) && takeTexts(value, object.inner);
        }
        member.kind = PlainKind::Number;
        return value.takeShortNumber(member.number);
    });
}

} // namespace

const PlainMember* PlainMembers::find(std::string_view key) const
{
    for (const PlainMember* member = end(); member != begin();) {
        if ((--member)->key == key) {
            return member;
        }
    }
    return nullptr;
}

std::optional<PlainObject> readPlainObject(std::string_view text, const char** end)
{
    std::optional<PlainObject> object(std::in_place);
    PlainTokens tokens(plainPart(text));
    if (!takeObject(tokens, *object)) {
        object.reset();
    }
    if (end != nullptr) {
        *end = tokens.at();
    }
    return object;
}

std::optional<PlainMembers> readPlainTexts(std::string_view text, const char** end)
{
    std::optional<PlainMembers> members(std::in_place);
    PlainTokens tokens(plainPart(text));
    if (!takeTexts(tokens, *members)) {
        members.reset();
    }
    if (end != nullptr) {
        *end = tokens.at();
    }
    return members;
}

void writeTexts(const PlainMembers& members, std::string& json)
{
    const PlainMember* ordered[PlainMembers::kMost] = {};
    std::size_t count = 0;
    std::size_t mostBytes = std::string_view("{}").size();
    for (const PlainMember& member : members) {
        mostBytes += member.key.size() + member.text.size() + std::string_view(R"(,"":"")").size();
        std::size_t place = count;
        int order = 1;
        while (place > 0 && (order = member.key.compare(ordered[place - 1]->key)) < 0) {
            --place;
        }
        if (order == 0) {
            ordered[place - 1] = &member;
        } else {
            std::copy_backward(ordered + place, ordered + count, ordered + count + 1);
            ordered[place] = &member;
            ++count;
        }
    }

    json.resize(mostBytes);
    char* end = json.data();
    const auto append = [&end](std::string_view piece) {
        end = std::copy(piece.begin(), piece.end(), end);
    };
    append("{");
    for (std::size_t i = 0; i < count; ++i) {
        append(i > 0 ? ",\"" : "\"");
        append(ordered[i]->key);
        append("\":\"");
        append(ordered[i]->text);
        append("\"");
    }
    append("}");
    json.resize(static_cast<std::size_t>(end - json.data()));
}

} // namespace eventsviewer::jsonaccess
