#include "query/counts.h"

#include "catalog/event_names.h"
#include "eventlog/stamp.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
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

Counts::Counts(const std::vector<CountKey>& keys)
    : keys_(keys),
      time_(static_cast<std::size_t>(std::find_if(keys.begin(), keys.end(), isTime) - keys.begin()))
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
    for (const CountKey key : keys_) {
        values.emplace_back(valueOf(key, event));
    }
    ++counts_[std::move(values)];
}

void Counts::addToRow(std::string_view event, std::string_view log, std::uint64_t count)
{
    Values values;
    for (const CountKey key : keys_) {
        values.emplace_back(key == CountKey::Log ? log : event);
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
    for (const auto& [code, count] : std::exchange(otherCodes_, {})) {
        addToRow(eventNameFor(code), path, count);
    }
    if (isRead) {
        logs_.push_back(path);
    }
}

void Counts::addEmptyLogs()
{
    const auto log = std::find(keys_.begin(), keys_.end(), CountKey::Log);
    std::set<std::string> logs;
    for (const auto& row : counts_) {
        if (log != keys_.end()) {
            logs.insert(row.first[static_cast<std::size_t>(log - keys_.begin())]);
        }
    }
    for (const std::string& path : logs_) {
        if (log != keys_.end() && logs.count(path) == 0) {
            addToRow("", path, 0);
        }
    }
}

// In the order of time, and the most frequent first. Between two times, those without an event have
// rows too.
std::vector<Counts::Row> Counts::orderedRows() const
{
    std::vector<Row> counted;
    for (const auto& [values, count] : counts_) {
        counted.push_back({values, count});
    }
    const auto timeOf = [this](const Row& row) {
        return time_ < keys_.size() ? std::string_view(row.values[time_]) : std::string_view();
    };
    std::sort(counted.begin(), counted.end(), [timeOf](const Row& one, const Row& other) {
        return std::forward_as_tuple(timeOf(one), other.count, one.values) <
               std::forward_as_tuple(timeOf(other), one.count, other.values);
    });
    std::vector<Row> rows;
    for (Row& row : counted) {
        if (!rows.empty()) {
            for (const std::string& period : periodsBetween(timeOf(rows.back()), timeOf(row))) {
                rows.push_back({Values(keys_.size()), 0});
                rows.back().values[time_] = period;
            }
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

void Counts::appendTable(std::string& out, const std::vector<Row>& rows, std::size_t width) const
{
    std::vector<std::size_t> columns(keys_.size());
    std::uint64_t most = 1;
    for (const Row& row : rows) {
        most = std::max(most, row.count);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i] = std::max(columns[i], columnsOf(oneLine(row.values[i])) + 1);
        }
    }
    const std::size_t digits = std::to_string(most).size();
    const std::size_t others = std::accumulate(columns.begin(), columns.end(), digits + 1);
    const std::size_t bar = std::max(width, others + kLeastBar) - others;
    for (const Row& row : rows) {
        const std::string count = std::to_string(row.count);
        const std::size_t length = static_cast<std::size_t>((row.count * bar + most - 1) / most);
        std::string line = std::string(digits - count.size(), ' ') + count + ' ';
        line += std::string(length, '#');
        std::size_t padding = bar - length;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const std::string value = ' ' + oneLine(row.values[i]);
            line += std::string(padding, ' ') + value;
            padding = columns[i] - columnsOf(value);
        }
        line.resize(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    }
}

bool Counts::write(std::string& out, Format format, const Layout& layout)
{
    addEmptyLogs();
    const std::vector<Row> rows = orderedRows();
    if (format == Format::Table) {
        appendTable(out, rows, layout.width != 0 ? layout.width : kUsualWidth);
    } else {
        std::vector<Field> fields = {{"count", "", true}};
        for (const CountKey key : keys_) {
            fields.push_back({kNames[static_cast<std::size_t>(key)]});
        }
        appendHeader(out, format, fields);
        for (const Row& row : rows) {
            fields[0].value = std::to_string(row.count);
            for (std::size_t i = 0; i < keys_.size(); ++i) {
                fields[i + 1].value = row.values[i];
            }
            appendRecord(out, format, fields);
        }
    }
    return std::any_of(rows.begin(), rows.end(), [](const Row& row) { return row.count > 0; });
}

} // namespace eventsviewer::query
