#pragma once

#include "query/event_view.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace eventsviewer::query {

/// How events are shown; the names are those of the option.
enum class Format { Table, Lines, Csv, Json, Html };

#ifdef EVENTS_QUERY_HTML
constexpr bool kHasPages = true;
#else
constexpr bool kHasPages = false; ///< whether there is Format::Html
#endif

/// How a table is laid out.
struct Layout {
    std::size_t width = 0; ///< columns of the terminal; 0 means that lines are not broken
    bool colour = false;
    std::size_t logWidth = 0; ///< columns of the longest name of a log; 0 if it is not shown
};

/// The layout for standard output as it is now; `colour` if its names are coloured there.
Layout layoutOfTerminal(bool colour);

/// What comes before all events in this format.
std::string headerOf(Format format);

/// Adds one event in the form of `format`.
void appendEvent(std::string& out, Format format, const Layout& layout, const EventView& event);

/// `text` for a terminal, with bars in the place of its line breaks.
std::string oneLine(std::string_view text);

/// A value of a record, which is a row of csv or an object of json, and its column or key.
struct Field {
    const char* name;
    std::string_view value;
    bool isNumber = false;
};

/// Adds a record in csv or json.
void appendRecord(std::string& out, Format format, const std::vector<Field>& fields);

/// Adds `event` as rows of a table for a person:
///
///     Nov 20 08:15:02 MODEM_OUT_OF_NETWORK           This terminal fell out of network.
///                                                    Reason: NO_UCP
void appendTableRow(std::string& out, const Layout& layout, const EventView& event);

} // namespace eventsviewer::query
