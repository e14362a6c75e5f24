// SPDX-License-Identifier: MIT
#include "forecast/PlayPatterns.h"

#include "base/Text.h"
#include "forecast/MakeUp.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::int64_t secondsPerHour = 3600;
constexpr std::int64_t hoursPerDay = 24;

std::size_t HourOf(std::int64_t seconds) noexcept
{
    return static_cast<std::size_t>(seconds / secondsPerHour % hoursPerDay);
}

// The level of each slot of the plan.
std::vector<std::optional<std::size_t>> LevelsOf(const SimulationResult& result)
{
    std::unordered_map<TextKey, std::size_t> colLevels;
    for (std::size_t level = 0; level < result.cStation->levels.size(); ++level)
    {
        const SnapshotLevel& one = result.cStation->levels[level];
        colLevels.emplace(CategoryKey(one.sCategory, one.lLevel), level);
    }
    std::vector<std::optional<std::size_t>> colOfSlots;
    for (const Slot& slot : result.plan.Slots())
    {
        const auto it = colLevels.find(TextKey(CategoryKey(slot.sCategory, slot.lLevel)));
        colOfSlots.push_back(it == colLevels.end() ? std::nullopt : std::optional(it->second));
    }
    return colOfSlots;
}

} // namespace

PlayPatterns::PlayPatterns(const SimulationResult& result, const ArtistNames& names)
    : m_cuts(result.levels.size())
{
    TimesByText colArtists;
    TimesByText colTitles;
    Collect(result, names, colArtists, colTitles);
    m_artists = DistancesOf(std::move(colArtists));
    m_titles = DistancesOf(std::move(colTitles));
}

void PlayPatterns::Collect(const SimulationResult& result, const ArtistNames& names, TimesByText& colArtists,
                           TimesByText& colTitles)
{
    const std::vector<std::optional<std::size_t>> colLevels = LevelsOf(result);
    for (const SimulatedRow& row : result.rows)
    {
        if (!row.cut)
            continue;
        const std::int64_t seconds = WholeSeconds(row.dtStart);
        const PlainCutValues& cut = result.cStation->cuts[*row.cut].values;
        for (const TextKey& cName : names.NamesOf(cut.cArtist, cut.cTitle))
            colArtists[cName].push_back(seconds);
        if (!cut.cTitle.Empty())
            colTitles[cut.cTitle].push_back(seconds);
        if (const std::optional<std::size_t> level = colLevels[row.slot])
            m_cuts[*level][*row.cut].push_back(seconds);
    }
}

PlayPatterns::Distances PlayPatterns::DistancesOf(TimesByText colTimes)
{
    Distances colDistances;
    for (const auto& [cText, times] : colTimes)
    {
        std::vector<double> colMins;
        for (std::size_t play = 1; play < times.size(); ++play)
            colMins.push_back(static_cast<double>(times[play] - times[play - 1]) / 60);
        if (!colMins.empty())
            colDistances.emplace(cText, SummaryOf(std::move(colMins)));
    }
    return colDistances;
}

std::optional<PlayDistances> PlayPatterns::Find(const Distances& colDistances, const TextKey& cText)
{
    const auto it = colDistances.find(cText);
    return it == colDistances.end() ? std::nullopt : std::optional(it->second);
}

void PlayPatterns::AddHours(CutUse& use, std::size_t level, CutNumber number) const
{
    const auto it = m_cuts[level].find(number);
    if (it == m_cuts[level].end())
        return;
    for (const std::int64_t seconds : it->second)
        ++use.colByHour[HourOf(seconds)];
    use.bLockStep = IsLockStep(it->second);
}

PlayDistances SummaryOf(std::vector<double> colDistances)
{
    std::sort(colDistances.begin(), colDistances.end());
    const std::size_t middle = colDistances.size() / 2;
    const double dMedian = colDistances.size() % 2 == 1
                               ? colDistances[middle]
                               : (colDistances[middle - 1] + colDistances[middle]) / 2;
    return {colDistances.front(), dMedian, colDistances.back()};
}

bool IsLockStep(const std::vector<std::int64_t>& colTimes) noexcept
{
    struct Days
    {
        int count = 0;
        std::int64_t last = -1;
        void Note(std::int64_t day) noexcept { count += std::exchange(last, day) == day ? 0 : 1; }
    };
    Days played;
    std::array<Days, hoursPerDay> colByHour;
    for (const std::int64_t seconds : colTimes)
    {
        const std::int64_t day = seconds / (secondsPerHour * hoursPerDay);
        played.Note(day);
        colByHour[HourOf(seconds)].Note(day);
    }
    return std::any_of(colByHour.begin(), colByHour.end(),
                       [&](const Days& days) { return days.count >= 2 && days.count * 2 > played.count; });
}

} // namespace ravlo
