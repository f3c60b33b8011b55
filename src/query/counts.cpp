#include "query/counts.h"

#include "catalog/event_names.h"
#include "eventlog/stamp.h"
#include "eventlog/terminal.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace eventsviewer::query {

namespace {

constexpr const char* kNames[] = {"event", "detail", "reason", "log", "day", "hour"};
constexpr std::string_view kUnknownTime = "?"; // comes after all times
constexpr std::size_t kLeastBar = 10;

std::string_view valueOf(CountKey key, const EventView& event)
{
    switch (key) {
    case CountKey::Event:
        return event.name();
    case CountKey::Detail:
        return event.detail();
    case CountKey::Reason:
        return event.reason().name;
    case CountKey::Log:
        return event.log->text;
    case CountKey::Day:
    case CountKey::Hour:
        break;
    }
    const std::size_t length = key == CountKey::Day ? kIsoDayLength : kIsoHourLength;
    return event.at.empty() ? kUnknownTime : event.at.substr(0, length);
}

} // namespace

std::string takeCountKeys(std::string_view names, std::vector<CountKey>& keys)
{
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = names.find(',');
        const auto* const name =
            std::find(std::begin(kNames), std::end(kNames), names.substr(0, comma));
        names.remove_prefix(comma != std::string_view::npos ? comma + 1 : 0);
        if (name == std::end(kNames) || keys.size() == 2) {
            return "give event, detail, reason, log, day or hour, or two of them";
        }
        keys.push_back(static_cast<CountKey>(name - std::begin(kNames)));
    }
    const bool areTimes = isTime(keys.front()) && isTime(keys.back());
    const bool areSame = keys.front() == keys.back() || areTimes;
    return keys.size() == 2 && areSame ? "one of the two says it all" : "";
}

Counts::Counts(const std::vector<CountKey>& keys) : keys_(keys)
{
    const auto isOfCode = [](CountKey key) {
        return key == CountKey::Event || key == CountKey::Log;
    };
    codes_.resize(!keys.empty() && std::all_of(keys.begin(), keys.end(), isOfCode) ? kUsualCodes
                                                                                   : 0);
}

void Counts::add(const EventView& event)
{
    Values values;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        values[i] = valueOf(keys_[i], event);
    }
    ++counts_[values];
}

void Counts::addToRow(std::string_view event, std::string_view log, std::uint64_t count)
{
    Values values;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        values[i] = keys_[i] == CountKey::Log ? log : event;
    }
    counts_[std::move(values)] += count;
}

void Counts::addLog(const std::string& path, bool isRead)
{
    for (std::size_t code = 0; code < codes_.size(); ++code) {
        if (const std::uint64_t count = std::exchange(codes_[code], 0); count > 0) {
            addToRow(eventNameFor(static_cast<std::int32_t>(code)), path, count);
        }
    }
    for (const auto& [code, count] : otherCodes_) {
        addToRow(eventNameFor(code), path, count);
    }
    otherCodes_.clear();
    if (isRead) {
        logs_.insert(path);
    }
}

// In the order of time, and the most frequent first. A log, day or hour without an event has a row
// too.
std::list<Counts::Row> Counts::orderedRows()
{
    const auto indexOf = [this](auto isKey) {
        return static_cast<std::size_t>(std::find_if(keys_.begin(), keys_.end(), isKey) -
                                        keys_.begin());
    };
    const std::size_t log = indexOf([](CountKey key) { return key == CountKey::Log; });
    if (log < keys_.size()) {
        for (const auto& row : counts_) {
            logs_.erase(row.first[log]);
        }
        for (const std::string& path : logs_) {
            addToRow("", path, 0);
        }
    }
    std::list<Row> rows(counts_.begin(), counts_.end());
    const std::size_t time = indexOf(isTime);
    const auto timeOf = [this, time](const Row& row) {
        return time < keys_.size() ? std::string_view(row.first[time]) : std::string_view();
    };
    rows.sort([timeOf](const Row& one, const Row& other) {
        return std::forward_as_tuple(timeOf(one), other.second, one.first) <
               std::forward_as_tuple(timeOf(other), one.second, other.first);
    });
    auto before = rows.begin();
    for (auto row = rows.begin(); row != rows.end(); before = row++) {
        for (const std::string& period : periodsBetween(timeOf(*before), timeOf(*row))) {
            rows.insert(row, Row())->first[time] = period;
        }
    }
    return rows;
}

void Counts::appendTable(std::string& out, const std::list<Row>& rows, std::size_t width) const
{
    std::array<std::size_t, 2> columns = {};
    std::uint64_t most = 1;
    for (const auto& [values, count] : rows) {
        most = std::max(most, count);
        for (std::size_t i = 0; i < keys_.size(); ++i) {
            columns[i] = std::max(columns[i], columnsOf(oneLine(values[i])) + 1);
        }
    }
    const std::size_t digits = std::to_string(most).size();
    const std::size_t others = digits + 1 + columns[0] + columns[1];
    const std::size_t bar = std::max(width, others + kLeastBar) - others;
    for (const auto& [values, count] : rows) {
        const std::string number = std::to_string(count);
        const std::size_t length = static_cast<std::size_t>((count * bar + most - 1) / most);
        std::string line(digits - number.size(), ' ');
        line += number + ' ';
        line.append(length, '#');
        std::size_t padding = bar - length;
        for (std::size_t i = 0; i < keys_.size(); ++i) {
            const std::string value = ' ' + oneLine(values[i]);
            line.append(padding, ' ');
            line += value;
            padding = columns[i] - columnsOf(value);
        }
        line.resize(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    }
}

bool Counts::write(std::string& out, Format format, const Layout& layout)
{
    const std::list<Row> rows = orderedRows();
    if (format == Format::Table) {
        appendTable(out, rows, layout.width != 0 ? layout.width : terminalWidth(STDOUT_FILENO));
    } else if (format == Format::Csv) {
        out += "count";
        for (const CountKey key : keys_) {
            out += std::string(",") + kNames[static_cast<std::size_t>(key)];
        }
        out += "\r\n";
    }
    std::uint64_t all = 0;
    for (const auto& [values, count] : rows) {
        all += count;
        if (format != Format::Table) {
            const std::string number = std::to_string(count);
            std::vector<Field> fields = {{"count", number, true}};
            for (std::size_t i = 0; i < keys_.size(); ++i) {
                fields.push_back({kNames[static_cast<std::size_t>(keys_[i])], values[i]});
            }
            appendRecord(out, format, fields);
        }
    }
    return all > 0;
}

} // namespace eventsviewer::query
