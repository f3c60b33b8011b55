#include "describe/reason_variables.h"

#include "describe/description.h"
#include "describe/variables.h"

namespace eventsviewer {

namespace {

struct ReasonVariable {
    std::string_view key;
    const ReasonTable* reasons;
};

constexpr ReasonVariable ReasonVariables[] = {
    {"beam_switch_failure_reason", &BeamSwitchFailureReasons},
    {"beam_switch_type", &BeamSwitchTypes},
    {"buc_error_report_reason", &BucErrorReportReasons},
    {"buc_not_calibrated_reason", &BucNotCalibratedReasons},
    {"forced_logout_reason", nullptr}, // no table explains it
    {"no_service_carrier_reason", &NoServiceCarrierReasons},
    {"no_service_reason", &NoServiceReasons},
    {"no_signaling_carrier_reason", &NoSignalingCarrierReasons},
    {"options_error_reason", &OptionsErrorReasons},
    {"out_of_network_reason", &OutOfNetworkReasons},
    {"reason_sat_switch_rejected", &SatSwitchRejectedReasons},
    {"receive_ifl_fault", &ReceiveIflFaults},
    {"transmit_ifl_fault", &TransmitIflFaults},
};

constexpr std::size_t kShortestKey = std::string_view("beam_switch_type").size();

constexpr const ReasonVariable* find(std::string_view key)
{
    if (key.size() < kShortestKey) { // as most are
        return nullptr;
    }
    for (const ReasonVariable& row : ReasonVariables) {
        if (row.key.size() == key.size() && row.key.back() == key.back() && row.key == key) {
            return &row;
        }
    }
    return nullptr;
}

std::string_view explanationOf(std::string_view name, const ReasonTable* reasons)
{
    if (reasons != nullptr) {
        for (const Reason& reason : *reasons) {
            if (reason.name == name) {
                return reason.explanation;
            }
        }
    }
    return {};
}

} // namespace

GivenReason reasonOf(const Description* description, const Variables& variables)
{
    if (description != nullptr) {
        for (const Slot& slot : description->slots) {
            if (slot.reasons != nullptr && variables.isText(slot.key)) {
                const std::string_view name = variables.text(slot.key);
                return {name, explanationOf(name, slot.reasons), true};
            }
        }
    }
    const std::string key =
        variables.firstTextKey([](std::string_view name) { return find(name) != nullptr; });
    if (key.empty()) {
        return {};
    }
    const std::string_view name = variables.text(key);
    return {name, explanationOf(name, find(key)->reasons), false};
}

const ReasonTable* reasonsFor(std::string_view key)
{
    const ReasonVariable* const row = find(key);
    return row != nullptr ? row->reasons : nullptr;
}

} // namespace eventsviewer
