// every_text_test CHARACTERS PIECES: reads every text of up to CHARACTERS characters, and every
// text of up to PIECES pieces of JSON, as a plain object. Each text that is taken for one has to
// give what JsonCpp gives: the members, their compact form, and the event. A text that is refused
// is not compared, since the program then asks JsonCpp.
//
// The reader goes from left to right. So if it stops at a byte, all texts that begin in the same
// way are refused as well and need not be read. Those of up to kAlwaysRead symbols are
// extended nevertheless, to check this.

#include "eventlog/event_line.h"
#include "jsonaccess/plain_object.h"
#include "support/captured_cout.h"
#include "support/printable.h"

#include <json/json.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer {

namespace {

using jsonaccess::PlainKind;
using jsonaccess::PlainMember;
using jsonaccess::PlainMembers;
using jsonaccess::PlainObject;

// After the closing brace, every combination of up to this many symbols follows.
constexpr std::size_t kTail = 2;
constexpr std::size_t kAlwaysRead = 3;

const std::vector<std::string> kCharacters = {
    "{", "}", "\"", ":", ",", " ", "\t", "\\", "/",    "*",    "[",    "i",
    "d", "n", "0",  "7", "-", ".", "e",  "\n", "\x1f", "\x7f", "\x80",
};
const std::vector<std::string> kPieces = {
    // clang-format off
    "{", "}", ":", ",", " ", "\t", "/**/", "\"id\":", "\"time\":\"t\"", "\"vars\":", "\"vars\":{", "\"vars\":{\"a\":\"1\"}", "\"id\":{}", "{}",
    "\"id\":7", "\"vars\":\"x\"", "\"c\":{\"a\":\"1\"}",
    "\"a\":\"1\"", "\"a\":\"long\"", "\"b\":\"2\"", "\"\":\"\"", "\"x\"", "7", "009", "123456789",
    "1234567890", "-1", "1.5", "null", "\"\\n\"", "\"\x01\"", "\"\x1f\"", "\"\t\"", "\"\x7f\"", "\"\xc3\xa9\"", "\"\x80\"", "\"\xff\"",
    // clang-format on
};

[[noreturn]] void fail(std::string_view text, const char* what)
{
    std::fprintf(stderr, "not what JsonCpp gives: %s, of: %s\n", what, printable(text).c_str());
    std::exit(1);
}

void check(bool same, std::string_view text, const char* what)
{
    if (!same) {
        fail(text, what);
    }
}

// JsonCpp by itself, with the settings of the program.
class Library {
public:
    Library()
    {
        Json::CharReaderBuilder readers;
        readers["allowTrailingCommas"] = false;
        readers["skipBom"] = false;
        reader_.reset(readers.newCharReader());
        Json::StreamWriterBuilder writers;
        writers["indentation"] = "";
        writer_.reset(writers.newStreamWriter());
    }

    bool parse(std::string_view text, Json::Value& root)
    {
        return reader_->parse(text.data(), text.data() + text.size(), &root, &errors_) &&
               errors_.empty();
    }

    std::string write(const Json::Value& value)
    {
        stream_.str({});
        writer_->write(value, &stream_);
        return stream_.str();
    }

private:
    std::unique_ptr<Json::CharReader> reader_;
    std::unique_ptr<Json::StreamWriter> writer_;
    std::ostringstream stream_;
    Json::String errors_;
};

class Comparison {
public:
    explicit Comparison(const std::vector<std::string>& symbols) : symbols_(symbols) {}

    void run(std::size_t length)
    {
        extend(length, kTail);
        const double all = (std::pow(symbols_.size(), length + 1) - 1) /
                           (static_cast<double>(symbols_.size()) - 1);
        std::printf(
            "%zu symbols, up to %zu of them: %.3g texts, of which %zu were read (the others "
            "begin with one that is refused), and %zu compared with JsonCpp\n",
            symbols_.size(), length, all, read_, compared_);
    }

private:
    // Reads the text, and every longer one that may be taken for an object.
    void extend(std::size_t left, std::size_t tail)
    {
        const bool taken = readText();
        if (!taken && !undecided_ && size_ > kAlwaysRead) {
            return;
        }
        if (left == 0 || (taken && tail == 0)) {
            return;
        }
        const bool decided = !taken && !undecided_;
        const std::size_t stopped = stopped_;
        const std::size_t bytes = text_.size();
        ++size_;
        for (const std::string& symbol : symbols_) {
            text_ += symbol;
            extend(left - 1, taken ? tail - 1 : tail);
            if (decided && (undecided_ || stopped_ != stopped)) {
                fail(text_, "decided otherwise after more was read");
            }
            text_.resize(bytes);
        }
        --size_;
        stopped_ = stopped;
        undecided_ = !taken && !decided;
    }

