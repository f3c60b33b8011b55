#include "jsonaccess/object_scan.h"

#include "jsonaccess/json_access.h"
#include "jsonaccess/json_content.h"
#include "jsonaccess/word.h"

#include <algorithm>

namespace eventsviewer::jsonaccess {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr int kMembers = 2; // the level of the members of the object
constexpr int kInner = 3;   // and of those of an object in it

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// SWAR: whether no byte of `word` is a control character, a quote, a backslash or beyond ASCII. May
// report false negatives, never false positives.
bool arePlain(Word word)
{
    const Word others = word | (word - everyByte(' ')) | ((word ^ everyByte('"')) - everyByte(1)) |
                        ((word ^ everyByte('\\')) - everyByte(1));
    return (others & everyByte(0x80)) == 0;
}

class Scanner {
public:
    Scanner(std::string_view text, ObjectScan& scan) : text_(text), scan_(scan) {}

    void scan()
    {
        scan_.members.clear();
        scan_.fault = scan_.stop = Fault::None;
        scan_.lastToken = 0;
        takeObject(kMembers);
        scan_.end = at_;
    }

private:
    bool beginsWith(char wanted) const { return at_ < text_.size() && text_[at_] == wanted; }

    bool take(char wanted)
    {
        const bool found = beginsWith(wanted);
        at_ += found ? 1 : 0;
        return found;
    }

    void add(Fault fault) { scan_.fault = scan_.fault == Fault::None ? fault : scan_.fault; }

    // Always false.
    bool stop(Fault fault)
    {
        scan_.stop = fault;
        add(fault);
        return false;
    }

    // What the byte that cannot be here tells.
    bool stopHere()
    {
        if (at_ >= text_.size()) {
            return stop(Fault::CutOff);
        }
        const char c = text_[at_];
        return stop(c == '\0' ? Fault::ZeroBytes : c > '\x7f' ? Fault::NotUtf8 : Fault::Syntax);
    }

    void skipBlanksAndComments()
    {
        while (at_ < text_.size() && (text_[at_] <= ' ' || text_[at_] == '/')) {
            at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
            const std::string_view begin = text_.substr(at_, 2);
            if (begin != "//" && begin != "/*") {
                return;
            }
            add(Fault::Syntax);
            const bool isLine = begin == "//";
            const std::size_t end = isLine ? text_.find('\r', at_) : text_.find("*/", at_ + 2);
            at_ = end == std::string_view::npos ? text_.size() : end + (isLine ? 0 : 2);
        }
    }

    // Nearly all strings are only this.
    void skipPlain()
    {
        while (text_.size() - at_ >= sizeof(Word) && arePlain(wordAt(text_.data() + at_))) {
            at_ += sizeof(Word);
        }
    }

    bool takeString(std::string_view& content, Fault& fault)
    {
        scan_.lastToken = at_++;
        const std::size_t begin = at_;
        skipPlain();
        while (at_ < text_.size() && text_[at_] != '"') {
            const char c = text_[at_];
            if (c >= ' ' && c <= '\x7f' && c != '\\') {
                ++at_;
                continue;
            }
            Fault found = Fault::None;
            if (c == '\\') {
                found = takeEscape();
            } else if (c < ' ') {
                found = c == '\0' ? Fault::ZeroBytes : Fault::Syntax;
                ++at_;
            } else {
                const Character character = firstCharacter(text_.substr(at_));
                found = character.valid ? Fault::None : Fault::NotUtf8;
                at_ += character.bytes;
            }
            fault = fault == Fault::None ? found : fault;
        }
        content = text_.substr(begin, std::min(at_, text_.size()) - begin);
        if (at_ >= text_.size()) {
            at_ = text_.size();
            return stop(Fault::CutOff);
        }
        add(fault);
        ++at_;
        return true;
    }

    Fault takeEscape()
    {
        unsigned code = 0;
        if (!takeUnit(code)) {
            return Fault::Syntax;
        }
        if (code < 0xd800 || code > 0xdfff) {
            return Fault::None;
        }
        const bool isFirst = code < 0xdc00;
        return isFirst && text_.substr(at_, 2) == "\\u" && takeUnit(code) && code >= 0xdc00 &&
                       code <= 0xdfff
                   ? Fault::None
                   : Fault::Syntax;
    }

    // An escape; `code` is set if it has one.
    bool takeUnit(unsigned& code)
    {
        constexpr std::string_view kHex = "0123456789abcdef";
        const char kind = ++at_ < text_.size() ? text_[at_] : '\0';
        if (kind != 'u') {
            const bool isKnown =
                std::string_view("\"\\/bfnrt").find(kind) != std::string_view::npos;
            at_ += isKnown ? 1 : 0;
            return isKnown;
        }
        ++at_;
        code = 0;
        for (int digits = 0; digits < 4; ++digits, ++at_) {
            const char c = at_ < text_.size() ? text_[at_] : '\0';
            const std::size_t digit =
                kHex.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
            if (digit == std::string_view::npos) {
                return false;
            }
            code = code * 16 + static_cast<unsigned>(digit);
        }
        return true;
    }

    void takeDigits()
    {
        while (at_ < text_.size() && isDigit(text_[at_])) {
            ++at_;
        }
    }

