// SPDX-License-Identifier: MIT
#include "ui/library/DraggedCuts.h"

#include "scheduler/MassChange.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/NodeKey.h"

#include <algorithm>

namespace ravlo
{

DraggedCuts TakeDragged(const clsSchedLibGridPresenter& cGrid, const clsSchedMan& cSchedMan)
{
    DraggedCuts dragged;
    for (const std::size_t row : cGrid.SelectedRows())
        dragged.colKeys.push_back(cGrid.KeyAt(row));
    for (const std::shared_ptr<clsCat>& cFrom : cGrid.colSubCatsDraggedFrom(cSchedMan))
        if (cFrom->CatLevel() != 0)
            dragged.colFromKeys.push_back(CategoryKey(cFrom->CatName(), cFrom->CatLevel()));
    return dragged;
}

PresentCuts PresentOf(const clsSchedMan& cSchedMan, const DraggedCuts& dragged)
{
    PresentCuts present;
    KeySet colLeft; // not found in any level so far
    if (const std::shared_ptr<DataBase> cDataBase = cSchedMan.DataBase())
        for (const TextKey& cKey : dragged.colKeys)
            if (std::shared_ptr<Cut> cCut = cDataBase->CutByKey(cKey))
            {
                present.colCuts.push_back(std::move(cCut));
                colLeft.insert(cKey);
            }
    const KeySet colAll = colLeft;
    for (const std::wstring& sKey : dragged.colFromKeys)
        if (const std::shared_ptr<clsCat> cFrom = CatOf(cSchedMan, sKey))
        {
            bool bContainsAny = false;
            for (const TextKey& cKey : colAll)
                if (cFrom->SchedCuts()->Exists(cKey))
                {
                    bContainsAny = true;
                    colLeft.erase(cKey);
                }
            if (bContainsAny)
                present.colFrom.push_back(cFrom);
        }
    const KeySet colMoved = colLeft;
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    ForEachPlace(colMainCats.get(), colMoved,
                 [&](const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey) {
        if (!Contains(present.colFrom, cLevel))
            present.colFrom.push_back(cLevel);
        colLeft.erase(cKey);
    });
    if (!colLeft.empty())
        present.colFrom.push_back(std::make_shared<clsCat>(cSchedMan.Mod(), sNoCat, 0));
    return present;
}

bool MayCopyInto(std::int32_t lLevel, const PresentCuts& present)
{
    if (lLevel == 0)
        return true;
    return std::all_of(present.colCuts.begin(), present.colCuts.end(),
                       [&](const std::shared_ptr<Cut>& cCut) { return OwnLevelOf(*cCut) == lLevel; }) &&
           std::all_of(present.colFrom.begin(), present.colFrom.end(),
                       [&](const std::shared_ptr<clsCat>& cFrom) {
        return cFrom->CatLevel() == 0 || cFrom->CatLevel() == lLevel;
           });
}

} // namespace ravlo
