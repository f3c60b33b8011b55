// The descriptions: every event code that has one, one row a code, in ascending order.
// To describe another event, add its row here.
//
// A row without slots is a fixed text. In any other row the text has one "%s" for each slot, in the
// order of the slots. A key alone means that detail variable. A key with a ReasonTable means
// the explanation of the variable's value.
//
// The wording is kept byte for byte, doubled spaces between sentences included. What looks like a
// mistake but is intentional has a comment above its row.

#pragma once

#include "catalog/reason_tables.h"
#include "catalog/table_checks.h"
#include "describe/description.h"

namespace eventsviewer {

inline constexpr std::initializer_list<Slot> kSoftwareSlots = {
    "terminal_software_filename", "terminal_software_version", "terminal_software_hash"};

// The writers of the log spell the third key "confguration", without the first i.
inline constexpr std::initializer_list<Slot> kConfigurationSlots = {
    "terminal_configuration_filename", "terminal_configuration_version",
    "terminal_confguration_hash"};

// clang-format off
inline constexpr Description DescriptionCatalog[] = {
    { 835, "This terminal is no longer getting GPS readings.", {}},
    // 945: two spaces after "are:" are intentional.
    { 945, "This terminal has experienced a failure during its modem's power-on self-test.  The number of the test that failed is %s.  Parameters associated with the failure are:  %s, %s.", {"terminal_post_number", "terminal_post_param1", "terminal_post_param2"}},
    { 946, "A reset is being initiated on this terminal's modem.", {}},
    { 947, "A service on this terminal's modem is being restarted.  The name of the service is %s.", {"terminal_service_name"}},
    { 948, "A service on this terminal's modem has been scheduled to be restarted in %s.  The name of the service is %s.", {"delta_time", "terminal_service_name"}},
    { 949, "The OS on this terminal's modem is being restarted.", {}},
    { 950, "The OS on this terminal's modem has been scheduled to be restarted in %s.", {"delta_time"}},
    { 951, "This terminal's modem has reached a temperature that's close to its shutdown threshold.", {}},
    { 975, "This terminal's modem temperature has recovered from being close to its shutdown threshold.", {}},
    {1008, "This terminal has successfully passed its modem's power-on self-test.", {}},
    {1011, "This terminal has started receiving location updates from its GPS.", {}},
    {1025, "This terminal failed to install a software package on its Modem.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1026, "This terminal failed to activate software on its Modem.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1027, "This terminal failed to install its terminal configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1033, "This terminal failed to activate its terminal configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1034, "This terminal failed to install a software package on its ACU.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1035, "This terminal failed to activate software on its ACU.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1036, "This terminal failed to install a software package on its BUC.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1037, "This terminal failed to activate software on its BUC.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1038, "This terminal failed to install its Global PKI configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1039, "This terminal failed to activate its Global PKI configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1040, "This terminal failed to install its LAN configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1041, "This terminal failed to activate its LAN configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1042, "This terminal failed to install its constellation configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1043, "This terminal failed to activate its constellation configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1044, "This terminal successfully installed a software package on its Modem.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1045, "This terminal successfully activated software on its Modem.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1046, "This terminal successfully installed a software package on its ACU.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1047, "This terminal successfully activated software on its ACU.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1048, "This terminal successfully installed a software package on its BUC.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1049, "This terminal successfully activated software on its BUC.  The software package had filename = %s, version = %s, and hash = %s.", kSoftwareSlots},
    {1050, "This terminal successfully installed its terminal configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1051, "This terminal successfully activated its terminal configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1052, "This terminal successfully installed its Global PKI configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1053, "This terminal successfully activated its Global PKI configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1054, "This terminal successfully installed its LAN configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1055, "This terminal successfully activated its LAN configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1056, "This terminal successfully installed its constellation configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1057, "This terminal successfully activated its constellation configuration.  The configuration had filename = %s, version = %s, and hash = %s.", kConfigurationSlots},
    {1086, "This Terminal has entered Recovery Mode.  The terminal can lock to the downstream to receive software and configuration updates, but will not try to transmit until its modem has been reset.", {}},
    {1097, "Doppler pre-compensation was used for an acquisition attempt.  The computed Doppler offset used was %s.", {"doppler_offset"}},
    {1213, "This terminal's modem can't communicate with the ACU.", {}},
    {1214, "This terminal's modem re-established communication with the ACU.", {}},
    {1215, "This terminal's modem can't communicate with the BUC.", {}},
    {1216, "This terminal's modem re-established communication with the BUC.", {}},
    {1217, "This terminal's BUC is not calibrated.\nReason: %s; %s", {{"buc_not_calibrated_reason", BucNotCalibratedReasons}, "detail"}},
    {1218, "The terminal's modem is calibrated to use the BUC.", {}},
    {1219, "This terminal's BUC reported an error.\nReason: %s; %s", {{"buc_error_report_reason", BucErrorReportReasons}, "detail"}},
    // 1220: no closing full stop.
    {1220, "The terminal's BUC error cleared; BUC status = %s", {"buc_status"}},
    {1221, "This terminal's modem detected a transmit cable fault; %s", {{"transmit_ifl_fault", TransmitIflFaults}}},
    {1222, "This terminal's modem doesn't detect any transmit cable faults.", {}},
    {1223, "This terminal's modem detected a receive cable fault; %s", {{"receive_ifl_fault", ReceiveIflFaults}}},
    {1224, "This terminal's modem doesn't detect any receive cable faults.", {}},
    {1225, "This terminal's modem software is starting up.", {}},
    {1226, "This terminal's modem is beginning a new carrier search cycle.", {}},
    // 1227: name and description intentionally disagree: code 1227 reports a time adjustment.
    {1227, "This terminal is adjusting system time by %s seconds\nOld: %s\nNew: %s", {"delta_time", "old_time", "new_time"}},
    {1228, "This terminal is in network and authenticated on iNet %s.", {"inet_id"}},
    // 1229: the raw reason name is shown; OutOfNetworkReasons is not consulted.
    {1229, "This terminal fell out of network.\nReason: %s", {"out_of_network_reason"}},
    {1230, "This terminal's modem muted the transmitter.\nMute source(s): %s", {"mute_sources"}},
    {1231, "This terminal's modem unmuted the transmitter.", {}},
    // 1232: the raw reason is shown.
    {1232, "This terminal was forced to logout; %s", {"forced_logout_reason"}},
    {1233, "This terminal cannot find any carriers on which to receive an OTA beam map.\nReason: %s\nModem Location (lat, lon): (%s, %s)", {{"no_signaling_carrier_reason", NoSignalingCarrierReasons}, "lat", "lon"}},
    // 1234: no space after "(lat,lon):".
    {1234, "This terminal's modem is trying to obtain an OTA beam map using %s:\nSatellite longitude: %s deg\nSatellite Preference: %s\nCarrier frequency: %s kHz\nSymbol rate: %s KSps\npolarization (rx): %s\nModem Location (lat,lon):(%s, %s)", {"sat_name", "sat_long", "sat_pref", "freq", "symrate", "pol", "lat", "lon"}},
    {1235, "This terminal cannot find any carriers on which to attempt acquisition.\nReason: %s\nModem Location (lat, lon): (%s, %s)", {{"no_service_carrier_reason", NoServiceCarrierReasons}, "lat", "lon"}},
    // 1236: intentionally worded unlike 1234.
    {1236, "This terminal's modem is trying to come into network on %s:\nSatellite longitude: %s degrees\nSatellite preference: %s\nCarrier frequency: %s kHz\nSymbol rate: %s KSps\npolarization (rx,tx): %s\nModem location (lat,lon): (%s, %s)", {"sat_name", "sat_long", "sat_pref", "freq", "symrate", "pol", "lat", "lon"}},
    {1237, "This terminal failed to come into network.\nReason: %s; %s", {{"no_service_reason", NoServiceReasons}, "detail"}},
    {1238, "This terminal's modem received a UCP update after sending %s resync burst(s).", {"resync_count"}},
    {1239, "This terminal's modem failed to get a UCP update after sending %s resync burst(s).", {"resync_count"}},
    {1240, "This terminal is trying to switch to satellite at %s degrees longitude.", {"sat_long"}},
    // 1241: the only reason key that begins with "reason_".
    {1241, "This terminal is ignoring a satellite switch request.\nReason: %s\nSatellite longitude: %s degrees\nCarrier frequency: %s kHz\nSymbol rate: %s KSps", {{"reason_sat_switch_rejected", SatSwitchRejectedReasons}, "sat_long", "freq", "symrate"}},
    // 1242: "%\n" is not a conversion: it prints a percent sign and the line break.
    {1242, "The downstream this modem is receiving from has been updated:\nCarrier frequency: %s kHz\nSymbol rate: %s KSps\nRoll off factor: %s%\npolarization(rx): %s", {"freq", "symrate", "rolloff", "pol"}},
    {1243, "This terminal received a request to switch beams.\nType: %s\nCarrier frequency: %s kHz\nSymbol Rate: %s KSps\npolarization(rx, tx): %s\nModem Location(lat, lon): (%s, %s)", {{"beam_switch_type", BeamSwitchTypes}, "freq", "symrate", "pol", "lat", "lon"}},
    {1244, "This terminal switched beams and is now in network on iNet %s and Beam %s.", {"inet_id", "beam_id"}},
    {1245, "This terminal failed to switch beams.\nReason: %s", {{"beam_switch_failure_reason", BeamSwitchFailureReasons}}},
    // 1283: two spaces after "Reason:" are intentional.
    {1283, "This terminal is misconfigured.\nReason:  %s", {{"options_error_reason", OptionsErrorReasons}}},
};
// clang-format on

static_assert(codesAscend(DescriptionCatalog),
              "DescriptionCatalog: codes must ascend and not repeat");
static_assert(
    placeholdersMatchSlots(DescriptionCatalog),
    "DescriptionCatalog: each text needs one %s for each of its slots and no other conversion");

} // namespace eventsviewer