    bool takeNumber(ScannedMember& member)
    {
        const std::size_t begin = scan_.lastToken = at_;
        take('-');
        const std::size_t digits = at_;
        takeDigits();
        bool isRight = at_ > digits && (text_[digits] != '0' || at_ == digits + 1);
        member.type = JsonType::WholeNumber;
        if (beginsWith('.')) {
            const std::size_t fraction = ++at_;
            takeDigits();
            isRight = isRight && at_ > fraction;
            member.type = JsonType::Real;
        }
        if (beginsWith('e') || beginsWith('E')) {
            ++at_;
            at_ += beginsWith('+') || beginsWith('-') ? 1 : 0;
            const std::size_t exponent = at_;
            takeDigits();
            isRight = isRight && at_ > exponent;
            member.type = JsonType::Real;
        }
        member.value = text_.substr(begin, at_ - begin);
        if (at_ == text_.size()) {
            return stop(Fault::CutOff);
        }
        member.fault = isRight ? Fault::None : Fault::Syntax;
        add(member.fault);
        return true;
    }

    bool takeLiteral(ScannedMember& member)
    {
        member.type = JsonType::Literal;
        for (const std::string_view word : {"null", "true", "false"}) {
            const std::string_view rest = text_.substr(at_, word.size());
            if (rest == word) {
                member.value = rest;
                at_ += word.size();
                return true;
            }
            if (at_ + rest.size() == text_.size() && word.substr(0, rest.size()) == rest) {
                at_ = text_.size(); // cut off in the word
            }
        }
        return stopHere();
    }

    bool takeValue(ScannedMember& member, int level)
    {
        skipBlanksAndComments();
        if (at_ >= text_.size()) {
            return stopHere();
        }
        if (level > kMostNesting) {
            return stop(Fault::TooDeep);
        }
        const std::size_t begin = at_;
        const char c = text_[at_];
        if (c == '"') {
            return takeString(member.value, member.fault);
        }
        if (c == '-' || isDigit(c)) {
            return takeNumber(member);
        }
        if (c != '{' && c != '[') {
            return takeLiteral(member);
        }
        member.type = c == '{' ? JsonType::Object : JsonType::Array;
        const bool isTaken = c == '{' ? takeObject(level + 1) : takeArray(level + 1);
        member.value = text_.substr(begin, at_ - begin);
        return isTaken;
    }

    bool takeArray(int level)
    {
        ++at_;
        skipBlanksAndComments();
        if (take(']')) {
            return true;
        }
        do {
            ScannedMember value;
            if (!takeValue(value, level)) {
                return false;
            }
            skipBlanksAndComments();
        } while (take(','));
        return beginsWith(']') ? take(']') : stopHere();
    }

    bool takeObject(int level)
    {
        ++at_;
        skipBlanksAndComments();
        if (take('}')) {
            return true;
        }
        do {
            skipBlanksAndComments();
            if (!beginsWith('"')) {
                return stopHere();
            }
            // Those further inside belong to a value, and are not listed.
            ScannedMember other;
            const std::size_t place = scan_.members.size();
            const bool isListed = level == kMembers || level == kInner;
            if (isListed) {
                other.isInner = level == kInner;
            }
            if (!takeString(other.key, other.keyFault)) {
                return false;
            }
            skipBlanksAndComments();
            if (!take(':')) {
                return stopHere();
            }
            if (isListed) {
                scan_.members.push_back(other);
            }
            const bool isTaken = takeValue(other, level);
            other.isRead = isTaken;
            if (isListed) {
                scan_.members[place] = other;
            }
            if (!isTaken) {
                return false;
            }
            skipBlanksAndComments();
        } while (take(','));
        return beginsWith('}') ? take('}') : stopHere();
    }

    std::string_view text_;
    ObjectScan& scan_;
    std::size_t at_ = 0;
};

} // namespace

void scanObject(std::string_view text, ObjectScan& scan)
{
    Scanner(text, scan).scan();
}

void findMembers(std::string_view text, ObjectScan& scan)
{
    const auto blanksEnd = [text](std::size_t from) {
        return std::min(text.find_first_not_of(std::string_view(" \t\r\0", 4), from), text.size());
    };
    const auto quoteEnd = [text](std::size_t quote) {
        std::size_t end = quote + 1;
        while (end < text.size() && text[end] != '"') {
            end += text[end] == '\\' ? 2 : 1;
        }
        return std::min(end, text.size());
    };
    for (std::size_t at = text.find('"'); at < text.size();) {
        const std::size_t end = quoteEnd(at);
        const std::size_t colon = blanksEnd(end + 1);
        if (colon >= text.size() || text[colon] != ':') {
            at = end; // which may begin a key
            continue;
        }
        ScannedMember member;
        member.key = text.substr(at + 1, end - at - 1);
        const std::size_t begin = blanksEnd(colon + 1);
        const bool isText = begin < text.size() && text[begin] == '"';
        const std::size_t valueEnd =
            isText ? quoteEnd(begin) : std::min(text.find_first_of(",}]{[\"", begin), text.size());
        member.value = text.substr(begin + (isText ? 1 : 0), valueEnd - begin - (isText ? 1 : 0));
        scan.members.push_back(member);
        at = text.find('"', valueEnd + (isText ? 1 : 0));
    }
}

} // namespace eventsviewer::jsonaccess
