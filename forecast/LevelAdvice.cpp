// SPDX-License-Identifier: MIT
#include "forecast/LevelAdvice.h"

#include <utility>

namespace ravlo
{

// The search for one level.
class LevelAdviser::Search
{
public:
    Search(ModScheduler& cMod, const SimulationResult& result, std::size_t level,
           const SimulationProgress& progress)
        : m_cMod(cMod), m_result(result), m_level(level), m_judge(result, level), m_progress(progress)
    {
    }

    // The part of the progress that is the next remedy's.
    SimulationProgress NextPart()
    {
        constexpr double dRemedies = 6;
        const double dFrom = m_tried++ / dRemedies;
        return PartOf(m_progress, dFrom, m_tried / dRemedies);
    }
    void AddFair(const std::vector<Troubles>& fair)
    {
        LevelRemedy remedy;
        remedy.sName = L"fair rotation";
        if (m_judge.Helps(remedy, fair, TroublesOf(m_result, m_level)))
            m_found.push_back(std::move(remedy));
    }
    void Try(RemedyKind eKind, std::optional<Remedy> remedy)
    {
        const SimulationProgress progress = NextPart();
        if (!remedy)
            return;
        const SimulationResult trial =
            Simulate(m_cMod, remedy->cStation, m_result.plan, m_result.dtStart, m_result.dDays,
                     {m_result.options.bFairRotation, m_result.options.bFeaturedArtists}, progress);
        LevelRemedy found;
        found.eKind = eKind;
        found.sName = std::move(remedy->sName);
        found.lArtistSepMins = remedy->cStation->levels[m_level].rules.lArtist;
        found.lTitleSepMins = remedy->cStation->levels[m_level].rules.lTitle;
        found.spread = std::move(remedy->spread);
        if (m_judge.Helps(found, trial))
            m_found.push_back(std::move(found));
    }
    std::vector<LevelRemedy> Found() { return std::move(m_found); }

private:
    ModScheduler& m_cMod;
    const SimulationResult& m_result;
    const std::size_t m_level;
    const RemedyJudge m_judge;
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
    return TroublesOf(Simulate(m_cMod, m_result.cStation, m_result.plan, m_result.dtStart, m_result.dDays,
                               {true, m_result.options.bFeaturedArtists}, progress));
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
        search.AddFair(*m_fair);
    const Remedies remedies(m_result, level);
    search.Try(RemedyKind::Spread, remedies.Spread(cRandom));
    search.Try(RemedyKind::ArtistSeparation, remedies.ShorterArtistSeparation());
    search.Try(RemedyKind::TitleSeparation, remedies.ShorterTitleSeparation());
    search.Try(RemedyKind::MoreCuts, remedies.MoreCuts());
    search.Try(RemedyKind::FewerCuts, remedies.FewerCuts());
    Report(progress, 1); // may cancel, which keeps nothing
    m_colFound.emplace(level, search.Found());
}

} // namespace ravlo
