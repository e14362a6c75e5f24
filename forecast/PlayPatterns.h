// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/Simulation.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// When the cuts, artists and titles of a simulation played.
class PlayPatterns
{
public:
    PlayPatterns(const SimulationResult& result, const ArtistNames& names, const LetHostRun& letHostRun);

    // In any level; nothing before a second play, and for an empty text.
    std::optional<PlayDistances> OfArtist(const TextKey& cName) const { return Find(m_artists, cName); }
    std::optional<PlayDistances> OfTitle(const TextKey& cTitle) const { return Find(m_titles, cTitle); }

    // Completes a cut's figures with the hours of its plays from one level.
    void AddHours(CutUse& use, std::size_t level, CutNumber number) const;

private:
    using Times = std::vector<std::int64_t>; // whole seconds, ascending
    using TimesByText = std::unordered_map<TextKey, Times>;
    using Distances = std::unordered_map<TextKey, PlayDistances>;

    void Collect(const SimulationResult& result, const ArtistNames& names, TimesByText& colArtists,
                 TimesByText& colTitles, CutByCut& cutByCut);
    static Distances DistancesOf(const TimesByText& colTimes, CutByCut& cutByCut);
    static std::optional<PlayDistances> Find(const Distances& colDistances, const TextKey& cText);

    Distances m_artists;
    Distances m_titles;
    std::vector<std::unordered_map<CutNumber, Times>> m_cuts; // by level
    std::vector<std::bitset<24>> m_hours;                     // of the day, in which each level is asked
};

// The smallest, median and largest of some distances; of an even number the median is the mean of the middle
// two. Precondition: there is at least one.
PlayDistances SummaryOf(std::vector<double> colDistances);

// Whether the plays of a cut keep to one hour of the day: there is one in it on more than half of the days
// with a play, on two at least, and on twice as many as if they fell by chance into the hours in which the
// level is asked. Whole seconds, ascending. Precondition: hoursAsked is 1 to 24.
bool IsLockStep(const std::vector<std::int64_t>& colTimes, std::size_t hoursAsked) noexcept;

} // namespace ravlo
