#include "reference/naive.h"

#include "reference/naive_json.h"
#include "vocabulary/vocabulary.h"

#include <cstdint>
#include <cstdio>
#include <deque>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

namespace eventsviewer::reference {

namespace {

std::string cString(const Json::Value& value)
{
    const char* const text = asCString(value);
    return text != nullptr ? text : "";
}

} // namespace

std::string nameOf(std::int32_t code)
{
    for (const vocabulary::EventName& event : vocabulary::eventNames()) {
        if (event.code == code) {
            return event.name;
        }
    }
    return "UNRECOGNIZED_EVENT_CODE_" + std::to_string(static_cast<std::uint32_t>(code));
}

std::string explanationOf(const Json::Value& root, const std::string& key, const std::string& table)
{
    if (root.isObject() && root.isMember(key) && root.get(key, Json::Value("")).isString()) {
        const std::string name = cString(root.get(key, Json::Value("")));
        for (const vocabulary::Reason& reason : vocabulary::reasons()) {
            if (table == reason.table && name == reason.name) {
                return reason.explanation;
            }
        }
    }
    return "Failed to retrieve description";
}

Json::Value parsed(const std::string& text)
{
    Json::Value root;
    std::stringstream stream(text);
    extract(stream, root);
    return root;
}

std::unique_ptr<Event> eventOf(const std::string& line)
{
    const std::size_t brace = line.find('{');
    if (brace == std::string::npos) {
        return nullptr;
    }
    std::cout.setstate(std::ios_base::failbit);
    Json::Value root = parsed(line.substr(brace));
    std::cout.clear();
    if (!root.isObject() || !root.isMember("id")) {
        return nullptr;
    }

    std::string time;
    if (root.isMember("time") && root.get("time", Json::Value("")).isString()) {
        time = cString(root.get("time", Json::Value("")));
    }
    std::string details = "{}";
    if (root.isMember("vars") && root.get("vars", Json::Value("")).isObject()) {
        Json::Value variables = root.get("vars", Json::Value(""));
        for (const std::string& name : variables.getMemberNames()) {
            if (variables.get(name, Json::Value("")).isNull()) {
                variables.removeMember(name);
            }
        }
        // NOLINTNEXTLINE(readability-redundant-string-cstr): a comment may hold a NUL
        details = compact(variables).c_str();
    }
    return std::make_unique<Event>(Event{details, asInt(root["id"]), time});
}

std::string describeParsed(std::int32_t code, const Json::Value& root)
{
    for (const vocabulary::Description& description : vocabulary::descriptions()) {
        if (description.code != code) {
            continue;
        }
        std::string filled = description.pieces.front();
        for (std::size_t i = 0; i < description.slots.size(); ++i) {
            const vocabulary::Slot& slot = description.slots[i];
            filled += slot.table.empty() ? cString(get(root, slot.key))
                                         : explanationOf(root, slot.key, slot.table);
            filled += description.pieces[i + 1];
        }
        return filled;
    }
    return "Unknown";
}

std::string describeEvent(std::int32_t code, const std::string& details)
{
    return describeParsed(code, parsed(details));
}

std::string rowOf(const Event& event, std::string detail)
{
    for (std::size_t at = 0; (at = detail.find('\n', at)) != std::string::npos; at += 50) {
        detail.replace(at, 1, '\n' + std::string(50, ' '));
    }
    std::ostringstream row;
    row << std::left << std::setw(20) << event.time << std::setw(1) << "\033[1;34m" << std::setw(30)
        << nameOf(event.code) << "\033[0m" << detail << "\n\n";
    return row.str();
}

namespace {

using Events = std::deque<std::unique_ptr<Event>>;

Events load(const std::string& inputPath, std::size_t count)
{
    Events events;
    for (const std::string& path : {inputPath + ".0", inputPath}) {
        std::ifstream file(path);
        std::string line;
        while (std::getline(file, line)) {
            std::unique_ptr<Event> event = eventOf(line);
            if (event == nullptr) {
                continue;
            }
            if (events.size() >= count) {
                events.pop_front();
            }
            events.push_back(std::move(event));
        }
    }
    return events;
}

std::string render(const Events& events)
{
    if (events.empty()) {
        return "No events to display.";
    }
    char columns[200];
    std::snprintf(columns, sizeof columns, "%-20s%-30s%s\n", "Timestamp", "Event", "Detail");
    std::ostringstream table;
    table << "Last " << events.size() << " events from " << events.front()->time << " to "
          << events.back()->time << ":\n\n"
          << columns << std::string(80, '=') << "\n";
    for (const auto& event : events) {
        table << rowOf(*event, describeEvent(event->code, event->details));
    }
    return table.str();
}

} // namespace

std::string recentEventsTable(const std::string& inputPath, std::size_t count)
{
    return render(load(inputPath, count));
}

std::string allEventsTable(const std::string& inputPath)
{
    return render(load(inputPath, SIZE_MAX));
}

} // namespace eventsviewer::reference
