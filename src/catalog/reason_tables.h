#pragma once

namespace eventsviewer {

/// One reason of an enumeration. The log carries the name.
struct Reason {
    const char* name;
    const char* explanation;
};

/// The rows of one reason enumeration, in ascending order of the values that they have there: the
/// place of a row is its value.
struct ReasonTable {
    const Reason* first;
    const Reason* last; ///< one past the last row

    const Reason* begin() const { return first; }
    const Reason* end() const { return last; }
};

/// Why a beam switch was refused, aborted or failed.
extern const ReasonTable BeamSwitchFailureReasons;

/// Which kind of beam switch was requested.
extern const ReasonTable BeamSwitchTypes;

/// What fault the BUC (block upconverter) reported.
extern const ReasonTable BucErrorReportReasons;

/// Why the BUC is not calibrated: no band commissioned, or the step of the OTC that failed.
extern const ReasonTable BucNotCalibratedReasons;

/// Why the search by the over-the-air (OTA) beam map found no service carrier.
extern const ReasonTable NoServiceCarrierReasons;

/// At which stage coming into service failed.
extern const ReasonTable NoServiceReasons;

/// Why the search by the constellation file found no signalling carrier.
extern const ReasonTable NoSignalingCarrierReasons;

/// What is wrong with the BUC options.
extern const ReasonTable OptionsErrorReasons;

/// Why the modem left the network. No description consults this table.
extern const ReasonTable OutOfNetworkReasons;

/// Why a satellite switch was rejected.
extern const ReasonTable SatSwitchRejectedReasons;

/// What is wrong with the receive cable (IFL, inter-facility link).
extern const ReasonTable ReceiveIflFaults;

/// What is wrong with the transmit cable (IFL).
extern const ReasonTable TransmitIflFaults;

} // namespace eventsviewer
