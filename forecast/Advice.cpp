// SPDX-License-Identifier: MIT
#include "forecast/Advice.h"

#include "base/Text.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t remediesPerLevel = 4; // and fair rotation, which is tried once for all
constexpr std::size_t mostUseful = 3;

// The part of a long piece of work that is done, as its parts are.
SimulationProgress PartOf(const SimulationProgress& progress, double dFrom, double dTo)
{
    return [&progress, dFrom, dTo](double dDone, bool& bCancel) {
        if (progress)
            progress(dFrom + dDone * (dTo - dFrom), bCancel);
    };
}

void Tell(const SimulationProgress& progress, double dDone)
{
    bool bCancel = false;
    if (progress)
        progress(dDone, bCancel);
    if (bCancel)
        throw RuntimeError(error::UserInterrupt);
}

std::wstring Change(std::size_t before, std::size_t after)
{
    return DecimalText(static_cast<std::int64_t>(before)) + L" -> " +
           DecimalText(static_cast<std::int64_t>(after));
}

class Adviser
{
public:
    Adviser(const SimulationResult& result, StationHealth& health, const SimulationProgress& progress)
        : m_result(result), m_health(health), m_progress(progress)
    {
        for (std::size_t level = 0; level < health.levels.size(); ++level)
            if (health.levels[level].eLight != Light::Green)
                m_levels.push_back(level);
    }

    std::vector<SpreadTrial> Work()
    {
        Tell(m_progress, 0);
        if (!m_levels.empty())
        {
            m_result.cStation->cMod->Ports().cRandom.Randomize();
            TryFairRotation();
        }
        for (const std::size_t level : m_levels)
            TryRemedies(level);
        RankRemedies();
        Tell(m_progress, 1);
        return std::move(m_spreads);
    }

private:
    struct Useful
    {
        std::wstring sText;
        std::size_t starved = 0; // cuts that are so no longer
        std::size_t rules = 0;   // rules that are broken no longer
    };

    SimulationResult Trial(const std::shared_ptr<const StationSnapshot>& cStation, bool bFairRotation)
    {
        const double dTrials = 1 + static_cast<double>(m_levels.size() * remediesPerLevel);
        const double dFrom = m_tried++ / dTrials;
        return Simulate(cStation, m_result.plan, m_result.dtStart, m_result.dDays,
                        {bFairRotation, m_result.options.bFeaturedArtists},
                        PartOf(m_progress, dFrom, m_tried / dTrials));
    }

    void TryFairRotation()
    {
        if (m_result.options.bFairRotation)
        {
            ++m_tried;
            return;
        }
        const SimulationResult fair = Trial(m_result.cStation, true);
        Troubles before;
        Troubles after;
        for (std::size_t level = 0; level < m_result.levels.size(); ++level)
        {
            before += TroublesOf(m_result, level);
            after += TroublesOf(fair, level);
        }
        NoteUseful(L"fair rotation: ", before, after);
        for (const std::size_t level : m_levels)
            NoteAdvice(level, L"fair rotation", TroublesOf(fair, level));
    }

    void TryRemedies(std::size_t level)
    {
        const Remedies remedies(m_result, level);
        Try(level, remedies.Spread(m_result.cStation->cMod->Ports().cRandom));
        Try(level, remedies.ShorterArtistSeparation());
        Try(level, remedies.MoreCuts());
        Try(level, remedies.FewerCuts());
    }

    void Try(std::size_t level, std::optional<Remedy> remedy)
    {
        if (!remedy)
        {
            ++m_tried;
            return;
        }
        const Troubles after = TroublesOf(Trial(remedy->cStation, m_result.options.bFairRotation), level);
        if (!NoteAdvice(level, remedy->sName, after))
            return;
        NoteUseful(LevelText(m_health.levels[level].sKey) + L": " + remedy->sName + L": ",
                   TroublesOf(m_result, level), after);
        if (remedy->spread)
            m_spreads.push_back(std::move(*remedy->spread));
    }

    // Returns whether it helps.
    bool NoteAdvice(std::size_t level, const std::wstring& sName, const Troubles& after)
    {
        const Troubles before = TroublesOf(m_result, level);
        if (!Improves(before, after))
            return false;
        m_health.levels[level].advice.push_back(sName + L": " + EffectText(before, after));
        return true;
    }

    void NoteUseful(const std::wstring& sName, const Troubles& before, const Troubles& after)
    {
        if (Improves(before, after))
            m_useful.push_back({sName + EffectText(before, after),
                                before.starved - std::min(before.starved, after.starved),
                                before.rulesBroken - after.rulesBroken});
    }

    void RankRemedies()
    {
        std::stable_sort(m_useful.begin(), m_useful.end(), [](const Useful& a, const Useful& b) {
            return std::pair(a.starved, a.rules) > std::pair(b.starved, b.rules);
        });
        m_useful.resize(std::min(m_useful.size(), mostUseful));
        for (Useful& useful : m_useful)
            m_health.remedies.push_back(std::move(useful.sText));
    }

    const SimulationResult& m_result;
    StationHealth& m_health;
    const SimulationProgress& m_progress;
    std::vector<std::size_t> m_levels; // that are not green
    int m_tried = 0;                   // simulations, or remedies that do not apply
    std::vector<Useful> m_useful;
    std::vector<SpreadTrial> m_spreads;
};

} // namespace

std::vector<SpreadTrial> Advise(const SimulationResult& result, StationHealth& health,
                                const SimulationProgress& progress)
{
    return Adviser(result, health, progress).Work();
}

Forecast MakeForecast(std::shared_ptr<const StationSnapshot> cStation, const Plan& plan, DateTime dtStart,
                      double dDays, const SimulationOptions& options, const SimulationProgress& progress)
{
    constexpr double dFirstPart = 0.2; // how much advice there is to find is not known before
    Forecast forecast;
    forecast.result =
        Simulate(std::move(cStation), plan, dtStart, dDays, options, PartOf(progress, 0, dFirstPart));
    forecast.health = HealthOf(forecast.result);
    forecast.spreads = Advise(forecast.result, forecast.health, PartOf(progress, dFirstPart, 1));
    return forecast;
}

std::wstring EffectText(const Troubles& before, const Troubles& after)
{
    const bool bBroken = before.rulesBroken + after.rulesBroken > 0;
    return L"never played " + Change(before.neverPlayed, after.neverPlayed) + L", under half " +
           Change(before.underHalf, after.underHalf) +
           (bBroken ? L", rules broken " + Change(before.rulesBroken, after.rulesBroken)
                    : std::wstring(L", no rule broken"));
}

} // namespace ravlo
