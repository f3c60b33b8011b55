#include "reference/log_mutator.h"

#include "reference/log_tokens.h"

#include <algorithm>

namespace eventsviewer::reference {

namespace {

std::string firstReasonOf(const std::string& table)
{
    const std::vector<vocabulary::Reason>& reasons = vocabulary::reasons();
    return std::find_if(reasons.begin(), reasons.end(),
                        [&](const vocabulary::Reason& reason) { return reason.table == table; })
        ->name;
}

} // namespace

std::string LogMutator::pick(const std::vector<std::string_view>& choices)
{
    return std::string(choices[below(choices.size())]);
}

std::string LogMutator::textValue()
{
    return '"' + pick(kWords) + '"';
}

std::string LogMutator::anyValue()
{
    return oneIn(12) ? pick(kOtherValues) : textValue();
}

std::string LogMutator::variables(const vocabulary::Description& description)
{
    std::string text;
    for (const vocabulary::Slot& slot : description.slots) {
        if (oneIn(20)) {
            continue;
        }
        const bool explained = !slot.table.empty() && oneIn(2);
        text += (text.empty() ? "\"" : ",\"") + slot.key +
                "\":" + (explained ? '"' + firstReasonOf(slot.table) + '"' : anyValue());
    }
    if (!text.empty() && oneIn(16)) { // the last of equal keys wins
        const std::string others = variables(description);
        text += ',' + others.substr(1, others.size() - 2);
    }
    return '{' + text + '}';
}

std::string LogMutator::time()
{
    return "\"Nov 20 08:" + std::to_string(10 + below(50)) + ':' + std::to_string(10 + below(50)) +
           '"';
}

// The members in the writer's order, or another one; with spaces after the punctuation, or without.
std::string LogMutator::event()
{
    const std::vector<vocabulary::Description>& descriptions = vocabulary::descriptions();
    const vocabulary::Description& description = descriptions[below(descriptions.size())];
    std::int32_t code = description.code;
    if (oneIn(8)) {
        const std::vector<vocabulary::EventName>& names = vocabulary::eventNames();
        code = oneIn(2) ? names[below(names.size())].code : static_cast<std::int32_t>(below(2000));
    }
    const std::string colon = oneIn(3) ? ": " : ":";
    std::vector<std::string> values = {std::to_string(code), time(), variables(description)};
    if (oneIn(16)) {
        values[below(values.size())] = values[2];
        values[below(values.size())] = pick(kPlainValues);
    }
    std::vector<std::string> members = {"\"id\"" + colon + values[0],
                                        "\"time\"" + colon + values[1],
                                        "\"vars\"" + colon + values[2]};
    if (oneIn(4)) {
        std::rotate(members.begin(), members.begin() + 1, members.end());
    }
    if (oneIn(8)) {
        std::swap(members[1], members[2]);
    }
    const std::string comma = colon == ": " ? ", " : ",";
    return '{' + members[0] + comma + members[1] + comma + members[2] + '}';
}

std::size_t LogMutator::placeIn(const std::string& line)
{
    return below(line.size() + 1);
}

// Where a token begins or ends, often near the beginning.
std::size_t LogMutator::tokenPlaceIn(const std::string& line)
{
    const std::size_t from = oneIn(2) ? below(14) : placeIn(line);
    const std::size_t at = line.find_first_of("{}:,\"", std::min(from, line.size()));
    return at == std::string::npos ? line.size() : at + below(2);
}

void LogMutator::changeBytes(std::string& line)
{
    const std::size_t at = line.empty() ? 0 : below(line.size());
    switch (below(4)) {
    case 0:
        if (!line.empty()) {
            line[at] = static_cast<char>(line[at] ^ (1 << below(8)));
        }
        return;
    case 1:
        line.erase(at, 1 + below(8));
        return;
    case 2:
        line.insert(at, line.substr(placeIn(line), 1 + below(30)));
        return;
    default:
        line.resize(at); // as a power cut leaves it
    }
}

void LogMutator::changeId(std::string& line)
{
    const std::size_t key = line.find("\"id\"");
    if (key == std::string::npos) {
        return;
    }
    const std::size_t value = key + 5;
    switch (below(7)) {
    case 0:
        line.replace(key, 4, pick(kIdKeys));
        return;
    case 1: // a second one after the first
        line.insert(std::min(line.find_last_of('}'), line.size()),
                    ',' + pick(kIdKeys) + ':' + pick(kIdValues));
        return;
    case 2:
        line.insert(std::min(key + 4 + below(2), line.size()), pick(kWhitespace));
        line.insert(key, pick(kWhitespace));
        return;
    case 3: // the number's end
        line.insert(std::min(line.find_first_of(",}", key), line.size()), pick(kWhitespace));
        return;
    case 4:
        if (value <= line.size()) {
            line.replace(key + 4, 1, pick(kNoColons));
        }
        return;
    default:
        if (value <= line.size()) {
            const std::size_t end = std::min(line.find_first_of(",}", value), line.size());
            line.replace(value, end - value, pick(kIdValues));
        }
    }
}

void LogMutator::growToAThousandBytes(std::string& line)
{
    const std::size_t wanted = 990 + below(20);
    if (line.size() < wanted) {
        const std::size_t quote = line.find_last_of('"');
        line.insert(quote == std::string::npos ? 0 : quote, wanted - line.size(), 'x');
    }
}

void LogMutator::mutate(std::string& line)
{
    switch (below(12)) {
    case 0:
    case 1:
        return changeBytes(line);
    case 2:
    case 3:
    case 4:
    case 5:
        return changeId(line);
    case 6:
        line.insert(0, pick(kPrefixes));
        return;
    case 7:
        return growToAThousandBytes(line);
    case 8:
        line += pick(kSuffixes);
        return;
    case 9:
        line.insert(placeIn(line), pick(kTokens));
        return;
    default:
        line.insert(tokenPlaceIn(line), pick(kTokens));
    }
}

std::string LogMutator::line()
{
    if (oneIn(50)) {
        return pick(kShortLines);
    }
    std::string text = event();
    if (oneIn(2)) {
        return text;
    }
    mutate(text);
    while (oneIn(3)) {
        mutate(text);
    }
    // A newline would make two lines of it.
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string LogMutator::deepLine()
{
    const std::size_t depth = 985 + below(25);
    const std::string id = pick({"\"id\":1228,", "\"id\":\"x\",", "", "\"\\u0069d\":7,"});
    const std::string key = pick({"\"vars\":", "\"\":", "\"a\":"});
    return '{' + id + key + std::string(depth, '[') +
           (oneIn(2) ? std::string(depth, ']') + '}' : "");
}

} // namespace eventsviewer::reference
