#include "query/writers.h"

#include "eventlog/terminal.h"
#include "jsonaccess/json_content.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace eventsviewer::query {

namespace {

// For grep, sort and cut.
void appendLine(std::string& out, const EventView& event)
{
    out += safe(event.time()) + '\t';
    out += event.name();
    out += '\t' + oneLine(event.wholeDetail());
    out += '\t' + safe(event.log->text) + '\n';
}

// A field of RFC 4180.
void appendField(std::string& out, std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (std::size_t quote = 0; (quote = text.find('"')) != std::string_view::npos;) {
        out += text.substr(0, quote + 1);
        out += '"';
        text.remove_prefix(quote + 1);
    }
    out += text;
    out += '"';
}

void appendCsv(std::string& out, const EventView& event)
{
    out += event.at;
    out += ',';
    appendField(out, event.time());
    out += ',' + std::to_string(event.code()) + ',';
    out += event.name();
    out += ',';
    std::string made;
    std::string variables(event.variables().json(made));
    for (std::size_t at = 0; (at = variables.find('\x7f', at)) != std::string::npos;) {
        variables.replace(at, 1, R"(\u007f)"); // the only control character that JSON has as it is
    }
    for (const std::string_view field :
         {event.detail(), std::string_view(variables), event.reason().name,
          event.reason().explanation, std::string_view(event.file->text)}) {
        appendField(out, field);
        out += ',';
    }
    out += std::to_string(event.line) + ',';
    appendField(out, event.log->text);
    out += "\r\n";
}

// Memory for one row of JSON, which is used again for the next.
class JsonRow {
public:
    explicit JsonRow(std::size_t mostBytes)
    {
        static std::string memory;
        memory.resize(std::max(mostBytes, memory.size()));
        begin_ = end_ = memory.data();
    }
    std::string_view text() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }
    void add(std::string_view text) { end_ = std::copy(text.begin(), text.end(), end_); }
    void addContent(std::string_view before, std::string_view content)
    {
        add(before);
        end_ = content.empty() ? end_ : jsonaccess::putJsonContent(end_, content);
    }
    void addJson(std::string_view json) { end_ = jsonaccess::putJson(end_, json); }
    template <typename Number> void addNumber(std::string_view before, Number number)
    {
        add(before);
        end_ = std::to_chars(end_, end_ + kMostDigits, number).ptr;
    }

private:
    static constexpr std::ptrdiff_t kMostDigits = 24;
    char* begin_;
    char* end_;
};

void appendObject(std::string& out, const EventView& event)
{
    constexpr std::size_t kKeys = 256; // bytes that the keys and the numbers take at the most
    std::string made;
    const std::string_view variables = event.variables().json(made);
    JsonRow row(kKeys + event.name().size() +
                jsonaccess::mostJsonBytes(event.time().size() + event.detail().size() +
                                          variables.size() + event.reason().name.size() +
                                          event.reason().explanation.size()) +
                event.file->json.size() + event.log->json.size());
    row.add(R"({"at":")");
    row.add(event.at);
    row.addContent(R"(","time":")", event.time());
    row.addNumber(R"(","code":)", event.code());
    row.add(R"(,"event":")");
    row.add(event.name());
    row.addContent(R"(","detail":")", event.detail());
    row.add(R"(","vars":)");
    row.addJson(variables);
    row.addContent(R"(,"reason":")", event.reason().name);
    row.addContent(R"(","meaning":")", event.reason().explanation);
    row.add(R"(","file":")");
    row.add(event.file->json);
    row.addNumber(R"(","line":)", event.line);
    row.add(R"(,"log":")");
    row.add(event.log->json);
    row.add("\"}\n");
    out += row.text();
}

} // namespace

std::string headerOf(Format format)
{
    return format == Format::Csv ? "at,time,code,event,detail,vars,reason,meaning,file,line,log\r\n"
                                 : "";
}

std::string oneLine(std::string_view text)
{
    std::string line;
    const char* before = "";
    for (std::size_t end = 0; end != std::string_view::npos; before = " | ") {
        end = text.find('\n');
        line += before + safe(text.substr(0, end));
        text.remove_prefix(end != std::string_view::npos ? end + 1 : 0);
    }
    return line;
}

void appendRecord(std::string& out, Format format, const std::vector<Field>& fields)
{
    const bool isJson = format == Format::Json;
    const char* before = isJson ? "{" : "";
    for (const Field& field : fields) {
        out += before;
        before = ",";
        if (!isJson) {
            appendField(out, field.value);
            continue;
        }
        const char* const quote = field.isNumber ? "" : "\"";
        out += '"';
        out += field.name;
        out += "\":";
        out += quote + jsonaccess::jsonContent(field.value) + quote;
    }
    out += isJson ? "}\n" : "\r\n";
}

void appendEvent(std::string& out, Format format, const Layout& layout, const EventView& event)
{
    switch (format) {
    case Format::Table:
        return appendTableRow(out, layout, event);
    case Format::Lines:
        return appendLine(out, event);
    case Format::Csv:
        return appendCsv(out, event);
    case Format::Json:
        return appendObject(out, event);
    case Format::Html:
        return; // Page has its rows
    }
}

} // namespace eventsviewer::query
