// SPDX-License-Identifier: MIT
#include "forecast/LevelAdvice.h"

#include "base/Text.h"

#include <utility>

namespace ravlo
{

namespace
{

std::wstring Change(std::size_t before, std::size_t after)
{
    return DecimalText(static_cast<std::int64_t>(before)) + L" -> " +
           DecimalText(static_cast<std::int64_t>(after));
}

} // namespace

std::wstring EffectText(const Troubles& before, const Troubles& after)
{
    const bool bBroken = before.rulesBroken + after.rulesBroken > 0;
    return L"never played " + Change(before.neverPlayed, after.neverPlayed) + L", under half " +
           Change(before.underHalf, after.underHalf) +
           (bBroken ? L", rules broken " + Change(before.rulesBroken, after.rulesBroken)
                    : std::wstring(L", no rule broken"));
}

std::wstring LevelRemedy::Text() const { return sName + L": " + EffectText(before, after); }

// The search for one level.
class LevelAdviser::Search
{
public:
    Search(ModScheduler& cMod, const SimulationResult& result, std::size_t level,
           const SimulationProgress& progress)
        : m_cMod(cMod), m_result(result), m_level(level), m_before(TroublesOf(result, level)),
          m_progress(progress)
    {
    }

    // The part of the progress that is the next remedy's.
    SimulationProgress NextPart()
    {
        constexpr double dRemedies = 5;
        const double dFrom = m_tried++ / dRemedies;
        return PartOf(m_progress, dFrom, m_tried / dRemedies);
    }
    void Keep(LevelRemedy remedy)
    {
        if (Improves(remedy.before, remedy.after))
            m_found.push_back(std::move(remedy));
    }
    void AddFair(const Troubles& after)
    {
        Keep({RemedyKind::FairRotation, L"fair rotation", m_before, after, 0, std::nullopt});
    }
    void Try(RemedyKind eKind, std::optional<Remedy> remedy)
    {
        const SimulationProgress progress = NextPart();
        if (!remedy)
            return;
        const SimulationResult trial =
            Simulate(m_cMod, remedy->cStation, m_result.plan, m_result.dtStart, m_result.dDays,
                     {m_result.options.bFairRotation, m_result.options.bFeaturedArtists}, progress);
        Keep({eKind, std::move(remedy->sName), m_before, TroublesOf(trial, m_level),
              remedy->cStation->levels[m_level].rules.lArtist, std::move(remedy->spread)});
    }
    std::vector<LevelRemedy> Found() { return std::move(m_found); }

private:
    ModScheduler& m_cMod;
    const SimulationResult& m_result;
    const std::size_t m_level;
    const Troubles m_before;
    const SimulationProgress& m_progress;
    int m_tried = 0;
    std::vector<LevelRemedy> m_found;
};

const std::vector<LevelRemedy>* LevelAdviser::Of(std::size_t level) const
{
    const auto found = m_colFound.find(level);
    return found == m_colFound.end() ? nullptr : &found->second;
}

std::vector<Troubles> LevelAdviser::TroublesWithFairRotation(const SimulationProgress& progress) const
{
    const SimulationResult fair =
        Simulate(m_cMod, m_result.cStation, m_result.plan, m_result.dtStart, m_result.dDays,
                 {true, m_result.options.bFeaturedArtists}, progress);
    std::vector<Troubles> colTroubles;
    for (std::size_t level = 0; level < fair.levels.size(); ++level)
        colTroubles.push_back(TroublesOf(fair, level));
    return colTroubles;
}

void LevelAdviser::Find(std::size_t level, const SimulationProgress& progress)
{
    if (Of(level))
        return;
    Report(progress, 0);
    Random& cRandom = m_cMod.Ports().cRandom;
    cRandom.Randomize();
    Search search(m_cMod, m_result, level, progress);
    const SimulationProgress fairPart = search.NextPart();
    if (!m_fair && !m_result.options.bFairRotation)
        m_fair = TroublesWithFairRotation(fairPart);
    if (m_fair)
        search.AddFair(m_fair->at(level));
    const Remedies remedies(m_result, level);
    search.Try(RemedyKind::Spread, remedies.Spread(cRandom));
    search.Try(RemedyKind::ArtistSeparation, remedies.ShorterArtistSeparation());
    search.Try(RemedyKind::MoreCuts, remedies.MoreCuts());
    search.Try(RemedyKind::FewerCuts, remedies.FewerCuts());
    Report(progress, 1); // may cancel, which keeps nothing
    m_colFound.emplace(level, search.Found());
}

} // namespace ravlo
