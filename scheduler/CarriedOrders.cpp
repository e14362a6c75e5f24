// SPDX-License-Identifier: MIT
#include "scheduler/CarriedOrders.h"

#include <cstddef>
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
    for (std::size_t lAt = 0; lAt < colTo.Count(); ++lAt)
        if (const TextKey* cKey = colTo.KeyAt(lAt); !cKey || !colFrom.Exists(*cKey))
            colOrder.push_back(lAt);
    for (std::size_t lAt = 0; lAt < colFrom.Count(); ++lAt)
        if (const TextKey* cKey = colFrom.KeyAt(lAt))
            if (const std::optional<std::size_t> lPosition = colTo.PositionOf(*cKey))
                colOrder.push_back(*lPosition);
    colTo.Reorder(colOrder);
}

void CarryOrder(const clsCat& cFrom, const clsCat& cTo)
{
    for (const std::shared_ptr<clsCat>& cLevel : *cTo.SubCats())
        if (const std::shared_ptr<clsCat> cSame = cFrom.SubCat(cLevel->CatLevel()))
            CarryLevelOrder(*cSame->SchedCuts(), *cLevel->SchedCuts());
}

} // namespace

void CarryNewerOrders(const Station& cStation, const CatCollection& colNew)
{
    for (const std::shared_ptr<clsCat>& cNew : colNew)
        if (cStation.cHistoryFiles.IsNewerThanItsReading(*cNew))
            if (const std::shared_ptr<clsCat> cOld = cStation.MainCat(cNew->CatName()))
                CarryOrder(*cOld, *cNew);
}

} // namespace ravlo
