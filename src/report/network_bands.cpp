#include "report/network_bands.h"

namespace eventsviewer {

std::optional<std::int64_t> NetworkBand::length() const
{
    const std::int64_t seconds = since && until ? *until - *since - clockSteps : -1;
    return seconds < 0 ? std::nullopt : std::optional(seconds);
}

NetworkBand* NetworkBands::add(std::int32_t code, std::uint64_t line,
                               std::optional<std::int64_t> moment)
{
    if (bands_.empty()) {
        NetworkBand first;
        first.firstLine = line;
        bands_.push_back(first);
    }
    if (moment && !bands_.back().since) {
        beginLate(*moment);
    }
    const NetworkState state = bands_.back().state;
    const NetworkChange* const change = findNetworkChange(code);
    const bool isTry = change != nullptr && change->state == NetworkState::NotKnown;
    const bool isTryWhileOut = isTry && state == NetworkState::Out;
    if (change != nullptr && change->state != state && !isTryWhileOut) {
        beginBand(*change, line, moment);
    }
    lastMoment_ = moment ? moment : lastMoment_;
    NetworkBand& band = bands_.back();
    band.lastLine = line;
    const bool isReason = change != nullptr && change->state == band.state;
    return isReason && band.state != NetworkState::In ? &band : nullptr;
}

void NetworkBands::beginBand(const NetworkChange& change, std::uint64_t line,
                             std::optional<std::int64_t> moment)
{
    NetworkBand& ended = bands_.back();
    const bool isCertain = moment && !change.isBelated;
    ended.until = isCertain ? moment : lastMoment_;
    ended.isAtLeast = ended.isAtLeast || !isCertain;
    ended.last = &change;
    ended.lastLine = line;
    NetworkBand begun;
    begun.state = change.state;
    begun.first = &change;
    begun.firstLine = line;
    const bool isContinued = isCertain || change.state == NetworkState::NotKnown;
    begun.since = isContinued ? ended.until : std::nullopt;
    bands_.push_back(begun);
    while (bands_.size() > kMostBands) {
        bands_.pop_front();
        ++leftOut_;
    }
}

// The last band began without a time. The next known time is `moment`.
void NetworkBands::beginLate(std::int64_t moment)
{
    NetworkBand band = bands_.back();
    band.since = moment;
    bands_.pop_back();
    if (!bands_.empty()) {
        band.isAtLeast = true;
        if (bands_.back().state != NetworkState::NotKnown) {
            NetworkBand gap;
            gap.first = band.first;
            gap.last = band.first;
            gap.firstLine = band.firstLine;
            gap.lastLine = band.firstLine;
            gap.since = lastMoment_;
            gap.reason = "an event without a known time";
            bands_.push_back(gap);
        }
        bands_.back().until = moment;
        bands_.back().isAtLeast = false;
    }
    bands_.push_back(band);
}

void NetworkBands::addClockStep(std::int64_t seconds)
{
    bands_.back().clockSteps += seconds;
}

void NetworkBands::finish()
{
    if (!bands_.empty()) {
        bands_.back().until = lastMoment_;
    }
}

} // namespace eventsviewer
