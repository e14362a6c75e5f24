// SPDX-License-Identifier: MIT
#include "forecast/Advice.h"

#include "forecast/ReportText.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

namespace ravlo
{

namespace
{

struct Useful
{
    std::wstring sText;
    std::int64_t starved = 0; // cuts of the station that are so no longer
    std::int64_t rules = 0;   // rules that are broken no longer
};

Useful UsefulOf(const std::wstring& sWhere, const LevelRemedy& remedy)
{
    const auto fewer = [&](std::size_t Troubles::*pCount) {
        return static_cast<std::int64_t>(remedy.allBefore.*pCount) -
               static_cast<std::int64_t>(remedy.allAfter.*pCount);
    };
    return {sWhere + remedy.Text(), fewer(&Troubles::starved), fewer(&Troubles::rulesBroken)};
}

// Fair rotation is one remedy for all levels together.
void AddFair(const LevelAdviser& adviser, const SimulationResult& result, std::vector<Useful>& colUseful)
{
    if (!adviser.Fair())
        return;
    LevelRemedy fair;
    fair.sName = L"fair rotation";
    for (std::size_t level = 0; level < result.levels.size(); ++level)
    {
        fair.before += TroublesOf(result, level);
        fair.after += adviser.Fair()->at(level);
    }
    fair.allBefore = fair.before;
    fair.allAfter = fair.after;
    if (Improves(fair.before, fair.after))
        colUseful.push_back(UsefulOf(L"", fair));
}

std::vector<std::wstring> MostUseful(const LevelAdviser& adviser, const SimulationResult& result,
                                     const StationHealth& health)
{
    constexpr std::size_t most = 3;
    std::vector<Useful> colUseful;
    AddFair(adviser, result, colUseful);
    for (std::size_t level = 0; level < health.levels.size(); ++level)
        if (const std::vector<LevelRemedy>* pRemedies = adviser.Of(level))
            for (const LevelRemedy& remedy : *pRemedies)
                if (remedy.eKind != RemedyKind::FairRotation)
                    colUseful.push_back(UsefulOf(LevelText(health.levels[level].sKey) + L": ", remedy));
    std::stable_sort(colUseful.begin(), colUseful.end(), [](const Useful& a, const Useful& b) {
        return std::pair(a.starved, a.rules) > std::pair(b.starved, b.rules);
    });
    colUseful.resize(std::min(colUseful.size(), most));
    std::vector<std::wstring> colTexts;
    colTexts.reserve(colUseful.size());
    for (Useful& useful : colUseful)
        colTexts.push_back(std::move(useful.sText));
    return colTexts;
}

} // namespace

void Advise(LevelAdviser& adviser, const SimulationResult& result, StationHealth& health,
            const SimulationProgress& progress, const std::function<void(std::size_t level)>& advised)
{
    Report(progress, 0);
    std::vector<std::size_t> levels; // that are not green
    for (std::size_t level = 0; level < health.levels.size(); ++level)
        if (health.levels[level].eLight != Light::Green)
            levels.push_back(level);
    const double dLevels = static_cast<double>(levels.size());
    for (std::size_t at = 0; at < levels.size(); ++at)
    {
        AdviseLevel(
            adviser, levels[at], health,
            PartOf(progress, static_cast<double>(at) / dLevels, static_cast<double>(at + 1) / dLevels));
        if (advised)
            advised(levels[at]);
    }
    health.remedies = MostUseful(adviser, result, health);
    Report(progress, 1);
}

void AdviseLevel(LevelAdviser& adviser, std::size_t level, StationHealth& health,
                 const SimulationProgress& progress)
{
    LevelHealth& advised = health.levels.at(level);
    if (advised.eLight == Light::Green)
        return;
    adviser.Find(level, progress);
    advised.advice.clear();
    for (const LevelRemedy& remedy : *adviser.Of(level))
        advised.advice.push_back(remedy.Text());
}

} // namespace ravlo
