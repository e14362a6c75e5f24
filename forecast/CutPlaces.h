// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Snapshot.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ravlo
{

// Where the cuts of a snapshot are in its orders. Two arrays: a map of nodes costs as much as a simulated day
// for a large station.
class CutPlaces
{
public:
    struct Place
    {
        std::uint32_t level;    // as a position in the snapshot's
        std::uint32_t position; // in its order
    };

    // Pumps for each few cuts.
    explicit CutPlaces(const StationSnapshot& snapshot, const LetHostRun& letHostRun = {});

    // In the levels' order; none for a cut of the history alone.
    std::span<const Place> Of(CutNumber number) const noexcept
    {
        return std::span(m_places).subspan(m_first[number], m_first[number + 1] - m_first[number]);
    }
    // Precondition: the level has the cut.
    std::size_t PositionIn(std::size_t level, CutNumber number) const noexcept;

private:
    std::vector<std::uint32_t> m_first; // place of each cut, and the end
    std::vector<Place> m_places;
};

} // namespace ravlo
