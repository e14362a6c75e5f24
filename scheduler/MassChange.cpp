// SPDX-License-Identifier: MIT
#include "scheduler/MassChange.h"

#include "collections/Text.h"
#include "scheduler/BatchedChanges.h"
#include "scheduler/CategoryEditing.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t lMovedPerReport = 50;
constexpr std::size_t lCopiedPerReport = 100;
constexpr std::uint32_t lCopyPauseMs = 50;

std::wstring CountText(std::size_t lCount) { return DecimalText(static_cast<std::int64_t>(lCount)); }

bool Lists(const Cats& colCats, const std::shared_ptr<clsCat>& cCat)
{
    return std::find(colCats.begin(), colCats.end(), cCat) != colCats.end();
}

} // namespace

MassChange::MassChange(Station& cStation, Synchronisation& cSync, eCatDragOptions eCatDragOption,
                       Cats colSubCatsFrom, std::shared_ptr<clsCat> cSubCatTo)
    : m_cStation(cStation), m_cSync(cSync), m_eOption(eCatDragOption), m_colFrom(std::move(colSubCatsFrom)),
      m_cTo(std::move(cSubCatTo)), m_cMainCatTo(m_cTo->CatLevel() == 0 ? m_cTo : m_cTo->MainCat()),
      m_cFiling(cStation.cMod)
{
}

void MassChange::Run(const Cuts& colCutsToChange, bool& bCreatedNewSubCats)
{
    if (!TargetStands())
        throw RuntimeError(error::InvalidProcedureCall,
                           L"The category to change into does not exist any more");
    const Synchronisation::Hold cHold(m_cSync);
    Cuts colCuts;
    std::copy_if(colCutsToChange.begin(), colCutsToChange.end(), std::back_inserter(colCuts),
                 [](const std::shared_ptr<Cut>& cCut) { return cCut != nullptr; });
    if (m_eOption == eCopyHere)
        Copy(colCuts, bCreatedNewSubCats);
    else
        Move(colCuts, bCreatedNewSubCats);
    m_cFiling.RecalcTouched();
    m_cSync.SaveAffected(m_cAffected);
    m_cFiling.Report([this](const RuntimeError& cError)
                     { m_cStation.cMod.ShowCriticalError(L"Error in DoMassCatChange [cSchedMan]", cError); });
}

bool MassChange::TargetStands() const
{
    return m_cStation.Holds(m_cMainCatTo) &&
           (m_cTo == m_cMainCatTo || m_cMainCatTo->SubCat(m_cTo->CatLevel()) == m_cTo);
}

// ---- copying ----

void MassChange::Copy(const Cuts& colCuts, bool& bCreatedNewSubCats)
{
    const std::wstring sInto = ListCats({m_cTo});
    const std::wstring sFrom = ListCats(m_colFrom, lMostListed);
    m_cStation.cEvents.ProgressStart(L"Copying into category...", std::ssize(colCuts));
    BatchedChanges cBatch(m_cStation.cDataBase, m_cFiling);
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        CopyCut(cCut, bCreatedNewSubCats);
        if (++lCount % lCopiedPerReport != 0)
            continue;
        cBatch.Commit();
        m_cStation.cMod.Sleep(lCopyPauseMs);
        m_cStation.cEvents.Progress(L"Copying into " + sInto + L" from " + sFrom,
                                    static_cast<std::int64_t>(lCount), std::ssize(colCuts));
        m_cStation.cMod.Pump();
        if (!TargetStands())
            break; // deleted or reloaded by whoever was called meanwhile
        cBatch.Begin();
    }
    cBatch.Commit();
    m_cStation.cEvents.Progress(L"Copied into " + sInto, static_cast<std::int64_t>(lCount),
                                std::ssize(colCuts));
    m_cStation.cEvents.ProgressDone(L"Category copy complete.");
}

void MassChange::CopyCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats)
{
    try
    {
        if (cCut->CatLevel() == 0)
            cCut->SetCatLevel(1); // a cut that was in no category yet starts at the first level
        if (m_cFiling.File(cCut, *m_cTo, bCreatedNewSubCats))
            m_cAffected.Touch(m_cMainCatTo->CatName());
        m_cStation.cFiledCuts.Remember(*cCut);
    }
    catch (...)
    {
        m_cFiling.Failed(*cCut);
    }
}

// ---- moving ----

