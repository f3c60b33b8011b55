// How damage is found, and what it does is told:
//
// - The object is scanned as strictly as RFC 8259 says. What is not read there is searched for more
//   members.
// - The event is what the library has made of the same line. A member that the line has and the
//   event lacks is lost, and one that differs from its bytes is changed.

#include "describe/line_check.h"

#include "catalog/event_names.h"
#include "describe/description.h"
#include "describe/reason_variables.h"
#include "jsonaccess/object_scan.h"

#include <algorithm>
#include <cstdlib>

namespace eventsviewer {

namespace {

using jsonaccess::Fault;
using jsonaccess::JsonType;
using jsonaccess::ObjectScan;
using jsonaccess::ScannedMember;

constexpr const char* kNoEvent = "no event";
constexpr const char* kMoreObjects = "more than one object";
constexpr const char* kWrongType = "wrong type";
constexpr std::string_view kBlanks(" \t\r\0", 4);

const char* kindOf(Fault fault)
{
    switch (fault) {
    case Fault::None:
        break;
    case Fault::CutOff:
        return "cut off";
    case Fault::Syntax:
        return "syntax error";
    case Fault::ZeroBytes:
        return "zero bytes";
    case Fault::NotUtf8:
        return "not UTF-8";
    case Fault::TooDeep:
        return "too deep";
    }
    return nullptr;
}

// Where a second event begins in `text`, or npos.
std::size_t findEvent(std::string_view text, std::size_t from)
{
    constexpr std::string_view kIdKey = "\"id\"";
    while ((from = text.find('{', from)) != std::string_view::npos) {
        const std::size_t key = text.find_first_not_of(kBlanks, from + 1);
        if (key != std::string_view::npos && text.substr(key, kIdKey.size()) == kIdKey) {
            break;
        }
        ++from;
    }
    return from;
}

enum class Role { Code, Time, Variables, Variable, Other };

Role roleOf(const ScannedMember& member, std::string_view parent)
{
    if (member.isInner) {
        return parent == "vars" ? Role::Variable : Role::Other;
    }
    if (member.key == "id") {
        return Role::Code;
    }
    return member.key == "time"   ? Role::Time
           : member.key == "vars" ? Role::Variables
           : member.isRead        ? Role::Other
                                  : Role::Variable;
}

// What became of the members of a line.
struct Fates {
    std::vector<std::string_view> lost;
    std::vector<std::string_view> others; // that no event has, in a place where none is expected
    std::vector<std::string_view> early;
    std::vector<std::string_view> changed;
    std::vector<std::string_view> noText; // those that are not strings
    std::string code;                     // what is said of it
    std::string wrongType; // what is said of the code or the variables if they have one
    bool isNameChanged = false;
};

void addPart(std::string& effect, std::string_view part)
{
    effect += effect.empty() || part.empty() ? "" : "; ";
    effect += part;
}

bool isCode(const ScannedMember& member)
{
    constexpr std::size_t kFewDigits = 9;
    constexpr std::size_t kMostDigits = 11;
    if (member.type != JsonType::WholeNumber || member.value.size() > kMostDigits) {
        return false;
    }
    const long long number = member.value.size() <= kFewDigits
                                 ? 0
                                 : std::strtoll(std::string(member.value).c_str(), nullptr, 10);
    return number >= INT32_MIN && number <= INT32_MAX;
}

void addCode(Fates& fates, const ScannedMember& member, const LineEvent& event)
{
    if (!member.isRead) {
        fates.code = member.value.empty() ? "the code is lost" : "the code may be incomplete";
    } else if (member.fault != Fault::None) {
        fates.code = "the code may be wrong";
    } else if (!isCode(member)) {
        addPart(fates.wrongType, "the code is not a whole number of 32 bits and reads as " +
                                     std::to_string(event.code));
    }
}

void addText(Fates& fates, const ScannedMember& member, bool isGiven, std::string_view text)
{
    const std::string_view value = member.value;
    const bool hasEscape = member.key.find('\\') != std::string_view::npos;
    if ((member.isRead && value.empty()) || hasEscape) {
        return;
    }
    if (member.isRead && member.type != JsonType::Text) {
        fates.noText.push_back(member.key);
    } else if (!isGiven) {
        fates.lost.push_back(member.key);
    } else if (member.fault != Fault::None) {
        const bool isEarly = text.size() < value.size() && value.substr(0, text.size()) == text;
        (isEarly ? fates.early : fates.changed).push_back(member.key);
    }
}

// Compares what the members of a line say with the event that it gives.
Fates fatesOf(const ObjectScan& scan, const LineEvent& event)
{
    Fates fates;
    std::string_view parent;
    for (const ScannedMember& member : scan.members) {
        parent = member.isInner ? parent : member.key;
        fates.isNameChanged = fates.isNameChanged || member.keyFault != Fault::None;
        const Role role = roleOf(member, parent);
        if (member.keyFault != Fault::None) {
            continue;
        }
        if (role == Role::Other) {
            fates.others.push_back(member.key);
        } else if (role == Role::Code) {
            addCode(fates, member, event);
        } else if (role == Role::Time) {
            addText(fates, member, !event.time.empty(), event.time);
        } else if (role == Role::Variable) {
            const bool isGiven = event.variables.isText(member.key);
            addText(fates, member, isGiven, isGiven ? event.variables.text(member.key) : "");
        } else if (member.isRead && member.type != JsonType::Object) {
            addPart(fates.wrongType, "vars is not an object, so the event has no variables");
        } else if (!member.isRead && member.value.empty() && &member == &scan.members.back()) {
            fates.lost.push_back(member.key);
        }
    }
    return fates;
}

// Names of a damaged log may be many, and long.
std::string listOf(const std::vector<std::string_view>& keys)
{
    constexpr std::size_t kMostKeys = 12;
    constexpr std::size_t kMostBytes = 40;
    std::string list;
    for (std::size_t i = 0; i < std::min(keys.size(), kMostKeys); ++i) {
        list += i == 0 ? "" : i + 1 == keys.size() ? " and " : ", ";
        list += keys[i].substr(0, kMostBytes);
        list += keys[i].size() > kMostBytes ? "..." : "";
    }
    return list + (keys.size() > kMostKeys ? " and others" : "");
}

// Which event an object is, as far as it says so: " (1031, Nov 18 05:04:30)".
std::string nameOf(std::string_view object)
{
    ObjectScan scan;
    jsonaccess::scanObject(object, scan);
    std::string code;
    std::string time;
    for (const ScannedMember& member : scan.members) {
        const bool isGiven = !member.isInner && !member.value.empty();
        if (isGiven && member.key == "id") {
            code = listOf({member.value});
        } else if (isGiven && member.key == "time") {
            time = ", " + listOf({member.value});
        }
    }
    return code.empty() ? "" : " (" + code + time + ')';
}

void addValues(std::string& effect, const std::vector<std::string_view>& keys, const char* one,
               const char* several)
{
    if (!keys.empty()) {
        addPart(effect, (keys.size() == 1 ? "the value of " : "the values of ") + listOf(keys) +
                            (keys.size() == 1 ? one : several));
    }
}

bool hasWord(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
}

// Whether `text` begins with a key and its colon.
bool beginsWithKey(std::string_view text)
{
    const std::size_t end = text.find('"', 1);
    return !text.empty() && text.front() == '"' && end != std::string_view::npos &&
           text.substr(end + 1, 1) == ":";
}

} // namespace

std::optional<Finding> findingOf(std::string_view object, const LineEvent* event)
{
    static ObjectScan scan; // its memory is used again
    if (object.empty()) {
        return Finding{kNoEvent, "no object, so no event is shown"};
    }
    jsonaccess::scanObject(object, scan);
    const bool isWhole = scan.stop == Fault::None;
    const std::size_t more = std::min(object.find_first_not_of(kBlanks, scan.end), object.size());
    const std::string_view rest = object.substr(isWhole ? more : scan.end);
    const std::size_t second = findEvent(object, isWhole ? scan.end : scan.lastToken + 1);
    const bool hasSecond = second != std::string_view::npos;
    const char* kind = kindOf(scan.fault);
    if (hasSecond || (isWhole && !rest.empty() && rest.front() == '{')) {
        kind = kMoreObjects;
    } else if (kind == nullptr && !rest.empty()) {
        kind = kindOf(Fault::Syntax);
    }
    if (event == nullptr) {
        const bool hasNoCode = isWhole && kind != kMoreObjects;
        return hasNoCode ? Finding{kNoEvent, "no code, so no event is shown"}
                         : Finding{kind, "no event is shown"};
    }
    const std::size_t damageEnd = std::min(second, object.size());
    if (damageEnd > scan.end) {
        jsonaccess::findMembers(object.substr(scan.end, damageEnd - scan.end), scan);
    }
    Fates fates = fatesOf(scan, *event);
    if (kind == nullptr && fates.wrongType.empty() && fates.noText.empty()) {
        return std::nullopt;
    }
    if (kind != nullptr) {
        fates.lost.insert(fates.lost.end(), fates.others.begin(), fates.others.end());
    }
    // What the last string or number before the damage has lost or taken in cannot be seen.
    const char* const last = object.data() + scan.lastToken;
    bool isKey = !isWhole && *last == '"';
    std::string uncertain;
    for (const ScannedMember& member : scan.members) {
        const std::size_t quote = member.value.data() == last + 1 ? 1 : 0;
        if (member.value.empty() || member.value.data() != last + quote) {
            continue;
        }
        isKey = false;
        const bool isStop = isWhole ? kind != kMoreObjects && !scan.members.back().isRead
                                    : scan.fault != Fault::CutOff;
        if (second < scan.end) {
            fates.changed.push_back(member.key);
        } else if (isStop && fates.early.empty() && fates.changed.empty() &&
                   (!beginsWithKey(object.substr(more)) ||
                    (quote == 0 && member.value.end() == object.data() + scan.end))) {
            uncertain = "the value of " + listOf({member.key}) + " may be wrong";
        }
    }
    std::string effect = fates.code;
    addPart(effect, fates.isNameChanged ? "a name is changed" : "");
    addValues(effect, fates.lost, " is lost", " are lost");
    addValues(effect, fates.early, " ends at a zero byte", " end at zero bytes");
    addValues(effect, fates.changed, " is changed", " are changed");
    addPart(effect,
            scan.fault == Fault::ZeroBytes ? "what was in the place of zero bytes is lost" : "");
    addPart(effect, uncertain);
    addPart(effect, fates.wrongType);
    addValues(effect, fates.noText, " is not a string and is not shown",
              " are not strings and are not shown");
    const bool isCut = !isWhole && (hasSecond || more == object.size());
    const bool isMore =
        isKey || (damageEnd > scan.end && hasWord(object.substr(scan.end, damageEnd - scan.end)));
    const bool isLeft = isWhole && !rest.empty() && kind != kMoreObjects;
    if (isCut && effect.empty() && !scan.members.empty()) {
        effect = "what followed " + listOf({scan.members.back().key}) + " is lost";
    } else {
        addPart(effect, isCut    ? "what followed is lost"
                        : isMore ? "what follows is lost"
                        : isLeft ? "what is missing or wrong cannot be seen"
                                 : "");
    }
    addPart(effect,
            hasSecond ? "a second event" + nameOf(object.substr(second)) + " is not shown" : "");
    return Finding{kind != nullptr ? kind : kWrongType,
                   effect.empty() ? "nothing is lost" : effect};
}

std::vector<Note> notesOf(const LineEvent& event)
{
    std::vector<Note> notes;
    if (knownEventName(event.code).empty()) {
        notes.push_back({"code without a name", std::to_string(event.code)});
    }
    if (event.description == nullptr) {
        return notes;
    }
    for (const Slot& slot : event.description->slots) {
        if (!event.variables.isText(slot.key)) {
            notes.push_back(
                {"missing variable", std::string(knownEventName(event.code)) + ' ' + slot.key});
            continue;
        }
        const ReasonTable* const table = reasonsFor(slot.key);
        const std::string_view name = event.variables.text(slot.key);
        const auto isNamed = [name](const Reason& reason) { return reason.name == name; };
        if (table != nullptr && std::none_of(table->begin(), table->end(), isNamed)) {
            notes.push_back({"unknown reason", slot.key + (' ' + std::string(name))});
        }
    }
    return notes;
}

} // namespace eventsviewer
