// The reason vocabulary: for each reason enumeration its rows in ascending order of value.
// To add a reason, add its row here; the value is the one after the row above.
//
// The explanations are kept byte for byte as the terminal's other tools word them. Some have a
// doubled or trailing space, no full stop or a lower-case start: see the comments on the rows.

#include "catalog/reason_tables.h"

#include "catalog/table_checks.h"

namespace eventsviewer {

namespace {

// clang-format off

constexpr Reason kBeamSwitchFailureReasons[] = {
    { 0, "UNKNOWN",                  "Unknown."},
    { 1, "NOT_AUTHENTICATED",        "Ignoring beam switch request because the modem is not authenticated."},
    { 2, "UNSUPPORTED_POLARIZATION", "Rejected beam switch request (unsupported polarization)"},
    { 3, "UNSUPPORTED_RF_FREQ",      "Rejected beam switch request (unsupported RF frequency)"},
    { 4, "UNSUPPORTED_LO_FREQ",      "Rejected beam switch request (unsupported LO frequency)"},
    { 5, "MBB_NOT_POSSIBLE",         "Rejected MBB switch request (network connectivity would have to break before switching beams)"},
    { 6, "NO_SECOND_RX",             "Rejected MBB switch request (can't do an MBB switch with only one receiver)"},
    { 7, "OUTAGE",                   "Terminated the beam switch because an outage was detected on the primary channel."},
    { 8, "NO_SWITCH_CMD",            "The modem did not receive a switch command from the hub."},
    { 9, "NO_DOWNSTREAM_LOCK",       "The modem could not lock onto target beam."},
    {10, "INVALID_SNR",              "The modem could not accurately determine rx SNR."},
    {11, "INVALID_SI_TABLES",        "The modem did not receive valid SI tables from the target beam."},
    {12, "NO_INVITATION",            "The modem did not receive an invitation to acquire from the hub."},
    {13, "TIMED_OUT",                "Terminating beam switch because it is taking too long."},
    {14, "SATELLITE_BLOCKAGE",       "Terminated the beam switch due to satellite blockage."},
};

constexpr Reason kBeamSwitchTypes[] = {
    { 0, "MBB", "Make-Before-Break(MBB) beam switch"},
    { 1, "BBM", "Break-Before-Make(BBM) beam switch"},
};

constexpr Reason kBucErrorReportReasons[] = {
    { 0, "FAULT_STATUS",        "The BUC detected a fault."},
    { 1, "SLOSCILLATOR_ERROR",  "The BUC failed to set the local oscillator."},
    { 2, "SPOLARIZATION_ERROR", "The BUC failed to set the polarization."},
};

constexpr Reason kBucNotCalibratedReasons[] = {
    { 0, "NO_BANDS_COMMISSIONED",                   "The modem is not calibrated to operate using any of the BUC's frequency band(s)."},
    { 1, "OTC_ERROR_RAMPING",                       "OTC failed because the modem power could not be ramped up."},
    { 2, "OTC_ERROR_BUC_LO_UNLOCKED",               "OTC failed because the BUC status reported local oscillator unlocked."},
    { 3, "OTC_ERROR_BUC_SLOSCILLATOR",              "OTC failed because the BUC failed to set the local oscillator."},
    { 4, "OTC_ERROR_BUC_SPOLARIZATION",             "OTC failed because the BUC failed to set the polarization."},
    { 5, "OTC_ERROR_BUC_OVERTEMP",                  "OTC failed because the BUC status reported an over temperature fault."},
    { 6, "OTC_ERROR_BUC_OVERDRIVEN",                "OTC failed because the BUC status reported the output power was over driven."},
    { 7, "OTC_ERROR_BUC_COMM",                      "OTC failed because the  modem lost contact to the BUC."}, // the doubled space is intentional
    { 8, "OTC_ERROR_BUC_FAN_FAILED",                "OTC failed because the BUC status reported fan failure."},
    { 9, "OTC_ERROR_BUC_CAL_FILE_DOWNLOAD",         "OTC failed because the BUC calibration file download failed."},
    {10, "OTC_ERROR_BUC_CAL_FILE_PARSING",          "OTC failed because the BUC calibration file could not be parsed."},
    {11, "OTC_ERROR_CONFIGURED_BAND_NOT_SUPPORTED", "OTC failed because the BUC calibration file does not support  the modem's configured bands."}, // the doubled space is intentional
    {12, "OTC_ERROR_BUC_INTERFACE",                 "OTC failed because the BUC interface was not ready."},
    {13, "OTC_ERROR_TX_INTERFACE",                  "OTC failed because the modem transmit interface was not ready."},
    {14, "OTC_ERROR_ANTENNA_MUTED_TX",              "OTC failed because the transmitter was muted during unmuted OTC."},
};

constexpr Reason kNoServiceCarrierReasons[] = {
    { 0, "NO_DOWNSTREAM_LOCK",   "failed to lock to signaling carrier"},
    { 1, "NO_BEAM_MAP_RECEIVED", "didn't get a beam map from OTA after locking to signaling carrier"},
    { 2, "NONE_VISIBLE",         "no visible carrier(s) in OTA beam map"},
    { 3, "NONE_USABLE",          "found a visible carrier(s) in OTA beam map, but can't use it (e.g., polarization mismatch, etc.)"},
    { 4, "NO_SAVED_BEAM_MAP",    "failed to load OTA beam map from disk"},
    { 5, "NO_CARRIER_FOUND",     "no carrier(s) found"},
};

constexpr Reason kNoServiceReasons[] = {
    { 0, "NO_ACU_LOCK",                     "The antenna failed to lock to satellite"},
    { 1, "NO_DOWNSTREAM_LOCK",              "The modem failed to get downstream lock"},
    { 2, "NO_VALID_SI_TABLE_RECEIVED",      "The modem got downstream lock but did not receive valid SI tables"},
    { 3, "NO_VALID_UPSTREAM_CARRIER_FOUND", "The modem can't find a valid upstream carrier to transmit on"},
    { 4, "NO_TX_UNMUTE",                    "The transmitter is muted"},
    { 5, "NO_ACQ_BURST_SENT",               "The modem failed to send an acquisition burst to the hub"},
    { 6, "NO_ACQ_RESPONSE_RECEIVED",        "The modem sent an acquisition burst to the hub but didn't get an acknowledgement back"},
    { 7, "NO_TRAFFIC_SLOT_ALLOCATED",       "The modem wasn't allocated any traffic slots after the hub responded to the acquisition burst"},
    { 8, "NO_UCPS_RECEIVED",                "The modem stopped receiving UCP messages"},
    { 9, "NO_BTPS_RECEIVED",                "The modem stopped receiving BTP messages"},
    {10, "AUTHENTICATION_FAILED",           "Authentication failed"},
};

constexpr Reason kNoSignalingCarrierReasons[] = {
    { 0, "NONE_VISIBLE",          "no visible carrier(s) in constellation file"},
    { 1, "NONE_USABLE",           "found a visible carrier(s) in the constellation file, but can't use it (e.g., polarization mismatch, etc.) "}, // the trailing space is intentional
    { 2, "NO_CONSTELLATION_FILE", "failed to load constellation file from disk"},
    { 3, "NO_CARRIER_FOUND",      "no carrier(s) found "}, // the trailing space is intentional
};

constexpr Reason kOptionsErrorReasons[] = {
    { 0, "BUC_OPTIONS_CAL_FILE_MISMATCH", "One or more bands configured in BUC options are not supported by the BUC calibration file."},
    { 1, "BUC_OPTIONS_UPDATE_REJECTED",   "The BUC options update was rejected; incompatible with the BUC calibration file."},
};

constexpr Reason kOutOfNetworkReasons[] = {
    { 0, "NO_UCP",           "Failed to receive UCP messages; Last slot was allocated ~%u seconds ago"}, // shown by no description: nothing fills the %u
    { 1, "NO_BTP",           "Failed to receive Burst Time Plan messages; Last BTP was received ~%u seconds ago."}, // shown by no description: nothing fills the %u
    { 2, "ACQ_DISABLE",      "Received command from terminal to stop acquisition"},
    { 3, "CONSOLE_COMMAND",  "Received console command to leave the network"},
    { 4, "INVALID_SI_TABLE", "Received invalid SI table update"},
};

constexpr Reason kSatSwitchRejectedReasons[] = {
    { 0, "SATELLITE_BLOCKED", "ACU detected a blockage"},
    { 1, "NOT_SUPPORTED",     "terminal can't operate on the requested satellite/carrier"},
};

constexpr Reason kReceiveIflFaults[] = {
    { 0, "SHORT_CIRCUIT", "short circuit"},
    { 1, "OPEN_CIRCUIT",  "open circuit"},
};

constexpr Reason kTransmitIflFaults[] = {
    { 0, "INSUFFICIENT_POWER", "insufficient power"},
    { 1, "SHORT_CIRCUIT",      "short circuit"},
};

// clang-format on

template <std::size_t rowCount> constexpr ReasonTable makeTable(const Reason (&rows)[rowCount])
{
    return {rows, rows + rowCount};
}

template <std::size_t rowCount> constexpr bool isSound(const Reason (&rows)[rowCount])
{
    return valuesCountFromZero(rows) && namesAreIdentifiers(rows) && namesAreUnique(rows) &&
           explanationsArePresent(rows);
}

static_assert(isSound(kBeamSwitchFailureReasons),
              "kBeamSwitchFailureReasons: values, names or explanations");
static_assert(isSound(kBeamSwitchTypes), "kBeamSwitchTypes: values, names or explanations");
static_assert(isSound(kBucErrorReportReasons),
              "kBucErrorReportReasons: values, names or explanations");
static_assert(isSound(kBucNotCalibratedReasons),
              "kBucNotCalibratedReasons: values, names or explanations");
static_assert(isSound(kNoServiceCarrierReasons),
              "kNoServiceCarrierReasons: values, names or explanations");
static_assert(isSound(kNoServiceReasons), "kNoServiceReasons: values, names or explanations");
static_assert(isSound(kNoSignalingCarrierReasons),
              "kNoSignalingCarrierReasons: values, names or explanations");
static_assert(isSound(kOptionsErrorReasons), "kOptionsErrorReasons: values, names or explanations");
static_assert(isSound(kOutOfNetworkReasons), "kOutOfNetworkReasons: values, names or explanations");
static_assert(isSound(kSatSwitchRejectedReasons),
              "kSatSwitchRejectedReasons: values, names or explanations");
static_assert(isSound(kReceiveIflFaults), "kReceiveIflFaults: values, names or explanations");
static_assert(isSound(kTransmitIflFaults), "kTransmitIflFaults: values, names or explanations");

} // namespace

const ReasonTable BeamSwitchFailureReasons = makeTable(kBeamSwitchFailureReasons);
const ReasonTable BeamSwitchTypes = makeTable(kBeamSwitchTypes);
const ReasonTable BucErrorReportReasons = makeTable(kBucErrorReportReasons);
const ReasonTable BucNotCalibratedReasons = makeTable(kBucNotCalibratedReasons);
const ReasonTable NoServiceCarrierReasons = makeTable(kNoServiceCarrierReasons);
const ReasonTable NoServiceReasons = makeTable(kNoServiceReasons);
const ReasonTable NoSignalingCarrierReasons = makeTable(kNoSignalingCarrierReasons);
const ReasonTable OptionsErrorReasons = makeTable(kOptionsErrorReasons);
const ReasonTable OutOfNetworkReasons = makeTable(kOutOfNetworkReasons);
const ReasonTable SatSwitchRejectedReasons = makeTable(kSatSwitchRejectedReasons);
const ReasonTable ReceiveIflFaults = makeTable(kReceiveIflFaults);
const ReasonTable TransmitIflFaults = makeTable(kTransmitIflFaults);

} // namespace eventsviewer
