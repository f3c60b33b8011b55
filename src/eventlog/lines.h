#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace eventsviewer {

/// The position of the first "{" in `line`, or npos.
inline std::size_t firstBrace(std::string_view line)
{
    const bool isFirst = !line.empty() && line.front() == '{'; // as in most lines
    return isFirst ? 0 : line.find('{');
}

/// How many bytes of `text` are whole lines: up to its last newline, which counts.
inline std::size_t wholeLinesLength(std::string_view text)
{
    // The C library's backward search is faster than a loop over the bytes.
    const void* const newline = text.empty() ? nullptr : memrchr(text.data(), '\n', text.size());
    return newline == nullptr
               ? 0
               : static_cast<std::size_t>(static_cast<const char*>(newline) - text.data()) + 1;
}

/// Removes the first line from `lines` and returns it without its newline. Without lines, returns
/// an empty one.
inline std::string_view takeFirstLine(std::string_view& lines)
{
    const std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    return line;
}

/// Removes the last line from `lines`, which are not empty, and returns it without its newline.
inline std::string_view takeLastLine(std::string_view& lines)
{
    if (lines.back() == '\n') {
        lines.remove_suffix(1);
    }
    const std::size_t others = wholeLinesLength(lines);
    const std::string_view line = lines.substr(others);
    lines = lines.substr(0, others);
    return line;
}

} // namespace eventsviewer
