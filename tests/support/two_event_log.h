#pragma once

#include <string>

namespace eventsviewer {

/// A log of one event in each of its two files, and what its tables hold.
inline constexpr const char* kOlderLog = "{\"id\":835,\"time\":\"older\"}\n";
inline constexpr const char* kNewerLog = "{\"id\":684,\"time\":\"newer\"}\n";

inline const std::string kOlderRow =
    "older               \033[1;34mMOBILE_LOST_GPS               \033[0mThis terminal is no longer "
    "getting GPS readings.\n\n";
inline const std::string kNewerRow =
    "newer               \033[1;34mDID_RECEIVED                  \033[0mUnknown\n\n";

inline std::string tableOf(const std::string& heading, const std::string& rows)
{
    return heading +
           "\n\n"
           "Timestamp           Event                         Detail\n"
           "================================================================================\n" +
           rows;
}

inline const std::string kOlderTable = tableOf("Last 1 events from older to older:", kOlderRow);
inline const std::string kNewerTable = tableOf("Last 1 events from newer to newer:", kNewerRow);
inline const std::string kWholeTable =
    tableOf("Last 2 events from older to newer:", kOlderRow + kNewerRow);

} // namespace eventsviewer
