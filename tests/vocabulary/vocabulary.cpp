#include "vocabulary/vocabulary.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <stdexcept>

namespace eventsviewer::vocabulary {

namespace {

constexpr const char* kEventNameRow = "([0-9]+) (\\w+)";
constexpr const char* kReasonRow = "(\\w+) (\\w+) \"(.*)\"";
constexpr const char* kDescriptionRow = "([0-9]+) \"(.*)\"";
constexpr const char* kSlot = "\\{(\\w+)(?::(\\w+))?\\}";

std::string withEach(std::string text, const std::string& part, const std::string& replacement)
{
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos;) {
        text.replace(at, part.size(), replacement);
        at += replacement.size();
    }
    return text;
}

/// The result of `toRow` for each line of `file`; comments are skipped. `mayFollow` tells whether a
/// row is allowed after the rows before it.
template <typename Row, typename ToRow, typename MayFollow>
std::vector<Row> readRows(const char* file, const char* form, ToRow toRow, MayFollow mayFollow)
{
    std::ifstream stream(std::string(ROOT_FOLDER "/") + file);
    if (!stream.good()) {
        throw std::runtime_error(std::string(file) + ": cannot be read");
    }
    const std::regex rowForm(form);
    std::vector<Row> rows;
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (line.substr(0, 1) == "#") {
            continue;
        }
        std::smatch fields;
        if (!std::regex_match(line, fields, rowForm)) {
            throw std::runtime_error(std::string(file) + ":" + std::to_string(number) +
                                     ": not a row: " + line);
        }
        const Row row = toRow(fields);
        if (!mayFollow(rows, row)) {
            throw std::runtime_error(std::string(file) + ":" + std::to_string(number) +
                                     ": out of order, or there twice: " + line);
        }
        rows.push_back(row);
    }
    return rows;
}

template <typename Row> bool hasHigherCode(const std::vector<Row>& rows, const Row& row)
{
    return rows.empty() || rows.back().code < row.code;
}

// The rows of a table follow one another.
bool isNewReason(const std::vector<Reason>& rows, const Reason& row)
{
    const bool tableGoesOn = !rows.empty() && rows.back().table == row.table;
    return std::none_of(rows.begin(), rows.end(), [&](const Reason& other) {
        return other.table == row.table && (!tableGoesOn || other.name == row.name);
    });
}

EventName toEventName(const std::smatch& fields)
{
    return {std::stoi(fields[1]), fields[2]};
}

Reason toReason(const std::smatch& fields)
{
    return {fields[1], fields[2], fields[3]};
}

Description toDescription(const std::smatch& fields)
{
    Description description = {std::stoi(fields[1]), {}, {}};
    const std::string text = withEach(fields[2], "\\n", "\n");
    const std::regex slot(kSlot);
    auto rest = text.begin();
    for (std::sregex_iterator match(text.begin(), text.end(), slot), end; match != end; ++match) {
        description.pieces.emplace_back(rest, (*match)[0].first);
        description.slots.push_back({(*match)[1], (*match)[2]});
        rest = (*match)[0].second;
    }
    description.pieces.emplace_back(rest, text.end());
    return description;
}

} // namespace

const std::vector<EventName>& eventNames()
{
    static const auto rows =
        readRows<EventName>(kEventNamesFile, kEventNameRow, toEventName, hasHigherCode<EventName>);
    return rows;
}

const std::vector<Reason>& reasons()
{
    static const auto rows = readRows<Reason>(kReasonsFile, kReasonRow, toReason, isNewReason);
    return rows;
}

const std::vector<Description>& descriptions()
{
    static const auto rows = readRows<Description>(kDescriptionsFile, kDescriptionRow,
                                                   toDescription, hasHigherCode<Description>);
    return rows;
}

std::ptrdiff_t valueOf(const Reason& reason)
{
    const std::vector<Reason>& rows = reasons();
    const auto isOfTable = [&](const Reason& other) { return other.table == reason.table; };
    const auto first = std::find_if(rows.begin(), rows.end(), isOfTable);
    return std::find_if(first, rows.end(),
                        [&](const Reason& other) { return other.name == reason.name; }) -
           first;
}

std::string asRow(const EventName& event)
{
    return std::to_string(event.code) + ' ' + event.name;
}

std::string asRow(const Reason& reason)
{
    return reason.table + ' ' + reason.name + " \"" + reason.explanation + '"';
}

std::string asRow(const Description& description)
{
    std::string text = description.pieces.front();
    for (std::size_t i = 0; i < description.slots.size(); ++i) {
        const Slot& slot = description.slots[i];
        text += '{' + slot.key + (slot.table.empty() ? "" : ':' + slot.table) + '}' +
                description.pieces[i + 1];
    }
    return std::to_string(description.code) + " \"" + withEach(text, "\n", "\\n") + '"';
}

} // namespace eventsviewer::vocabulary