    // Whether the text is taken for a plain object, which is then compared.
    bool readText()
    {
        ++read_;
        // In an allocation of exactly its size, so that sanitizers notice a read past its end.
        const std::size_t size = text_.size();
        if (size > exact_.size()) {
            exact_.resize(size);
            exact_.shrink_to_fit();
        }
        char* const begin = exact_.data() + (exact_.size() - size);
        std::copy(text_.begin(), text_.end(), begin);
        const std::string_view text(begin, size);

        const char* end = nullptr;
        const auto object = jsonaccess::readPlainObject(text, &end);
        const char* endOfStrings = nullptr;
        const auto strings = jsonaccess::readPlainTexts(text, &endOfStrings);
        stopped_ = static_cast<std::size_t>(end - begin);
        undecided_ = !object.has_value() && stopped_ == size;
        if (object.has_value()) {
            compare(text, *object);
            check(!strings.has_value() || end == endOfStrings, text,
                  "the end of an object of strings");
        }
        check(strings.has_value() == (object.has_value() && isOfTexts(object->members)), text,
              "an object of strings");
        return object.has_value();
    }

    static bool isOfTexts(const PlainMembers& members)
    {
        return std::all_of(members.begin(), members.end(), [](const PlainMember& member) {
            return member.kind == PlainKind::Text;
        });
    }

    void compare(std::string_view text, const PlainObject& object)
    {
        ++compared_;
        Json::Value root;
        check(library_.parse(text, root), text, "no error");
        check(root.isObject(), text, "an object");
        compareMembers(text, object.members, root, object);
        compareEvent(text, root);
    }

    void compareMembers(std::string_view text, const PlainMembers& members,
                        const Json::Value& value, const PlainObject& object)
    {
        for (const PlainMember& member : members) {
            check(value.isMember(std::string(member.key)), text, "a member");
        }
        Json::Value bare(Json::objectValue); // without a comment after the object
        for (const std::string& key : value.getMemberNames()) {
            bare[key] = value[key];
            const PlainMember* const member = members.find(key);
            check(member != nullptr, text, "a member that is missing");
            const Json::Value& read = value[key];
            switch (member->kind) {
            case PlainKind::Text:
                check(read.isString() && read.asString() == member->text, text, "a text");
                break;
            case PlainKind::Number:
                check(read.type() == Json::intValue && read.asInt() == member->number, text,
                      "a number");
                break;
            case PlainKind::Object:
                check(read.isObject(), text, "an inner object");
                compareMembers(text, object.inner, read, object);
                break;
            }
        }
        if (isOfTexts(members)) {
            jsonaccess::writeTexts(members, json_);
            check(json_ == library_.write(bare), text, "the compact form");
        }
    }

    void compareEvent(std::string_view text, const Json::Value& root)
    {
        const CapturedCout printed;
        const auto event = parseEventLine(text);
        check((event != nullptr) == root.isMember("id"), text, "whether there is an event");
        if (event == nullptr) {
            return;
        }
        const Json::Value& time = root["time"];
        const Json::Value& variables = root["vars"];
        if (root["id"].isInt()) {
            check(event->code == root["id"].asInt(), text, "the code");
        }
        check(printed.text().empty() == root["id"].isInt(), text, "the diagnostic of the code");
        check(event->time == (time.isString() ? time.asString() : ""), text, "the time");
        check(event->details.characters() ==
                  (variables.isObject() ? library_.write(variables) : std::string("{}")),
              text, "the details");
    }

    const std::vector<std::string>& symbols_;
    Library library_;
    std::string text_;
    std::size_t size_ = 0; // in symbols
    std::vector<char> exact_;
    std::string json_;
    std::size_t stopped_ = 0;
    bool undecided_ = false; // whether the text ended before it could be taken or refused
    std::size_t read_ = 0;
    std::size_t compared_ = 0;
};

} // namespace

} // namespace eventsviewer

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: every_text_test CHARACTERS PIECES\n", stderr);
        return 2;
    }
    eventsviewer::Comparison(eventsviewer::kCharacters).run(std::strtoul(argv[1], nullptr, 10));
    eventsviewer::Comparison(eventsviewer::kPieces).run(std::strtoul(argv[2], nullptr, 10));
}
