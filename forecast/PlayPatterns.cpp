// SPDX-License-Identifier: MIT
#include "forecast/PlayPatterns.h"

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

} // namespace

PlayPatterns::PlayPatterns(const SimulationResult& result, const ArtistNames& names,
                           const LetHostRun& letHostRun)
    : m_cuts(result.levels.size()), m_hours(result.levels.size())
{
    CutByCut cutByCut(letHostRun);
    TimesByText colArtists;
    TimesByText colTitles;
    Collect(result, names, colArtists, colTitles, cutByCut);
    m_artists = DistancesOf(colArtists, cutByCut);
    m_titles = DistancesOf(colTitles, cutByCut);
}

void PlayPatterns::Collect(const SimulationResult& result, const ArtistNames& names, TimesByText& colArtists,
                           TimesByText& colTitles, CutByCut& cutByCut)
{
    for (const SimulatedRow& row : result.rows)
    {
        cutByCut.Next();
        const std::int64_t seconds = WholeSeconds(row.dtStart);
        const std::optional<std::size_t> level = result.levelOfSlot[row.slot];
        if (level)
            m_hours[*level].set(HourOf(seconds));
        if (!row.cut)
            continue;
        const PlainCutValues& cut = result.cStation->cuts[*row.cut].values;
        names.ForEachName(cut.cArtist, cut.cTitle,
                          [&](const TextKey& cName) { colArtists[cName].push_back(seconds); });
        if (!cut.cTitle.Empty())
            colTitles[cut.cTitle].push_back(seconds);
        if (level)
            m_cuts[*level][*row.cut].push_back(seconds);
    }
}

PlayPatterns::Distances PlayPatterns::DistancesOf(const TimesByText& colTimes, CutByCut& cutByCut)
{
    Distances colDistances;
    for (const auto& [cText, times] : colTimes)
    {
        cutByCut.Next();
        std::vector<double> colMins;
        colMins.reserve(times.size());
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
    use.bLockStep = IsLockStep(it->second, m_hours[level].count());
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

bool IsLockStep(const std::vector<std::int64_t>& colTimes, std::size_t hoursAsked) noexcept
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
    // By chance an hour has plays / hoursAsked of the plays, all on different days at most.
    return std::any_of(colByHour.begin(), colByHour.end(), [&](const Days& days) {
        return days.count >= 2 && days.count * 2 > played.count &&
               static_cast<std::size_t>(days.count) * hoursAsked >= 2 * colTimes.size();
    });
}

} // namespace ravlo
