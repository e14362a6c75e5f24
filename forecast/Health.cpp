// SPDX-License-Identifier: MIT
#include "forecast/Health.h"

#include "base/Text.h"
#include "forecast/Light.h"
#include "forecast/MakeUp.h"
#include "forecast/PlayPatterns.h"
#include "forecast/Troubles.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

double Share(double dPart, double dWhole) { return dWhole > 0 ? dPart / dWhole : 0; }

// Scatters small numbers over 64 bits, so that sums of different ones practically never are equal.
std::uint64_t Scattered(std::uint64_t number) noexcept
{
    number = (number + 0x9E3779B97F4A7C15) * 0xBF58476D1CE4E5B9;
    number = (number ^ number >> 29) * 0x94D049BB133111EB;
    return number ^ number >> 32;
}

// The minutes of separation that each artist needs, over all levels.
class ArtistLoads
{
public:
    // Adds the minutes of separation of all picks of a level. mark: the same number for the same cuts.
    void Add(const TextKey& cName, double dMins, std::uint64_t mark)
    {
        if (!(dMins > 0))
            return;
        const auto [it, bNew] = m_colPositions.try_emplace(cName, m_loads.size());
        if (bNew)
            m_loads.push_back({cName, 0, 0});
        m_loads[it->second].dMins += dMins;
        m_loads[it->second].mark += mark;
    }
    // The artists that are asked too much, the worst first. Of several names with the same cuts, only the
    // first: they are one fact.
    std::vector<OverAskedArtist> OverAsked(double dDays) const
    {
        constexpr double dDayMins = 1440;
        constexpr double dRounding = 1e-9;
        std::vector<OverAskedArtist> overAsked;
        std::unordered_set<std::uint64_t> colMarks;
        for (const Load& load : m_loads)
            if (const double dLoad = load.dMins / (dDays * dDayMins);
                dLoad > 1 + dRounding && colMarks.insert(load.mark).second)
                overAsked.push_back({load.cName.Text(), dLoad});
        std::stable_sort(overAsked.begin(), overAsked.end(),
                         [](const OverAskedArtist& a, const OverAskedArtist& b) {
            return a.dLoad > b.dLoad;
        });
        return overAsked;
    }

private:
    struct Load
    {
        TextKey cName;
        double dMins;
        std::uint64_t mark; // of the cuts
    };
    std::unordered_map<TextKey, std::size_t> m_colPositions; // in m_loads
    std::vector<Load> m_loads;
};

class Diagnosis
{
public:
    Diagnosis(const SimulationResult& result, const LetHostRun& letHostRun)
        : m_result(result), m_station(*result.cStation), m_letHostRun(letHostRun), m_cutByCut(letHostRun),
          m_names(m_station.names.With(result.options.bFeaturedArtists)),
          m_patterns(result, m_names, letHostRun)
    {
    }

    StationHealth Run()
    {
        m_health.dtStart = m_result.dtStart;
        m_health.dDays = m_result.dDays;
        m_health.sPlan = m_result.plan.Name();
        m_health.sPlanFile = m_result.plan.File();
        m_health.options = m_result.options;
        m_health.lPicks = static_cast<std::int32_t>(m_result.rows.size());
        AddWarnings();
        for (std::size_t level = 0; level < m_result.levels.size(); ++level)
            AddLevel(level);
        m_health.overAsked = m_loads.OverAsked(m_result.PlayedDays());
        return std::move(m_health);
    }

private:
    void AddWarnings()
    {
        m_health.warnings = m_station.warnings;
        std::vector<std::wstring> colMissing; // levels that the plan asks for
        for (std::size_t slot = 0; slot < m_result.plan.Slots().size(); ++slot)
        {
            const Slot& asked = m_result.plan.Slots()[slot];
            const std::wstring sLevel = asked.sCategory + L" " + DecimalText(asked.lLevel);
            if (!m_result.levelOfSlot[slot] &&
                std::find(colMissing.begin(), colMissing.end(), sLevel) == colMissing.end())
                colMissing.push_back(sLevel);
        }
        for (const std::wstring& sLevel : colMissing)
            m_health.warnings.push_back(L"The plan asks for " + sLevel +
                                        L", which does not exist. Its slots stay empty.");
    }

    void AddLevel(std::size_t level)
    {
        const SnapshotLevel& source = m_station.levels[level];
        const MakeUp makeUp = MakeUpOf(m_station, source.order, m_names, m_letHostRun);
        LevelHealth health;
        health.sKey = CategoryKey(source.sCategory, source.lLevel);
        AddSeparations(health, level, makeUp);
        AddCuts(health, level);
        AddArtists(health, level, makeUp);
        const Starvation starvation = StarvationOf(m_result, level);
        health.neverPlayed = Starved(level, starvation.neverPlayed);
        health.underHalf = Starved(level, starvation.underHalf);
        SetLight(health);
        m_health.levels.push_back(std::move(health));
    }

