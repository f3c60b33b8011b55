#include "catalog/event_names.h"

#include "catalog/event_name_table.h"
#include "catalog/find_code.h"
#include "text/shared_text.h"

#include <cinttypes>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace eventsviewer {

namespace {

constexpr std::size_t lengthOfAllNames()
{
    std::size_t length = 0;
    for (const EventName& row : EventNameTable) {
        length += std::string_view(row.name).size();
    }
    return length;
}

struct Row {
    std::int16_t code;
    std::uint16_t nameEnd; // where its name ends in the names of all rows
};

// The EventNameTable without a pointer to each name. The loader would have to relocate each pointer
// at every start, and the relocations would take more of the board's flash than nameEnd does.
struct PackedTable {
    constexpr PackedTable()
    {
        std::size_t end = 0;
        std::size_t row = 0;
        for (const auto& [code, name] : EventNameTable) {
            for (const char c : std::string_view(name)) {
                names[end++] = c;
            }
            rows[row++] = {static_cast<std::int16_t>(code), static_cast<std::uint16_t>(end)};
        }
    }

    Row rows[std::size(EventNameTable)] = {};
    char names[lengthOfAllNames()] = {};
};

static_assert(std::begin(EventNameTable)->code >= 0 &&
                  std::prev(std::end(EventNameTable))->code <= INT16_MAX &&
                  lengthOfAllNames() <= UINT16_MAX,
              "EventNameTable: too large for the numbers of a Row");

constexpr PackedTable kTable;

} // namespace

std::string_view knownEventName(std::int32_t code)
{
    const Row* const row = findCode(kTable.rows, code);
    if (row == nullptr) {
        return {};
    }
    const std::size_t begin = row != std::begin(kTable.rows) ? (row - 1)->nameEnd : 0;
    return {kTable.names + begin, row->nameEnd - begin};
}

std::vector<std::int32_t> knownEventCodes()
{
    std::vector<std::int32_t> codes;
    for (const Row& row : kTable.rows) {
        codes.push_back(row.code);
    }
    return codes;
}

std::string eventNameFor(std::int32_t code)
{
    if (const std::string_view name = knownEventName(code); !name.empty()) {
        return std::string(name);
    }
    return formatText("UNRECOGNIZED_EVENT_CODE_%" PRIu32, static_cast<std::uint32_t>(code))
        .characters();
}

} // namespace eventsviewer
