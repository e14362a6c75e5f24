// SPDX-License-Identifier: MIT
#include "scheduler/CarriedOrders.h"

#include "base/Text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ravlo
{

namespace
{

void CarryLevelOrder(const CutCollection& colFrom, CutCollection& colTo)
{
    std::vector<std::size_t> colOrder;
    colOrder.reserve(colTo.Count());
    for (std::size_t at = 0; at < colTo.Count(); ++at)
        if (const TextKey* cKey = colTo.KeyAt(at); !cKey || !colFrom.Exists(*cKey))
            colOrder.push_back(at);
    for (std::size_t at = 0; at < colFrom.Count(); ++at)
        if (const TextKey* cKey = colFrom.KeyAt(at))
            if (const std::optional<std::size_t> position = colTo.PositionOf(*cKey))
                colOrder.push_back(*position);
    colTo.Reorder(colOrder);
}

void CarryLevels(const clsCat& cFrom, clsCat& cTo)
{
    for (const std::shared_ptr<clsCat>& cLevel : *cFrom.SubCats())
        if (const std::int32_t lLevel = cLevel->CatLevel(); lLevel > 0 && !cTo.SubCat(lLevel))
            cTo.AddSubCat(std::make_shared<clsCat>(cTo.Mod(), cTo.CatName(), lLevel));
    for (const std::shared_ptr<clsCat>& cLevel : Cats(cTo.SubCats()->begin(), cTo.SubCats()->end()))
        if (cLevel->SchedCuts()->Empty() && !cFrom.SubCat(cLevel->CatLevel()))
            cTo.SubCats()->Remove(DecimalText(cLevel->CatLevel()));
}

void CarryOrder(const clsCat& cFrom, clsCat& cTo)
{
    CarryLevels(cFrom, cTo);
    for (const std::shared_ptr<clsCat>& cLevel : *cTo.SubCats())
        if (const std::shared_ptr<clsCat> cSame = cFrom.SubCat(cLevel->CatLevel()))
            CarryLevelOrder(*cSame->SchedCuts(), *cLevel->SchedCuts());
}

TextKey KeyOf(const clsCat& cMainCat) { return TextKey(CategoryKey(cMainCat.CatName(), 0)); }

void CarryCreated(const SchedulerState& cState, CatCollection& colNew)
{
    for (const std::shared_ptr<clsCat>& cOld : *cState.colMainCats)
    {
        const std::wstring& sName = cOld->CatName();
        if (cState.cCategoryList.IsInList(sName) || cState.cCategoryList.IsRemoved(sName) ||
            colNew.Exists(KeyOf(*cOld)))
            continue;
        const auto cNew = std::make_shared<clsCat>(cState.cMod, sName, 0);
        CarryOrder(*cOld, *cNew);
        colNew.Add(KeyOf(*cOld), cNew);
    }
}

void CarryDeleted(const SchedulerState& cState, CatCollection& colNew)
{
    for (const std::shared_ptr<clsCat>& cNew : Cats(colNew.begin(), colNew.end()))
        if (cNew->TotalCuts() == 0 && !cState.MainCat(cNew->CatName()) &&
            cState.cCategoryList.IsInList(cNew->CatName()))
            colNew.Remove(KeyOf(*cNew));
}

} // namespace

void CarryUnsavedCats(const SchedulerState& cState, CatCollection& colNew)
{
    if (!cState.cCategoryList.IsUnsaved(*cState.colMainCats))
        return;
    CarryCreated(cState, colNew);
    CarryDeleted(cState, colNew);
}

void CarryNewerOrders(const SchedulerState& cState, const CatCollection& colNew)
{
    for (const std::shared_ptr<clsCat>& cNew : colNew)
        if (cState.cHistoryFiles.IsNewerThanItsReading(*cNew))
            if (const std::shared_ptr<clsCat> cOld = cState.MainCat(cNew->CatName()))
                CarryOrder(*cOld, *cNew);
}

} // namespace ravlo