    void AddSeparations(LevelHealth& health, std::size_t level, const MakeUp& makeUp) const
    {
        const SeparationRules& rules = m_station.levels[level].rules;
        const AskingRate rate{m_result.PlayedDays(), m_result.levels[level].asked};
        health.lArtists = static_cast<std::int32_t>(makeUp.artists.size());
        health.sTopArtist = makeUp.commonest.cName.Text();
        health.lTopArtistCuts = static_cast<std::int32_t>(makeUp.commonest.cuts);
        health.sngSlotMins = static_cast<float>(rate.SlotMins());
        health.lAttainableArtistMins = rate.AttainableMins(makeUp.cuts, makeUp.mostOfArtist);
        health.lAttainableTitleMins = rate.AttainableMins(makeUp.cuts, makeUp.mostOfTitle);
        health.lArtistSepMins = ArtistSeparation(rules);
        health.lTitleSepMins = TitleSeparation(rules);
    }

    void AddCuts(LevelHealth& health, std::size_t level)
    {
        const LevelOutcome& outcome = m_result.levels[level];
        const std::vector<CutNumber>& order = m_station.levels[level].order;
        health.lPicks = static_cast<std::int32_t>(outcome.asked);
        health.lUnfilled = static_cast<std::int32_t>(outcome.unfilled);
        health.lRulesBroken = static_cast<std::int32_t>(outcome.rulesBroken);
        health.cuts.reserve(order.size());
        double dPlays = 0;
        for (std::size_t position = 0; position < order.size(); ++position)
        {
            const PlainCutValues& cut = m_station.cuts[order[position]].values;
            m_cutByCut.Next();
            CutUse& use = health.cuts.emplace_back();
            use.cKey = cut.cKey;
            use.cArtist = cut.cArtist;
            use.cTitle = cut.cTitle;
            use.lPlays = static_cast<std::int32_t>(outcome.cuts[position].plays);
            use.titleDistances = m_patterns.OfTitle(cut.cTitle);
            m_patterns.AddHours(use, level, order[position]);
            health.lFewestPlays = position == 0 ? use.lPlays : std::min(health.lFewestPlays, use.lPlays);
            health.lMostPlays = std::max(health.lMostPlays, use.lPlays);
            dPlays += use.lPlays;
            health.lOpeners += cut.bOpener ? 1 : 0;
        }
        health.dMeanPlays = Share(dPlays, static_cast<double>(order.size()));
    }

    void AddArtists(LevelHealth& health, std::size_t level, const MakeUp& makeUp)
    {
        const std::vector<CutNumber>& order = m_station.levels[level].order;
        struct OfCuts
        {
            std::int32_t lPlays = 0;
            std::uint64_t mark = 0; // equal for equal cuts
        };
        std::unordered_map<TextKey, OfCuts> colOfCuts;
        for (std::size_t position = 0; position < order.size(); ++position)
        {
            const PlainCutValues& cut = m_station.cuts[order[position]].values;
            m_cutByCut.Next();
            m_names.ForEachName(cut.cArtist, cut.cTitle, [&](const TextKey& cName) {
                OfCuts& ofCuts = colOfCuts[cName];
                ofCuts.lPlays += health.cuts[position].lPlays;
                ofCuts.mark += Scattered(std::uint64_t{level} << 32 | position);
            });
        }
        health.artists.reserve(makeUp.artists.size());
        for (const MakeUp::Artist& artist : makeUp.artists)
        {
            const auto& [lPlays, mark] = colOfCuts[artist.cName];
            const double dShare = Share(static_cast<double>(artist.cuts), static_cast<double>(makeUp.cuts));
            health.artists.push_back({artist.cName, static_cast<std::int32_t>(artist.cuts), lPlays, dShare,
                                      Share(lPlays, health.lPicks), m_patterns.OfArtist(artist.cName)});
            m_loads.Add(artist.cName, dShare * health.lArtistSepMins * health.lPicks, mark);
        }
    }

    std::vector<StarvedCut> Starved(std::size_t level, const std::vector<std::size_t>& colPositions)
    {
        std::vector<StarvedCut> colStarved;
        for (const std::size_t position : colPositions)
        {
            const CutOutcome& outcome = m_result.levels[level].cuts[position];
            StarvedCut starved{position, static_cast<std::int32_t>(outcome.plays),
                               static_cast<std::int32_t>(outcome.passedOver), outcome.eRule, std::nullopt};
            if (outcome.blockedBy)
                starved.blockedBy = BlockerAt(*outcome.blockedBy);
            colStarved.push_back(starved);
        }
        return colStarved;
    }

    // The position of a cut in the blockers, each of which is there once.
    std::size_t BlockerAt(CutNumber number)
    {
        const auto [it, bNew] = m_colBlockers.try_emplace(number, m_health.blockers.size());
        const PlainCutValues& cut = m_station.cuts[number].values;
        if (bNew)
            m_health.blockers.push_back({cut.cKey, cut.cArtist, cut.cTitle});
        return it->second;
    }

    const SimulationResult& m_result;
    const StationSnapshot& m_station;
    const LetHostRun& m_letHostRun;
    CutByCut m_cutByCut;
    const ArtistNames m_names; // in force in the simulation
    const PlayPatterns m_patterns;
    std::unordered_map<CutNumber, std::size_t> m_colBlockers; // positions in m_health.blockers
    ArtistLoads m_loads;
    StationHealth m_health;
};

} // namespace

StationHealth HealthOf(const SimulationResult& result, const LetHostRun& letHostRun)
{
    return Diagnosis(result, letHostRun).Run();
}

} // namespace ravlo
