// SPDX-License-Identifier: MIT
#include "ui/rotation/ListSources.h"

#include "forecast/ReportText.h"
#include "rotation/NextCut.h"
#include "ui/rotation/ExplanationPage.h"
#include "ui/rotation/NextCutsPage.h"

#include <optional>
#include <utility>

namespace ravlo
{

namespace
{

std::shared_ptr<clsCat> LevelOf(const clsSchedMan& cSchedMan, const std::wstring& sLevelKey)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats)
        throw RuntimeError(error::ObjectNotSet);
    std::shared_ptr<clsCat> cSubCat = LevelByKey(colMainCats.get(), sLevelKey);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall, LevelText(sLevelKey) + L" no longer exists.");
    return cSubCat;
}

DateTime NowOf(const clsSchedMan& cSchedMan) { return cSchedMan.Mod().Ports().cClock.Now(); }

std::optional<AskedCut> Asked(const clsSchedMan& cSchedMan, const clsCat& cSubCat, const TextKey& cKey)
{
    if (cKey.Empty())
        return std::nullopt;
    AskedCut asked{cKey, cKey.Text(), {}};
    const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
    if (const std::optional<std::size_t> position = colCuts->PositionOf(cKey))
        asked.place = *position + 1;
    if (const std::shared_ptr<Cut> cCut =
            cSchedMan.DataBase() ? cSchedMan.DataBase()->CutByKey(cKey) : nullptr)
        asked.sName = CutText(cCut->Artist(), cCut->Title());
    return asked;
}

} // namespace

ListSource ExplanationSource(std::shared_ptr<clsSchedMan> cSchedMan, const std::wstring& sLevelKey,
                             const TextKey& cKey)
{
    const auto read = [cSchedMan = std::move(cSchedMan), sLevelKey, cKey] {
        const std::shared_ptr<clsCat> cSubCat = LevelOf(*cSchedMan, sLevelKey);
        return ExplanationPage(cSchedMan->Explain(sLevelKey, false, nullptr), NowOf(*cSchedMan),
                               Asked(*cSchedMan, *cSubCat, cKey));
    };
    return {L"Explain Next Cut: " + LevelText(sLevelKey), read};
}

ListSource NextCutsSource(std::shared_ptr<clsSchedMan> cSchedMan, const std::wstring& sLevelKey)
{
    const auto read = [cSchedMan = std::move(cSchedMan), sLevelKey] {
        const std::shared_ptr<clsCat> cSubCat = LevelOf(*cSchedMan, sLevelKey);
        const DateTime dtNow = NowOf(*cSchedMan);
        const ArtistNames names = cSchedMan->Names();
        const AskingRate rate = OutlookOf(*cSubCat, cSchedMan->History(), names, dtNow).rate;
        const std::shared_ptr<StationSnapshot> cSnapshot =
            TakeSnapshotOfLevel(cSchedMan->Mod(), cSubCat, cSchedMan->History(), cSchedMan->Options(), names);
        return NextCutsPage(ForecastLevel(cSchedMan->Mod(), *cSnapshot, forecastCuts, dtNow, rate.SlotMins()),
                            LevelText(sLevelKey), dtNow, rate);
    };
    return {L"Next 20 Cuts: " + LevelText(sLevelKey), read};
}

} // namespace ravlo
