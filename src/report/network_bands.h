#pragma once

#include "catalog/network_changes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace eventsviewer {

/// A time in which the terminal was in network, out of it, or neither is known.
struct NetworkBand {
    NetworkState state = NetworkState::NotKnown;
    const NetworkChange* first = nullptr; ///< what begins it; null at the beginning of the log
    const NetworkChange* last = nullptr;  ///< what ends it; null at the end of the log
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
    std::optional<std::int64_t> since; ///< in seconds; nothing if no event in it has a time
    std::optional<std::int64_t> until; ///< is known once the band has ended, if `since` is
    std::int64_t clockSteps = 0;       ///< by how many seconds the clock was put forward in it
    bool isAtLeast = false; ///< whether it may have begun before or ended after these times
    std::string reason;     ///< for the caller

    /// The seconds that it lasted; nothing if they are not known.
    std::optional<std::int64_t> length() const;
};

/// The bands of a log:
///
/// - What the log begins with is not known.
/// - What only ends that the terminal is known to be in network does not end that it is out of it.
/// - Without a time, an event happened between the known times before and after it. So the band
///   before it ends at the one, its own begins at the other, and what is between is not known.
class NetworkBands {
public:
    static constexpr std::size_t kMostBands = 2000; ///< older ones are left out

    /// Adds the next event, which is on `line`, at `moment` if its time is known. Returns the band
    /// that it gives a reason for, or null.
    NetworkBand* add(std::int32_t code, std::uint64_t line, std::optional<std::int64_t> moment);

    /// The clock was put forward by `seconds` by the last event.
    void addClockStep(std::int64_t seconds);

    /// To be called after the last event.
    void finish();

    const std::deque<NetworkBand>& bands() const { return bands_; }

    /// How many bands are left out.
    std::size_t leftOut() const { return leftOut_; }

private:
    void beginBand(const NetworkChange& change, std::uint64_t line,
                   std::optional<std::int64_t> moment);
    void beginLate(std::int64_t moment);

    std::deque<NetworkBand> bands_;
    std::size_t leftOut_ = 0;
    std::optional<std::int64_t> lastMoment_;
};

} // namespace eventsviewer
