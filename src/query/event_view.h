#pragma once

#include "describe/reason_variables.h"
#include "describe/variables.h"
#include "eventlog/event_record.h"
#include "eventlog/log.h"
#include "text/shared_text.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace eventsviewer::query {

/// Everything that is shown of one event.
class EventView {
public:
    /// Describes the event of `record`, which is not null. May print JSON diagnostics on std::cout.
    explicit EventView(std::unique_ptr<EventRecord> record);

    std::int32_t code() const { return record_->code; }
    const std::string& time() const { return record_->time; }
    std::string_view name() const { return unknownName_.empty() ? knownName_ : unknownName_; }

    /// What events-viewer shows, one or more lines.
    std::string_view detail() const { return {detail_.characters(), detail_.length()}; }

    const GivenReason& reason() const { return reason_; }
    const Variables& variables() const { return variables_; }

    /// The detail for a person: with the variables if the event has no description, and with the
    /// meaning of a reason that the description does not explain.
    std::string wholeDetail() const;

    /// All words that are shown: the name, and the whole detail on the next lines.
    std::string words() const;

    std::string_view at;                ///< the time with its year, empty if that is not known
    const Path* log = nullptr;          ///< the log
    const Path* file = nullptr;         ///< the file of the log
    const std::string* label = nullptr; ///< what tells the log from others
    std::uint64_t line = 0;             ///< the line in the file, from 1 on

private:
    std::unique_ptr<EventRecord> record_;
    Variables variables_;
    const Description* description_; // null if there is none
    SharedText detail_;
    std::string_view knownName_;
    std::string unknownName_;
    GivenReason reason_;
};

} // namespace eventsviewer::query
