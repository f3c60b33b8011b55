#pragma once

#include "catalog/reason_tables.h"

#include <map>
#include <string>

namespace eventsviewer {

/// Every table under the name that the data files use for it.
inline const std::map<std::string, const ReasonTable*>& reasonTablesByName()
{
    static const std::map<std::string, const ReasonTable*> tables = {
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

} // namespace eventsviewer
