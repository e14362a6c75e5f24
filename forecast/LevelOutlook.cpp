// SPDX-License-Identifier: MIT
#include "forecast/LevelOutlook.h"

#include "forecast/ReportText.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace ravlo
{

namespace
{

constexpr std::size_t fewestPlays = 4;
constexpr double dOldestDays = 7;

// A look at a cut may let the host run, which may change the level.
Cuts CutsOf(const clsCat& cSubCat)
{
    const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
    Cuts colOut;
    colOut.reserve(colCuts->Count());
    for (const std::shared_ptr<Cut>& cCut : *colCuts)
        if (cCut)
            colOut.push_back(cCut);
    return colOut;
}

PlainCutValues ValuesOf(const Cut& cCut, const PlayHistory& cHistory)
{
    PlainCutValues values;
    try
    {
        values.cArtist = cCut.ArtistKey();
        values.cTitle = cCut.TitleKey();
        values.dtLastPlayed = cHistory.TimeOf(cCut);
    }
    catch (const RuntimeError&)
    {
        values = {};
    }
    return values;
}

AskingRate RateOf(std::vector<DateTime> played, DateTime dtNow)
{
    const std::size_t recent = std::max(fewestPlays, played.size() / 4);
    if (played.size() < recent)
        return {};
    std::partial_sort(played.begin(), played.begin() + static_cast<std::ptrdiff_t>(recent), played.end(),
                      std::greater<>());
    const double dSpan = played.front() - played[recent - 1];
    if (!(dSpan > 0) || dtNow - played.front() > dOldestDays)
        return {};
    return {dSpan, static_cast<std::uint32_t>(recent - 1)};
}

} // namespace

LevelOutlook OutlookOf(const clsCat& cSubCat, const PlayHistory& cHistory, const ArtistNames& names,
                       DateTime dtNow)
{
    StationSnapshot level;
    std::vector<CutNumber> order;
    std::vector<DateTime> played;
    for (const std::shared_ptr<Cut>& cCut : CutsOf(cSubCat))
    {
        PlainCutValues values = ValuesOf(*cCut, cHistory);
        if (values.dtLastPlayed > 0)
            played.push_back(values.dtLastPlayed);
        order.push_back(level.Add({std::move(values), {}}));
    }
    return {MakeUpOf(level, order, names), RateOf(std::move(played), dtNow)};
}

std::wstring SlotText(const AskingRate& rate)
{
    const double dMins = std::max(rate.SlotMins(), 0.1);
    const std::string sNumber = NumberText(dMins, dMins < 10 ? 1 : 0);
    return std::wstring(sNumber.begin(), sNumber.end()) + L" min";
}

} // namespace ravlo
