// SPDX-License-Identifier: MIT
#include "forecast/LevelForecast.h"

#include "forecast/StationCopy.h"
#include "plan/SlotTimes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ravlo
{

namespace
{

ForecastCut ForecastOf(const Explanation& explanation, DateTime dtStart)
{
    ForecastCut forecast;
    forecast.dtStart = dtStart;
    for (const Explanation::Step& step : explanation.steps)
    {
        if (!step.bChosen)
        {
            ++forecast.passedOver;
            continue;
        }
        forecast.bChosen = true;
        forecast.sArtist = step.candidate.cArtist.Text();
        forecast.sTitle = step.candidate.cTitle.Text();
        forecast.sReason = step.Reason();
    }
    if (!forecast.bChosen)
        forecast.sReason = explanation.NothingText();
    return forecast;
}

} // namespace

std::shared_ptr<StationSnapshot> TakeSnapshotOfLevel(ModScheduler& cMod,
                                                     const std::shared_ptr<clsCat>& cSubCat,
                                                     const PlayHistory& cHistory,
                                                     const RotationOptions& options, const ArtistNames& names)
{
    const auto cMainCat = std::make_shared<clsCat>(cMod, cSubCat->CatName(), 0);
    cMainCat->SubCats()->Add(TextKey(DecimalText(cSubCat->CatLevel())), cSubCat);
    CatCollection colMainCats;
    colMainCats.Add(TextKey(CategoryKey(cSubCat->CatName(), 0)), cMainCat);
    return TakeSnapshot(cMod, colMainCats, cHistory, options, names);
}

std::vector<ForecastCut> ForecastLevel(ModScheduler& cMod, const StationSnapshot& snapshot, std::size_t slots,
                                       DateTime dtStart, double dSlotMins)
{
    std::vector<ForecastCut> forecasts;
    const SnapshotLevel& level = snapshot.levels.at(0);
    if (level.order.empty())
        return forecasts;
    const clsCat cSubCat(cMod, level.sCategory, level.lLevel);
    ExplanationSink sink;
    StationCopy copy(cMod, snapshot, snapshot.options, [&sink](const TraceStep& step) { sink.Note(step); },
                     {});
    const Slot slot{level.sCategory, level.lLevel};
    for (DateTime dtNext = dtStart; forecasts.size() < slots;)
    {
        const std::shared_ptr<Cut> cCut = copy.Play(slot, dtNext);
        const auto eKind = static_cast<CutKind>(cCut->KindCode());
        forecasts.push_back(ForecastOf(std::exchange(sink, {}).Take(eKind, cSubCat), dtNext));
        const std::int32_t lDurationmS =
            IsRealCut(eKind) ? snapshot.cuts[NumberOf(*cCut)].values.lDurationmS : 0;
        dtNext = dSlotMins > 0 ? Later(dtNext, std::llround(dSlotMins * dMinutemS))
                               : EndOfSlot(dtNext, lDurationmS);
    }
    return forecasts;
}

} // namespace ravlo
