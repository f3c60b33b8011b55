// The reason vocabulary: the rows of each reason enumeration. A reason's place in its table is its
// value in the enumeration, so a new one goes to the end.
//
// The explanations are kept byte for byte as the terminal's other tools word them. Some have a
// doubled or trailing space, no full stop or a lower-case start: see the comments on the rows.

#include "catalog/reason_tables.h"

#include "catalog/table_checks.h"

namespace eventsviewer {

namespace {

// clang-format off

constexpr Reason kBeamSwitchFailureReasons[] = {
    {"UNKNOWN",                  "Unknown."},
    {"NOT_AUTHENTICATED",        "Ignoring beam switch request because the modem is not authenticated."},
    {"UNSUPPORTED_POLARIZATION", "Rejected beam switch request (unsupported polarization)"},
    {"UNSUPPORTED_RF_FREQ",      "Rejected beam switch request (unsupported RF frequency)"},
    {"UNSUPPORTED_LO_FREQ",      "Rejected beam switch request (unsupported LO frequency)"},
    {"MBB_NOT_POSSIBLE",         "Rejected MBB switch request (network connectivity would have to break before switching beams)"},
    {"NO_SECOND_RX",             "Rejected MBB switch request (can't do an MBB switch with only one receiver)"},
    {"OUTAGE",                   "Terminated the beam switch because an outage was detected on the primary channel."},
    {"NO_SWITCH_CMD",            "The modem did not receive a switch command from the hub."},
    {"NO_DOWNSTREAM_LOCK",       "The modem could not lock onto target beam."},
    {"INVALID_SNR",              "The modem could not accurately determine rx SNR."},
    {"INVALID_SI_TABLES",        "The modem did not receive valid SI tables from the target beam."},
    {"NO_INVITATION",            "The modem did not receive an invitation to acquire from the hub."},
    {"TIMED_OUT",                "Terminating beam switch because it is taking too long."},
    {"SATELLITE_BLOCKAGE",       "Terminated the beam switch due to satellite blockage."},
};

constexpr Reason kBeamSwitchTypes[] = {
    {"MBB", "Make-Before-Break(MBB) beam switch"},
    {"BBM", "Break-Before-Make(BBM) beam switch"},
};

constexpr Reason kBucErrorReportReasons[] = {
    {"FAULT_STATUS",        "The BUC detected a fault."},
    {"SLOSCILLATOR_ERROR",  "The BUC failed to set the local oscillator."},
    {"SPOLARIZATION_ERROR", "The BUC failed to set the polarization."},
};

constexpr Reason kBucNotCalibratedReasons[] = {
    {"NO_BANDS_COMMISSIONED",                   "The modem is not calibrated to operate using any of the BUC's frequency band(s)."},
    {"OTC_ERROR_RAMPING",                       "OTC failed because the modem power could not be ramped up."},
    {"OTC_ERROR_BUC_LO_UNLOCKED",               "OTC failed because the BUC status reported local oscillator unlocked."},
    {"OTC_ERROR_BUC_SLOSCILLATOR",              "OTC failed because the BUC failed to set the local oscillator."},
    {"OTC_ERROR_BUC_SPOLARIZATION",             "OTC failed because the BUC failed to set the polarization."},
    {"OTC_ERROR_BUC_OVERTEMP",                  "OTC failed because the BUC status reported an over temperature fault."},
    {"OTC_ERROR_BUC_OVERDRIVEN",                "OTC failed because the BUC status reported the output power was over driven."},
    {"OTC_ERROR_BUC_COMM",                      "OTC failed because the  modem lost contact to the BUC."}, // the doubled space is intentional
    {"OTC_ERROR_BUC_FAN_FAILED",                "OTC failed because the BUC status reported fan failure."},
    {"OTC_ERROR_BUC_CAL_FILE_DOWNLOAD",         "OTC failed because the BUC calibration file download failed."},
    {"OTC_ERROR_BUC_CAL_FILE_PARSING",          "OTC failed because the BUC calibration file could not be parsed."},
    {"OTC_ERROR_CONFIGURED_BAND_NOT_SUPPORTED", "OTC failed because the BUC calibration file does not support  the modem's configured bands."}, // the doubled space is intentional
    {"OTC_ERROR_BUC_INTERFACE",                 "OTC failed because the BUC interface was not ready."},
    {"OTC_ERROR_TX_INTERFACE",                  "OTC failed because the modem transmit interface was not ready."},
    {"OTC_ERROR_ANTENNA_MUTED_TX",              "OTC failed because the transmitter was muted during unmuted OTC."},
};

constexpr Reason kNoServiceCarrierReasons[] = {
    {"NO_DOWNSTREAM_LOCK",   "failed to lock to signaling carrier"},
    {"NO_BEAM_MAP_RECEIVED", "didn't get a beam map from OTA after locking to signaling carrier"},
    {"NONE_VISIBLE",         "no visible carrier(s) in OTA beam map"},
    {"NONE_USABLE",          "found a visible carrier(s) in OTA beam map, but can't use it (e.g., polarization mismatch, etc.)"},
    {"NO_SAVED_BEAM_MAP",    "failed to load OTA beam map from disk"},
    {"NO_CARRIER_FOUND",     "no carrier(s) found"},
};

constexpr Reason kNoServiceReasons[] = {
    {"NO_ACU_LOCK",                     "The antenna failed to lock to satellite"},
    {"NO_DOWNSTREAM_LOCK",              "The modem failed to get downstream lock"},
    {"NO_VALID_SI_TABLE_RECEIVED",      "The modem got downstream lock but did not receive valid SI tables"},
    {"NO_VALID_UPSTREAM_CARRIER_FOUND", "The modem can't find a valid upstream carrier to transmit on"},
    {"NO_TX_UNMUTE",                    "The transmitter is muted"},
    {"NO_ACQ_BURST_SENT",               "The modem failed to send an acquisition burst to the hub"},
    {"NO_ACQ_RESPONSE_RECEIVED",        "The modem sent an acquisition burst to the hub but didn't get an acknowledgement back"},
    {"NO_TRAFFIC_SLOT_ALLOCATED",       "The modem wasn't allocated any traffic slots after the hub responded to the acquisition burst"},
    {"NO_UCPS_RECEIVED",                "The modem stopped receiving UCP messages"},
    {"NO_BTPS_RECEIVED",                "The modem stopped receiving BTP messages"},
    {"AUTHENTICATION_FAILED",           "Authentication failed"},
};

constexpr Reason kNoSignalingCarrierReasons[] = {
    {"NONE_VISIBLE",          "no visible carrier(s) in constellation file"},
    {"NONE_USABLE",           "found a visible carrier(s) in the constellation file, but can't use it (e.g., polarization mismatch, etc.) "}, // the trailing space is intentional
    {"NO_CONSTELLATION_FILE", "failed to load constellation file from disk"},
    {"NO_CARRIER_FOUND",      "no carrier(s) found "}, // the trailing space is intentional
};

constexpr Reason kOptionsErrorReasons[] = {
    {"BUC_OPTIONS_CAL_FILE_MISMATCH", "One or more bands configured in BUC options are not supported by the BUC calibration file."},
    {"BUC_OPTIONS_UPDATE_REJECTED",   "The BUC options update was rejected; incompatible with the BUC calibration file."},
};

constexpr Reason kOutOfNetworkReasons[] = {
    {"NO_UCP",           "Failed to receive UCP messages; Last slot was allocated ~%u seconds ago"}, // shown by no description: nothing fills the %u
    {"NO_BTP",           "Failed to receive Burst Time Plan messages; Last BTP was received ~%u seconds ago."}, // shown by no description: nothing fills the %u
    {"ACQ_DISABLE",      "Received command from terminal to stop acquisition"},
    {"CONSOLE_COMMAND",  "Received console command to leave the network"},
    {"INVALID_SI_TABLE", "Received invalid SI table update"},
};

constexpr Reason kSatSwitchRejectedReasons[] = {
    {"SATELLITE_BLOCKED", "ACU detected a blockage"},
    {"NOT_SUPPORTED",     "terminal can't operate on the requested satellite/carrier"},
};

constexpr Reason kReceiveIflFaults[] = {
    {"SHORT_CIRCUIT", "short circuit"},
    {"OPEN_CIRCUIT",  "open circuit"},
};

constexpr Reason kTransmitIflFaults[] = {
    {"INSUFFICIENT_POWER", "insufficient power"},
    {"SHORT_CIRCUIT",      "short circuit"},
};

// clang-format on

template <std::size_t rowCount> constexpr ReasonTable makeTable(const Reason (&rows)[rowCount])
{
    return {rows, rows + rowCount};
}

template <std::size_t rowCount> constexpr bool isSound(const Reason (&rows)[rowCount])
{
    return namesAreIdentifiers(rows) && namesAreUnique(rows) && explanationsArePresent(rows);
}

static_assert(isSound(kBeamSwitchFailureReasons),
              "kBeamSwitchFailureReasons: names or explanations");
static_assert(isSound(kBeamSwitchTypes), "kBeamSwitchTypes: names or explanations");
static_assert(isSound(kBucErrorReportReasons), "kBucErrorReportReasons: names or explanations");
static_assert(isSound(kBucNotCalibratedReasons), "kBucNotCalibratedReasons: names or explanations");
static_assert(isSound(kNoServiceCarrierReasons), "kNoServiceCarrierReasons: names or explanations");
static_assert(isSound(kNoServiceReasons), "kNoServiceReasons: names or explanations");
static_assert(isSound(kNoSignalingCarrierReasons),
              "kNoSignalingCarrierReasons: names or explanations");
static_assert(isSound(kOptionsErrorReasons), "kOptionsErrorReasons: names or explanations");
static_assert(isSound(kOutOfNetworkReasons), "kOutOfNetworkReasons: names or explanations");
static_assert(isSound(kSatSwitchRejectedReasons),
              "kSatSwitchRejectedReasons: names or explanations");
static_assert(isSound(kReceiveIflFaults), "kReceiveIflFaults: names or explanations");
static_assert(isSound(kTransmitIflFaults), "kTransmitIflFaults: names or explanations");

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
