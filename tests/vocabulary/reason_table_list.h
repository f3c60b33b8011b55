#pragma once

#include "catalog/reason_tables.h"

#include <string>
#include <utility>
#include <vector>

namespace eventsviewer {

/// Every ReasonTable by its name, in the order of src/catalog/reason_tables.cpp.
inline const std::vector<std::pair<std::string, const ReasonTable*>>& reasonTablesByName()
{
    static const std::vector<std::pair<std::string, const ReasonTable*>> tables = {
        {"BeamSwitchFailureReasons", &BeamSwitchFailureReasons},
        {"BeamSwitchTypes", &BeamSwitchTypes},
        {"BucErrorReportReasons", &BucErrorReportReasons},
        {"BucNotCalibratedReasons", &BucNotCalibratedReasons},
        {"NoServiceCarrierReasons", &NoServiceCarrierReasons},
        {"NoServiceReasons", &NoServiceReasons},
        {"NoSignalingCarrierReasons", &NoSignalingCarrierReasons},
        {"OptionsErrorReasons", &OptionsErrorReasons},
        {"OutOfNetworkReasons", &OutOfNetworkReasons},
        {"SatSwitchRejectedReasons", &SatSwitchRejectedReasons},
        {"ReceiveIflFaults", &ReceiveIflFaults},
        {"TransmitIflFaults", &TransmitIflFaults},
    };
    return tables;
}

/// The name of `table`.
inline std::string nameOf(const ReasonTable& table)
{
    for (const auto& [name, other] : reasonTablesByName()) {
        if (other == &table) {
            return name;
        }
    }
    return "ATableThatIsMissingIn_tests_vocabulary_reason_table_list_h";
}

} // namespace eventsviewer
