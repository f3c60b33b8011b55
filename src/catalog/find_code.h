#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace eventsviewer {

/// The row of `rows` with exactly this `code`; null if there is none. The rows ascend by code.
template <typename Row, std::size_t rowCount>
const Row* findCode(const Row (&rows)[rowCount], std::int32_t code)
{
    const Row* const row = std::lower_bound(
        std::begin(rows), std::end(rows), code,
        [](const Row& candidate, std::int32_t wanted) { return candidate.code < wanted; });
    return row != std::end(rows) && row->code == code ? row : nullptr;
}

} // namespace eventsviewer
