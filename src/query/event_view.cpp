#include "query/event_view.h"

#include "catalog/event_names.h"
#include "describe/describe_event.h"

#include <utility>

namespace eventsviewer::query {

namespace {

// In the form key=value, with quotes where the value would look like more than one.
std::string variable(const std::string& key, std::string value)
{
    if (!value.empty() && value.front() != '"' &&
        value.find_first_of(" \t\n") == std::string::npos) {
        return key + '=' + value;
    }
    for (std::size_t at = 0; (at = value.find_first_of("\"\\", at)) != std::string::npos; at += 2) {
        value.insert(at, 1, '\\');
    }
    return key + "=\"" + value + '"';
}

} // namespace

EventView::EventView(std::unique_ptr<EventRecord> record)
    : record_(std::move(record)),
      variables_({record_->details.characters(), record_->details.length()}),
      description_(findDescription(record_->code)),
      detail_(describeEvent(description_, variables_)), knownName_(knownEventName(record_->code)),
      unknownName_(knownName_.empty() ? eventNameFor(record_->code) : ""),
      reason_(reasonOf(description_, variables_))
{
}

std::string EventView::wholeDetail() const
{
    std::string text(detail());
    if (description_ == nullptr) {
        const auto all = variables_.all();
        const char* before = " (";
        for (const auto& [key, value] : all) {
            text += std::exchange(before, " ") + variable(key, value);
        }
        text += all.empty() ? "" : ")";
    }
    if (!reason_.shown && !reason_.explanation.empty()) {
        text += "\nMeaning: ";
        text += reason_.explanation;
    }
    return text;
}

std::string EventView::words() const
{
    return std::string(name()) + '\n' + wholeDetail();
}

} // namespace eventsviewer::query
