// SPDX-License-Identifier: MIT
#include "scheduler/MassChange.h"

#include "collections/Text.h"
#include "scheduler/CategoryEditing.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t lMovedPerReport = 50;
constexpr std::size_t lCopiedPerReport = 100;
constexpr std::uint32_t lCopyPauseMs = 50;
const wchar_t* const sTargetGone = L"The category to change into does not exist any more";

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
    Cuts colCuts;
    std::copy_if(colCutsToChange.begin(), colCutsToChange.end(), std::back_inserter(colCuts),
                 [](const std::shared_ptr<Cut>& cCut) { return cCut != nullptr; });
    if (colCuts.empty())
        return;
    if (!TargetStands())
        throw RuntimeError(error::InvalidProcedureCall, sTargetGone);
    const Synchronisation::Hold cHold(m_cSync);
    if (m_eOption == eCopyHere)
        Copy(colCuts, bCreatedNewSubCats);
    else
        Move(colCuts, bCreatedNewSubCats);
    m_cFiling.RecalcTouched();
    m_cSync.SaveAffected(m_cAffected);
    m_cFiling.Report([this](const RuntimeError& cError)
                     { m_cStation.cMod.ShowCriticalError(L"Error in DoMassCatChange [cSchedMan]", cError); });
    if (m_lDone < colCuts.size())
        throw RuntimeError(error::InvalidProcedureCall, std::wstring(sTargetGone) + L" (" +
                                                            CountText(colCuts.size() - m_lDone) +
                                                            L" cuts were left as they are)");
}

bool MassChange::TargetStands() const
{
    return m_cStation.Holds(m_cMainCatTo) &&
           (m_cTo == m_cMainCatTo || m_cMainCatTo->SubCat(m_cTo->CatLevel()) == m_cTo);
}

BatchedChanges MassChange::Batch()
{
    return {m_cStation, m_cFiling,
            [this](const std::shared_ptr<Cut>& cCut) { m_cSync.Refile(cCut, m_cAffected, m_cFiling); }};
}

// ---- copying ----

void MassChange::Copy(const Cuts& colCuts, bool& bCreatedNewSubCats)
{
    const std::wstring sInto = ListCats({m_cTo});
    const std::wstring sFrom = ListCats(m_colFrom, lMostListed);
    m_cStation.cEvents.ProgressStart(L"Copying into category...", std::ssize(colCuts));
    BatchedChanges cBatch = Batch();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (!TargetStands())
            break; // deleted or reloaded by whoever was called meanwhile
        cBatch.Changing(cCut);
        CopyCut(cCut, bCreatedNewSubCats);
        if (++m_lDone % lCopiedPerReport != 0)
            continue;
        cBatch.Commit();
        m_cStation.cMod.Sleep(lCopyPauseMs);
        m_cStation.cEvents.Progress(L"Copying into " + sInto + L" from " + sFrom,
                                    static_cast<std::int64_t>(m_lDone), std::ssize(colCuts));
        m_cStation.cMod.Pump();
        cBatch.Begin();
    }
    cBatch.Commit();
    m_cStation.cEvents.Progress(L"Copied into " + sInto, static_cast<std::int64_t>(m_lDone),
                                std::ssize(colCuts));
    m_cStation.cEvents.ProgressDone(L"Category copy complete.");
}

void MassChange::CopyCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats)
{
    try
    {
        const FiledCuts::OwnChange cOwnChange(m_cStation.cFiledCuts, *cCut);
        if (cCut->CatLevel() <= 0)
            cCut->SetCatLevel(1); // a cut that was in no category yet starts at the first level
        if (m_cFiling.File(cCut, *m_cTo, bCreatedNewSubCats))
            m_cAffected.Touch(m_cMainCatTo->CatName());
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
    BatchedChanges cBatch = Batch();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (!TargetStands())
            break;
        cBatch.Changing(cCut);
        MoveCut(cCut, bCreatedNewSubCats);
        if (++m_lDone % lMovedPerReport != 0)
            continue;
        cBatch.Commit();
        m_cStation.cEvents.Progress(L"Applying Mass Move Change " + CountText(m_lDone) + L" of " +
                                        CountText(colCuts.size()),
                                    static_cast<std::int64_t>(m_lDone), std::ssize(colCuts));
        m_cStation.cMod.Pump();
        cBatch.Begin();
    }
    cBatch.Commit();
    m_cStation.cEvents.ProgressDone(L"Applied Mass Move.");
}

