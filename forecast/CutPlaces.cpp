// SPDX-License-Identifier: MIT
#include "forecast/CutPlaces.h"

#include <algorithm>
#include <numeric>

namespace ravlo
{

CutPlaces::CutPlaces(const StationSnapshot& snapshot, const LetHostRun& letHostRun)
    : m_first(snapshot.cuts.size() + 1)
{
    for (const SnapshotLevel& level : snapshot.levels)
        for (const CutNumber number : level.order)
            ++m_first[number + 1];
    std::partial_sum(m_first.begin(), m_first.end(), m_first.begin());
    m_places.resize(m_first.back());
    std::vector<std::uint32_t> colNext(m_first.begin(), m_first.end() - 1);
    CutByCut cutByCut(letHostRun);
    for (std::size_t level = 0; level < snapshot.levels.size(); ++level)
        for (std::size_t position = 0; position < snapshot.levels[level].order.size(); ++position)
        {
            cutByCut.Next();
            m_places[colNext[snapshot.levels[level].order[position]]++] = {
                static_cast<std::uint32_t>(level), static_cast<std::uint32_t>(position)};
        }
}

std::size_t CutPlaces::PositionIn(std::size_t level, CutNumber number) const noexcept
{
    const std::span<const Place> places = Of(number);
    return std::find_if(places.begin(), places.end(),
                        [&](const Place& place) { return place.level == level; })
        ->position;
}

} // namespace ravlo
