// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Simulation.h"
#include "plan/DayMaker.h"
#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ravlo::test
{

struct AiringCut
{
    std::int32_t lDurationmS = 200'000;
    bool bOpener = false;
    DateTime dtLastPlayed = 0;
    std::wstring sAlbum = {};
};

// A station that airs its days as RavloHost does: told of every recorded play in the order of their times,
// then asked slot by slot.
class AiringStation : public testing::Test, public Playout
{
public:
    std::shared_ptr<FakeCut> AddCut(const std::wstring& sKey, const std::wstring& sCategories,
                                    std::int32_t lLevel, const std::wstring& sArtist,
                                    const std::wstring& sTitle, const AiringCut& options = {})
    {
        std::shared_ptr<FakeCut> cCut = cLib.cDataBase->Add(sKey, sCategories, lLevel);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        cCut->SetAlbum(options.sAlbum);
        cCut->SetOpener(options.bOpener);
        cCut->SetDurationmS(options.lDurationmS);
        cCut->SetLastPlayed(options.dtLastPlayed);
        return cCut;
    }
    // As many cuts of so many artists and titles, every fourth an opener, every third played in the days
    // before, every fifth with a guest; durations, albums and plays scattered by the seed.
    void AddCuts(const std::wstring& sPrefix, const std::wstring& sCategories, std::int32_t lLevel,
                 std::uint32_t cuts, std::uint32_t artists, std::uint32_t titles)
    {
        for (std::uint32_t cut = 0; cut < cuts; ++cut)
        {
            // One statement for each draw: compilers evaluate arguments in different orders.
            const std::int32_t lDuration = Below(5) == 0 ? 0 : 180'000;
            const std::uint32_t longer = Below(100'000);
            const DateTime dtPlayed = cut % 3 == 0 ? dtStart - Below(5'000'000) / 1'000'000.0 : 0;
            const std::wstring sAlbum = L"Album " + std::to_wstring(Below(9));
            const std::wstring sTitle = L"Title " + std::to_wstring(Below(titles));
            std::wstring sArtist = (cut % 2 ? L"artist " : L"Artist ") + std::to_wstring(Below(artists));
            if (cut % 5 == 0)
                sArtist += L" feat. Artist " + std::to_wstring(Below(artists));
            AddCut(sPrefix + std::to_wstring(cut), sCategories, lLevel, sArtist, sTitle,
                   {lDuration + (lDuration ? static_cast<std::int32_t>(longer) : 0), cut % 4 == 0, dtPlayed,
                    sAlbum});
        }
    }
    std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(cEngine() % bound); }

    // Rules in minutes: artist, title, album.
    void SetRules(const std::wstring& sName, std::int32_t lLevel, std::int32_t lArtist, std::int32_t lTitle,
                  std::int32_t lAlbum, bool bIgnore = false) const
    {
        cLib.Level(sName, lLevel)->Rules()->Apply({lArtist, lTitle, lAlbum, bIgnore});
    }
    void AddEmptyLevel(const std::wstring& sName, std::int32_t lLevel)
    {
        cLib.MainCat(sName)->AddSubCat(std::make_shared<clsCat>(cLib.cMod, sName, lLevel));
    }

    // Populates, and tells the scheduler and the gaps of every recorded play.
    void Start()
    {
        cLib.Populate();
        cLib.cSchedMan->SetRotatesAllowed(true);
        Cuts colPlayed = cLib.cDataBase->colCuts;
        std::erase_if(colPlayed, [](const auto& cCut) { return !(cCut->LastPlayed() > 0); });
        std::stable_sort(colPlayed.begin(), colPlayed.end(),
                         [](const auto& a, const auto& b) { return a->LastPlayed() < b->LastPlayed(); });
        for (const std::shared_ptr<Cut>& cCut : colPlayed)
        {
            cLib.cSchedMan->UpdateArtistTitleHistory(cCut);
            cGaps.Record(cCut->ArtistKey(), cCut->TitleKey(), cCut->LastPlayed());
        }
    }

    std::shared_ptr<StationSnapshot> Snapshot()
    {
        return TakeSnapshot(cLib.cMod, *cLib.cSchedMan->colMainCats(), cLib.cSchedMan->History(),
                            cLib.cSchedMan->Options(), cLib.cSchedMan->Names());
    }

    template <class... More>
    SimulationResult Simulate(const std::shared_ptr<const StationSnapshot>& cSnapshot, const Plan& plan,
                              DateTime dtFrom, double dDays, const More&... more)
    {
        return ravlo::Simulate(cLib.cMod, cSnapshot, plan, dtFrom, dDays, more...);
    }

    Answer Play(const Slot& slot, DateTime dtAt) override
    {
        const std::shared_ptr<Cut> cPrevious = cLib.cDataBase->NewCut();
        cPrevious->SetLastPlayed(dtAt);
        const std::shared_ptr<Cut> cCut =
            cLib.cSchedMan
                ->NextCutFromRotation({CategoryKey(slot.sCategory, slot.lLevel), slot.bOpener, cPrevious},
                                      false)
                .cCut;
        if (!IsRealCut(cCut->KindCode()))
            return {cCut->KindCode(), std::nullopt};
        cCut->SetLastPlayed(dtAt);
        cLib.cSchedMan->UpdateArtistTitleHistory(cCut);
        return {cCut->KindCode(),
                PlayedCut{cCut->Artist(), cCut->Title(), cCut->Album(), cCut->Path(), cCut->DurationmS()}};
    }
    // The day that RavloHost would air.
    Day Air(const Plan& plan, int lDays)
    {
        Day day;
        DayMaker maker(*this, cGaps, [](double) {});
        std::vector<TimedSlot> timed;
        for (std::size_t slot = 0; slot < plan.Times().size(); ++slot)
            timed.push_back({plan.Times()[slot], plan.Slots()[slot]});
        if (plan.IsTimed())
            maker.FromSlots(day, SlotsWithin(timed, dtStart, lDays * 24));
        else
            maker.FromClock(day, plan.Slots(), dtStart, LaterByHours(dtStart, lDays * 24));
        return day;
    }

    const DateTime dtStart = DateTimeOf({2024, 3, 1, 6, 10, 0});
    std::mt19937_64 cEngine{20240301};
    RadioPorts cPorts;
    Library cLib{cPorts};
    Gaps cGaps;
};

inline Plan ClockPlan(std::string_view bytes)
{
    Plan plan;
    plan.LoadClock(bytes, L"clock");
    return plan;
}

} // namespace ravlo::test
