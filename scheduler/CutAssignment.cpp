// SPDX-License-Identifier: MIT
#include "scheduler/CutAssignment.h"

#include "base/CaseFolding.h"
#include "scheduler/CutChanges.h"

#include <algorithm>
#include <optional>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sTitle = L"Error in ShowCatUI [cSchedMan]";

std::wstring Joined(const std::vector<std::wstring>& colNames)
{
    std::wstring sText;
    for (const std::wstring& sName : colNames)
        sText += (sText.empty() ? L"" : L"/") + sName;
    return sText;
}

// What an undo calls the cut: its key when its texts cannot be read.
std::wstring NameInUndo(const Cut& cCut)
{
    try
    {
        return cCut.Artist() + L" - " + cCut.Title();
    }
    catch (...)
    {
        return cCut.Key().Text();
    }
}

void SetBoth(Cut& cCut, std::int32_t lCatLevel, const std::wstring& sCategoryText)
{
    const std::int32_t lBefore = cCut.CatLevel();
    if (lBefore != lCatLevel)
        cCut.SetCatLevel(lCatLevel);
    try
    {
        if (cCut.CategoryText() != sCategoryText)
            cCut.SetCategoryText(sCategoryText);
    }
    catch (...)
    {
        if (lBefore != lCatLevel)
            cCut.SetCatLevel(lBefore);
        throw;
    }
}

} // namespace

void AssignCut(SchedulerState& cState, Synchronisation& cSync, const std::shared_ptr<Cut>& cCut,
               std::int32_t lCatLevel, const std::vector<std::wstring>& colCatNames)
{
    const std::wstring sCategoryText = Joined(colCatNames);
    const std::shared_ptr<DataBase> cDataBase = cState.cDataBase;
    if (!cDataBase || !cDataBase->CutByKey(cCut->Key()))
        return SetBoth(*cCut, lCatLevel, sCategoryText);
    const std::wstring sWhat = L"assignment of " + NameInUndo(*cCut);
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own,
                        [&](const ChangeRecord& record, std::size_t) { cState.cUndo.Add(sWhat, record); });
    CutChanges::Rhythm rhythm;
    rhythm.mayLeave = [&](const SchedulerState::Place& place) {
        return place.cSubCat->CatLevel() != lCatLevel ||
               std::none_of(colCatNames.begin(), colCatNames.end(), [&](const std::wstring& sName) {
                   return EqualIgnoringCase(sName, place.cMainCat->CatName());
               });
    };
    cChanges.RunOne(
        cCut,
        [&](const std::shared_ptr<Cut>& cOwn, std::size_t) {
        SetBoth(*cOwn, lCatLevel, sCategoryText);
        cChanges.ModifyCut(cOwn);
        if (cOwn != cCut)
            SetBoth(*cCut, lCatLevel, sCategoryText);
        },
        rhythm);
    std::vector<RuntimeError> colErrors;
    CutChanges::Ending ending;
    ending.show = [&](const RuntimeError& cError) { colErrors.push_back(cError); };
    cChanges.Finish(ending);
    const bool bAssigned = cChanges.CutsDone() != 0;
    std::optional<RuntimeError> cFailure;
    if (!bAssigned && !colErrors.empty())
    {
        cFailure = colErrors.back(); // the cut's own error is reported last
        colErrors.pop_back();
    }
    for (const RuntimeError& cError : colErrors)
        if (bAssigned)
            cState.cMod.ShowCriticalError(sTitle, cError);
        else
            cState.cMod.LogError(sTitle, cError);
    if (cFailure)
        throw RuntimeError(*cFailure);
}

} // namespace ravlo