void MassChange::MoveCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats)
{
    try
    {
        const FiledCuts::OwnChange cOwnChange(m_cStation.cFiledCuts, *cCut);
        MoveCut(cCut, PlanFor(*cCut), bCreatedNewSubCats);
    }
    catch (...)
    {
        m_cFiling.Failed(*cCut);
    }
}

MassChange::Plan MassChange::PlanFor(const Cut& cCut) const
{
    Plan plan{m_cTo->CatLevel() != 0 ? m_cTo->CatLevel() : std::max(cCut.CatLevel(), 1), {}, {}, {}};
    for (const Station::Place& place : m_cStation.PlacesOf(cCut.Key()))
    {
        const bool bAtLevel = place.cSubCat->CatLevel() == plan.lLevel;
        const bool bLeavesCategory = place.cMainCat != m_cMainCatTo &&
                                     (m_eOption == eMoveExclusiveHere || Lists(m_colFrom, place.cSubCat));
        if (bAtLevel && !bLeavesCategory)
            plan.colStays.push_back(place.cMainCat); // at its place already: it keeps its position
        else
            plan.colLeaves.push_back(place);
        if (!bAtLevel && !bLeavesCategory && !Lists(plan.colJoins, place.cMainCat))
            plan.colJoins.push_back(place.cMainCat); // it stays in this category, under the new number
    }
    if (!Lists(plan.colJoins, m_cMainCatTo))
        plan.colJoins.insert(plan.colJoins.begin(), m_cMainCatTo);
    std::erase_if(plan.colJoins,
                  [&](const std::shared_ptr<clsCat>& cMainCat) { return Lists(plan.colStays, cMainCat); });
    return plan;
}

// What can fail comes first; when it does, the cut is put back and stands where it stood.
void MassChange::MoveCut(const std::shared_ptr<Cut>& cCut, const Plan& plan, bool& bCreatedNewSubCats)
{
    const TextKey cKey = cCut->Key();
    const std::wstring sOldText = cCut->CategoryText();
    const std::int32_t lOldLevel = cCut->CatLevel();
    try
    {
        ChangeCut(*cCut, plan);
        for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
            m_cFiling.File(cCut, *cMainCat, bCreatedNewSubCats);
    }
    catch (...)
    {
        const std::exception_ptr cFailure = std::current_exception();
        PutBack(*cCut, plan, sOldText, lOldLevel);
        std::rethrow_exception(cFailure);
    }
    for (const Station::Place& place : plan.colLeaves)
        Synchronisation::Leave(place, cKey, m_cAffected, m_cFiling);
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        m_cAffected.Touch(cMainCat->CatName());
    // Where it keeps its position, its record holds its level number all the same.
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colStays)
        if (cMainCat == m_cMainCatTo || lOldLevel != plan.lLevel)
            m_cAffected.Touch(cMainCat->CatName());
}

// Gives the cut its new level and category names.
void MassChange::ChangeCut(Cut& cCut, const Plan& plan) const
{
    if (cCut.CatLevel() != plan.lLevel)
        cCut.SetCatLevel(plan.lLevel);
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        cCut.AddCategoryName(cMainCat->CatName());
    for (const Station::Place& place : plan.colLeaves)
        if (!Lists(plan.colJoins, place.cMainCat) && !Lists(plan.colStays, place.cMainCat))
            cCut.RemoveCategoryName(place.cMainCat->CatName());
}

void MassChange::PutBack(Cut& cCut, const Plan& plan, const std::wstring& sCategoryText,
                         std::int32_t lCatLevel)
{
    const TextKey cKey = cCut.Key();
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        if (const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(plan.lLevel))
            if (cSubCat->SchedCuts()->Remove(cKey))
                m_cFiling.Touch(cSubCat);
    cCut.SetCategoryText(sCategoryText);
    cCut.SetCatLevel(lCatLevel);
}

} // namespace ravlo
