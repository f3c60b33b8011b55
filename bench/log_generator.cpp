#include "log_generator.h"

#include "catalog/event_name_table.h"
#include "catalog/find_code.h"
#include "describe/description_catalog.h"

#include <cstdio>
#include <iterator>
#include <utility>

namespace eventsviewer::bench {

namespace {

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

std::optional<Style> styleNamed(std::string_view name)
{
    constexpr std::pair<std::string_view, Style> kStyles[] = {
        {"compact", Style::Compact},     {"spaced", Style::Spaced},      {"id-last", Style::IdLast},
        {"realistic", Style::Realistic}, {"not-ascii", Style::NotAscii}, {"reals", Style::Reals},
    };
    for (const auto& [styleName, style] : kStyles) {
        if (styleName == name) {
            return style;
        }
    }
    return std::nullopt;
}

std::string LogGenerator::digits(std::size_t count)
{
    std::string result;
    while (result.size() < count) {
        result += static_cast<char>('1' + below(9));
    }
    return result;
}

std::string LogGenerator::hash()
{
    std::string result;
    while (result.size() < 64) {
        result += "0123456789abcdef"[below(16)];
    }
    return result;
}

// Something that the variable `key` could hold.
std::string LogGenerator::text(std::string_view key)
{
    if (endsWith(key, "_filename")) {
        return "terminal_package_" + digits(4) + ".tar.gz";
    }
    if (endsWith(key, "_version")) {
        return digits(1) + '.' + digits(1) + '.' + digits(2);
    }
    if (endsWith(key, "_hash")) {
        return hash();
    }
    if (endsWith(key, "_time")) {
        return time();
    }
    if (key == "lat" || key == "lon" || key == "sat_long") {
        return (below(2) == 0 ? "-" : "") + digits(2) + '.' + digits(3);
    }
    if (key == "freq" || key == "symrate") {
        return digits(8);
    }
    if (key == "pol") {
        return below(2) == 0 ? "L" : "R";
    }
    if (key == "detail") {
        return "step " + digits(1) + " of 9 broken off";
    }
    return digits(2);
}

std::string LogGenerator::time()
{
    char text[32];
    std::snprintf(text, sizeof text, "Nov %02zu %02zu:%02zu:%02zu", 1 + seconds_ / 86400 % 28,
                  seconds_ / 3600 % 24, seconds_ / 60 % 60, seconds_ % 60);
    return text;
}

// Any described event, one without variables a third as often as the others.
const Description& LogGenerator::described()
{
    const Description* event = nullptr;
    do {
        event = &DescriptionCatalog[below(std::size(DescriptionCatalog))];
    } while (event->slots.size() == 0 && below(3) != 0);
    return *event;
}

std::string LogGenerator::variablesOf(const Description& event, const std::string& colon,
                                      const std::string& comma)
{
    std::string variables;
    for (const Slot& slot : event.slots) {
        variables += (variables.empty() ? "\"" : comma + '"') + slot.key + colon + '"';
        if (slot.reasons != nullptr) {
            const auto rows = static_cast<std::size_t>(slot.reasons->end() - slot.reasons->begin());
            variables += (slot.reasons->begin() + below(rows))->name;
        } else {
            variables += text(slot.key);
        }
        variables += '"';
    }
    return variables;
}

// The variables of an event that has no description.
std::string LogGenerator::variablesOfOthers()
{
    std::string variables = "\"terminal_name\":\"terminal " + digits(4) + '"';
    for (const char* const key : {"inet_id", "beam_id", "lat", "lon", "detail"}) {
        variables += ",\"" + std::string(key) + "\":\"" + text(key) + '"';
    }
    return variables;
}

std::string LogGenerator::line()
{
    seconds_ += below(60);
    const std::string colon = style_ == Style::Spaced ? "\": " : "\":";
    const std::string comma = style_ == Style::Spaced ? ", " : ",";

    std::int32_t code = 0;
    std::string variables;
    if (style_ == Style::Realistic && below(5) < 3) {
        do {
            code = EventNameTable[below(std::size(EventNameTable))].code;
        } while (findCode(DescriptionCatalog, code) != nullptr);
        variables = variablesOfOthers();
    } else {
        const Description& event = described();
        code = event.code;
        variables = variablesOf(event, colon, comma);
    }
    if (style_ == Style::NotAscii) {
        variables += (variables.empty() ? "" : comma) + "\"site\":\"K\xc3\xb6ln\"";
    } else if (style_ == Style::Reals) {
        variables += (variables.empty() ? "" : comma) + "\"snr\":" + digits(1) + '.' + digits(2);
    }
    const std::string id = "\"id" + colon + std::to_string(code);
    const std::string rest =
        "\"time" + colon + '"' + time() + '"' + comma + "\"vars" + colon + '{' + variables + '}';
    std::string line =
        '{' + (style_ == Style::IdLast ? rest + comma + id : id + comma + rest) + '}';

    if (below(1000) < damaged_) {
        const std::size_t at = below(line.size());
        if (below(4) == 0) {
            line[at] = '\x7f';
        } else {
            line.resize(at);
        }
    }
    return line + '\n';
}

} // namespace eventsviewer::bench
