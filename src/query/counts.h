#pragma once

#include "query/event_view.h"
#include "query/writers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eventsviewer::query {

/// By what events are counted; the names are those of the option.
enum class CountKey { Event, Detail, Reason, Log, Day, Hour };

/// Whether events are counted by their time, which needs the year.
inline bool isTime(CountKey key)
{
    return key == CountKey::Day || key == CountKey::Hour;
}

/// Takes the one or two keys that `names` lists. Returns what is wrong, or nothing.
std::string takeCountKeys(std::string_view names, std::vector<CountKey>& keys);

/// Counts events by one or two of their values.
class Counts {
public:
    explicit Counts(const std::vector<CountKey>& keys);

    /// Whether there is no key.
    bool isEmpty() const { return keys_.empty(); }

    /// Whether addCode can take the place of add.
    bool needsCodesOnly() const { return !codes_.empty(); }

    void add(const EventView& event);

    /// Counts an event of the log that addLog names next.
    void addCode(std::int32_t code)
    {
        ++(static_cast<std::uint32_t>(code) < kUsualCodes ? codes_[static_cast<std::uint32_t>(code)]
                                                          : otherCodes_[code]);
    }

    /// Ends a log. Even if nothing is counted in it, it has a row, unless `isRead` is false.
    void addLog(const std::string& path, bool isRead);

    /// Adds all rows, and returns whether any event was counted. In a table each count has a bar:
    ///
    ///     12 ################ MODEM_TX_MUTED
    ///      3 ####             MODEM_RESET
    bool write(std::string& out, Format format, const Layout& layout);

private:
    static constexpr std::size_t kUsualCodes = 4096; // all known ones, and more
    using Values = std::array<std::string, 2>;       // the second is empty if there is one key
    using Row = std::pair<Values, std::uint64_t>;

    void addToRow(std::string_view event, std::string_view log, std::uint64_t count);
    std::list<Row> orderedRows();
    void appendTable(std::string& out, const std::list<Row>& rows, std::size_t width) const;

    std::vector<CountKey> keys_;
    std::map<Values, std::uint64_t> counts_;
    std::vector<std::uint64_t> codes_; // empty if codes are not enough
    std::map<std::int32_t, std::uint64_t> otherCodes_;
    std::set<std::string> logs_; // that were read
};

} // namespace eventsviewer::query