void MassChange::Move(const Cuts& colCuts, bool& bCreatedNewSubCats)
{
    m_cStation.cEvents.ProgressStart(L"Applying Mass Move Change...", std::ssize(colCuts));
    BatchedChanges cBatch(m_cStation.cDataBase, m_cFiling);
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        MoveCut(cCut, bCreatedNewSubCats);
        if (++lCount % lMovedPerReport != 0)
            continue;
        cBatch.Commit();
        m_cStation.cEvents.Progress(L"Applying Mass Move Change " + CountText(lCount) + L" of " +
                                        CountText(colCuts.size()),
                                    static_cast<std::int64_t>(lCount), std::ssize(colCuts));
        m_cStation.cMod.Pump();
        if (!TargetStands())
            break;
        cBatch.Begin();
    }
    cBatch.Commit();
    m_cStation.cEvents.ProgressDone(L"Applied Mass Move.");
}

void MassChange::MoveCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats)
{
    try
    {
        const Plan plan = PlanFor(*cCut);
        ChangeCut(*cCut, plan); // the part that can fail comes first: the tree is changed when the cut is
        const TextKey cKey = cCut->Key();
        for (const Place& place : plan.colLeaves)
        {
            place.cSubCat->SchedCuts()->Remove(cKey);
            m_cFiling.Touch(place.cSubCat);
            m_cAffected.Touch(place.cMainCat->CatName());
        }
        for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
            if (m_cFiling.File(cCut, *cMainCat, bCreatedNewSubCats))
                m_cAffected.Touch(cMainCat->CatName());
        m_cStation.cFiledCuts.Remember(*cCut);
    }
    catch (...)
    {
        m_cFiling.Failed(*cCut);
    }
}

MassChange::Plan MassChange::PlanFor(const Cut& cCut) const
{
    const std::int32_t lOldLevel = cCut.CatLevel();
    Plan plan{m_cTo->CatLevel() != 0 ? m_cTo->CatLevel() : std::max(lOldLevel, 1), {}, {m_cMainCatTo}};
    const TextKey cKey = cCut.Key();
    for (const std::shared_ptr<clsCat>& cMainCat : *m_cStation.colMainCats)
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
        {
            if (!cSubCat->SchedCuts()->Exists(cKey))
                continue;
            if (cMainCat == m_cMainCatTo && cSubCat->CatLevel() == plan.lLevel)
                continue; // at its target already: it keeps its position
            const bool bLeavesCategory = m_eOption == eMoveExclusiveHere || Lists(m_colFrom, cSubCat);
            if (!bLeavesCategory && cSubCat->CatLevel() == plan.lLevel)
                continue;
            plan.colLeaves.push_back({cMainCat, cSubCat});
            if (!bLeavesCategory && !Lists(plan.colJoins, cMainCat))
                plan.colJoins.push_back(cMainCat); // it stays in this category, under the new number
        }
    return plan;
}

// Gives the cut its new level and category names. When that fails the cut is put back as it was.
void MassChange::ChangeCut(Cut& cCut, const Plan& plan) const
{
    const std::int32_t lOldLevel = cCut.CatLevel();
    std::vector<std::wstring> colAdded;
    std::vector<std::wstring> colRemoved;
    try
    {
        if (lOldLevel != plan.lLevel)
            cCut.SetCatLevel(plan.lLevel);
        for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
            if (!cCut.HasCategoryName(cMainCat->CatName()))
            {
                cCut.AddCategoryName(cMainCat->CatName());
                colAdded.push_back(cMainCat->CatName());
            }
        for (const Place& place : plan.colLeaves)
            if (!StaysIn(*place.cMainCat, cCut, plan) && cCut.HasCategoryName(place.cMainCat->CatName()))
            {
                cCut.RemoveCategoryName(place.cMainCat->CatName());
                colRemoved.push_back(place.cMainCat->CatName());
            }
    }
    catch (...)
    {
        const std::exception_ptr cFailure = std::current_exception();
        for (const std::wstring& sName : colAdded)
            cCut.RemoveCategoryName(sName);
        for (const std::wstring& sName : colRemoved)
            cCut.AddCategoryName(sName);
        if (cCut.CatLevel() != lOldLevel)
            cCut.SetCatLevel(lOldLevel);
        std::rethrow_exception(cFailure);
    }
}

// Whether a cut is in a main category after the move: it joins it, or stands in a level it does not leave.
bool MassChange::StaysIn(const clsCat& cMainCat, const Cut& cCut, const Plan& plan) const
{
    if (std::any_of(plan.colJoins.begin(), plan.colJoins.end(),
                    [&](const std::shared_ptr<clsCat>& cJoined) { return cJoined.get() == &cMainCat; }))
        return true;
    const TextKey cKey = cCut.Key();
    return std::any_of(cMainCat.SubCats()->begin(), cMainCat.SubCats()->end(),
                       [&](const std::shared_ptr<clsCat>& cSubCat)
                       {
                           return cSubCat->SchedCuts()->Exists(cKey) &&
                                  std::none_of(plan.colLeaves.begin(), plan.colLeaves.end(),
                                               [&](const Place& place) { return place.cSubCat == cSubCat; });
                       });
}

} // namespace ravlo
