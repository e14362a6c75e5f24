// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"
#include "forecast/Simulation.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo::test
{

struct CaseCut
{
    std::wstring sArtist;
    std::wstring sTitle = {};
    bool bOpener = false;
    CutOutcome outcome = {};
};

// A simulation's result with figures put together by hand.
struct HealthCase
{
    explicit HealthCase(double dDays = 1)
    {
        result.cStation = cStation;
        result.dDays = dDays;
        result.dtStart = dtStart;
    }

    // Adds a level with its first slot; returns its position.
    std::size_t AddLevel(const std::wstring& sName, const SeparationRules& rules, std::uint32_t asked,
                         const std::vector<CaseCut>& cuts, std::uint32_t askedOpener = 0)
    {
        SnapshotLevel level{sName, 1, rules, {}};
        LevelOutcome outcome{asked, askedOpener, 0, 0, {}};
        for (const CaseCut& cut : cuts)
        {
            SnapshotCut added;
            added.values.cKey = TextKey(sName + std::to_wstring(level.order.size()));
            added.values.cArtist = TextKey(cut.sArtist);
            added.values.cTitle = TextKey(cut.sTitle);
            added.values.bOpener = cut.bOpener;
            level.order.push_back(cStation->Add(added));
            outcome.cuts.push_back(cut.outcome);
        }
        cStation->levels.push_back(level);
        result.levels.push_back(outcome);
        result.plan.AddSlot({sName, 1});
        result.levelOfSlot.emplace_back(result.levels.size() - 1);
        return result.levels.size() - 1;
    }
    // Adds a play of a cut of a level, so many minutes after the start.
    void AddPlay(std::size_t level, std::size_t position, double dMins)
    {
        SimulatedRow row;
        row.dtStart = dtStart + dMins / 1440;
        row.slot = static_cast<std::uint32_t>(level);
        row.cut = cStation->levels[level].order[position];
        result.rows.push_back(row);
        ++result.levels[level].cuts[position].plays;
    }

    const DateTime dtStart = DateTimeOf({2024, 3, 1, 6, 0, 0});
    std::shared_ptr<StationSnapshot> cStation = std::make_shared<StationSnapshot>();
    SimulationResult result;
};

} // namespace ravlo::test
