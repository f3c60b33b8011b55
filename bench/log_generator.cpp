#include "log_generator.h"

#include "describe/description_catalog.h"

#include <cstdio>
#include <iterator>

namespace eventsviewer::bench {

namespace {

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

std::optional<Style> styleNamed(std::string_view name)
{
    if (name == "compact") {
        return Style::compact;
    }
    if (name == "spaced") {
        return Style::spaced;
    }
    if (name == "id-last") {
        return Style::idLast;
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
    } while (event->slots.count == 0 && below(3) != 0);
    return *event;
}

std::string LogGenerator::line()
{
    seconds_ += below(60);
    const Description& event = described();
    const std::string colon = style_ == Style::spaced ? "\": " : "\":";
    const std::string comma = style_ == Style::spaced ? ", " : ",";

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
    const std::string id = "\"id" + colon + std::to_string(event.code);
    const std::string rest =
        "\"time" + colon + '"' + time() + '"' + comma + "\"vars" + colon + '{' + variables + '}';
    std::string line =
        '{' + (style_ == Style::idLast ? rest + comma + id : id + comma + rest) + '}';

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
