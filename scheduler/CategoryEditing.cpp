// SPDX-License-Identifier: MIT
#include "scheduler/CategoryEditing.h"

#include "collections/Text.h"
#include "scheduler/BatchedChanges.h"
#include "scheduler/RandomOrder.h"

#include <algorithm>
#include <unordered_set>

namespace ravlo
{

namespace
{

constexpr std::size_t lCutsPerReport = 50;

std::wstring NameOf(const clsCat& cCat)
{
    return cCat.CatLevel() == 0 ? cCat.CatName() : cCat.CatName() + L" " + DecimalText(cCat.CatLevel());
}

// A category's main category as the tree knows it: itself, or the one its level belongs to; null when the
// tree does not.
std::shared_ptr<clsCat> MainCatOf(const Station& cStation, const std::shared_ptr<clsCat>& cCat)
{
    const std::shared_ptr<clsCat> cMainCat = cCat->CatLevel() == 0 ? cCat : cCat->MainCat();
    return cStation.Holds(cMainCat) ? cMainCat : nullptr;
}

// Whether a level is one of the tree's at present.
bool Stands(const Station& cStation, const std::shared_ptr<clsCat>& cSubCat)
{
    const std::shared_ptr<clsCat> cMainCat = MainCatOf(cStation, cSubCat);
    return cMainCat && cMainCat->SubCat(cSubCat->CatLevel()) == cSubCat;
}

// A level itself when it is one of the tree's, else the tree's of the same name and number, or null.
std::shared_ptr<clsCat> PresentLevel(const Station& cStation, const std::shared_ptr<clsCat>& cSubCat)
{
    if (Stands(cStation, cSubCat))
        return cSubCat;
    const std::shared_ptr<clsCat> cMainCat = cStation.MainCat(cSubCat->CatName());
    const std::shared_ptr<clsCat> cFound = cMainCat ? cMainCat->SubCat(cSubCat->CatLevel()) : nullptr;
    return cFound && Stands(cStation, cFound) ? cFound : nullptr;
}

// Moves what stands under the keys, in their order, in front of what stands at PosInto (from 1). False when
// there is nothing of them.
bool MoveInFrontOf(CutCollection& colCuts, const std::vector<TextKey>& colKeys, std::int32_t PosInto)
{
    const std::size_t lCount = colCuts.Count();
    std::vector<std::size_t> colMoved; // positions, in the order given
    std::vector<bool> bMoves(lCount);
    for (const TextKey& cKey : colKeys)
    {
        const std::optional<std::size_t> lPosition = colCuts.PositionOf(cKey);
        if (!lPosition || bMoves[*lPosition])
            continue;
        bMoves[*lPosition] = true;
        colMoved.push_back(*lPosition);
    }
    if (colMoved.empty())
        return false;
    const std::size_t lBefore = std::min(lCount, static_cast<std::size_t>(std::max(PosInto, 1) - 1));
    std::vector<std::size_t> colOrder;
    colOrder.reserve(lCount);
    for (std::size_t lPosition = 0; lPosition <= lCount; ++lPosition)
    {
        if (lPosition == lBefore)
            colOrder.insert(colOrder.end(), colMoved.begin(), colMoved.end());
        if (lPosition < lCount && !bMoves[lPosition])
            colOrder.push_back(lPosition);
    }
    colCuts.Reorder(colOrder);
    return true;
}

// What was asked for, main category by main category: the levels meant, and whether the main category was
// listed with or without levels of its own.
struct Chosen
{
    std::shared_ptr<clsCat> cMainCat;
    Cats colLevels;
    bool bMainListed = false;
};

std::vector<Chosen> ChosenOf(const Station& cStation, const Cats& colCats)
{
    std::vector<Chosen> colChosen;
    for (const std::shared_ptr<clsCat>& cCat : colCats)
    {
        const std::shared_ptr<clsCat> cMainCat = cCat ? MainCatOf(cStation, cCat) : nullptr;
        if (!cMainCat)
            continue;
        auto found = std::find_if(colChosen.begin(), colChosen.end(),
                                  [&](const Chosen& chosen) { return chosen.cMainCat == cMainCat; });
        if (found == colChosen.end())
            found = colChosen.insert(colChosen.end(), {cMainCat, {}, false});
        if (cCat == cMainCat)
            found->bMainListed = true;
        else if (!Lists(found->colLevels, cCat) && Stands(cStation, cCat))
            found->colLevels.push_back(cCat);
    }
    return colChosen;
}

Cats LevelsOf(const clsCat& cMainCat) { return {cMainCat.SubCats()->begin(), cMainCat.SubCats()->end()}; }

} // namespace

std::wstring ListCats(const Cats& colCats, std::size_t lMost)
{
    const std::size_t lListed = lMost == 0 ? colCats.size() : std::min(lMost, colCats.size());
    std::wstring sList;
    for (std::size_t lCat = 0; lCat < lListed; ++lCat)
        sList += (lCat == 0 ? L"" : L", ") + NameOf(*colCats[lCat]);
    if (lListed < colCats.size())
        sList += L"... (+" + CountText(colCats.size() - lListed) + L")";
    return sList;
}

// ---- shuffling ----

void CategoryEditing::ShuffleCategories(const Cats& colCats, bool bConfirmFirst)
{
    ModScheduler& cMod = m_cStation.cMod;
    if (bConfirmFirst &&
        cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Confirm Shuffle.",
                 L"Really shuffle these categories: " + ListCats(colCats, lMostListed)) != BoxAnswer::Yes)
        return;
    AffectedCats cAffected;
    cMod.Outside().cRandom.Randomize();
    for (const Chosen& chosen : ChosenOf(m_cStation, colCats))
    {
        // A level whose main category is listed too is shuffled once, with it.
        for (const std::shared_ptr<clsCat>& cSubCat :
             chosen.bMainListed ? LevelsOf(*chosen.cMainCat) : chosen.colLevels)
        {
            const std::shared_ptr<CutCollection> colCuts = cSubCat->SchedCuts();
            colCuts->Reorder(RandomOrder(cMod.Outside().cRandom, colCuts->Count()));
        }
        cAffected.Touch(chosen.cMainCat->CatName());
    }
    SaveShuffled(cAffected);
}

void CategoryEditing::SaveShuffled(const AffectedCats& cAffected)
{
    for (const std::wstring& sName : cAffected)
    {
        const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sName);
        if (cMainCat && m_cStation.cHistoryFiles.Save(cMainCat, HistoryFiles::Manner::WithoutBox) ==
                            HistoryFiles::Saved::Failed)
            m_cStation.cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, sProgramTitle,
                                L"Failed to save cat history and ordering for: " + sName);
    }
    m_cStation.SaveOwed();
}

// ---- deleting ----

bool CategoryEditing::DeleteCats(const Cats& colCats)
{
    const Synchronisation::Hold cHold(m_cSync);
    Deletion deletion(m_cStation.cMod);
    bool bAll = true;
    for (const Chosen& chosen : ChosenOf(m_cStation, colCats))
        bAll = DeleteChosen(chosen.cMainCat, chosen.colLevels, chosen.bMainListed, deletion) && bAll;
    m_cSync.SaveAffected(deletion.cOthers);
    m_cStation.cEvents.ProgressDone(L"Categories Deleted.");
    deletion.cFiling.Report(
        [&](const RuntimeError& cError)
        {
            bAll = false;
            m_cStation.cMod.ShowCriticalError(L"Error in DeleteCats [cSchedMan]", cError);
        });
    return bAll;
}

bool CategoryEditing::DeleteChosen(const std::shared_ptr<clsCat>& cMainCat, const Cats& colListed,
                                   bool bMainListed, Deletion& deletion)
{
    const bool bWhole = bMainListed && colListed.empty();
    bool bGone = true;
    for (const std::shared_ptr<clsCat>& cSubCat : bWhole ? LevelsOf(*cMainCat) : colListed)
        bGone = DeleteLevel(cMainCat, cSubCat, deletion) && bGone;
    if (!m_cStation.Holds(cMainCat))
        return !m_cStation.MainCat(cMainCat->CatName()); // the host has deleted or reloaded it meanwhile
    if (!cMainCat->SubCats()->Empty())
        return m_cStation.cHistoryFiles.Save(cMainCat) == HistoryFiles::Saved::Yes && bGone && !bWhole;
    // Saving writes nothing when there is no record, and the old file would bring the levels back.
    return bMainListed ? DeleteMainCat(cMainCat) : DeleteFile(cMainCat->CatName());
}

bool CategoryEditing::DeleteLevel(const std::shared_ptr<clsCat>& cMainCat,
                                  const std::shared_ptr<clsCat>& cSubCat, Deletion& deletion)
{
    const std::wstring sName = NameOf(*cSubCat);
    m_cStation.cEvents.ProgressStart(L"Deleting Category: " + sName, cSubCat->TotalCuts());
    EmptyLevel({cMainCat, cSubCat}, deletion);
    deletion.cFiling.RecalcTouched();
    if (!Stands(m_cStation, cSubCat))
        return true; // the host has deleted or reloaded it meanwhile
    if (cSubCat->TotalCuts() != 0)
        return false;
    try
    {
        cMainCat->RemoveSubCat(cSubCat);
    }
    catch (const RuntimeError& cError)
    {
        // The level is gone; a main category's run-time total is told only through its average, which is
        // taken anew.
        m_cStation.cMod.LogError(L"RemoveSubCat", cError);
    }
    m_cStation.cEvents.ProgressDone(L"Deleted " + sName);
    return true;
}

// Takes the cuts that stand in a level out of it, as long as the level is one of the tree's.
void CategoryEditing::EmptyLevel(const Station::Place& place, Deletion& deletion)
{
    const Cuts colCuts(place.cSubCat->SchedCuts()->begin(), place.cSubCat->SchedCuts()->end());
    const auto Refile = [&](const std::shared_ptr<Cut>& cCut)
    {
        AffectedCats cAffected;
        m_cSync.Refile(cCut, cAffected, deletion.cFiling);
        for (const std::wstring& sName : cAffected)
            if (!EqualIgnoringCase(sName, place.cMainCat->CatName())) // which is saved in any case
                deletion.cOthers.Touch(sName);
    };
    BatchedChanges cBatch(m_cStation, deletion.cFiling, Refile);
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (!Stands(m_cStation, place.cSubCat))
            return;
        try
        {
            const FiledCuts::OwnChange cOwnChange(m_cStation.cFiledCuts, *cCut);
            cBatch.Changing(cCut);
            Synchronisation::TakeOut(cCut, place, deletion.cFiling);
        }
        catch (...)
        {
            deletion.cFiling.Failed(*cCut);
        }
        if (++lCount % lCutsPerReport != 0)
            continue;
        cBatch.Commit();
        m_cStation.cEvents.Progress(L"Removed " + CountText(lCount) + L" from: " + NameOf(*place.cSubCat),
                                    static_cast<std::int64_t>(lCount), std::ssize(colCuts));
        m_cStation.cMod.Pump();
        cBatch.Begin();
    }
}

bool CategoryEditing::DeleteMainCat(const std::shared_ptr<clsCat>& cMainCat)
{
    m_cStation.colMainCats->Remove(CategoryKey(cMainCat->CatName(), 0));
    const bool bFileGone = DeleteFile(cMainCat->CatName());
    return m_cStation.cCategoryList.SaveCatNames(m_cStation.colMainCats.get(), m_cStation.sAppPath) &&
           bFileGone;
}

bool CategoryEditing::DeleteFile(const std::wstring& sCatName)
{
    return TrapCritical(m_cStation.cMod, L"Error in DeleteCats [cSchedMan]", false,
                        [&]
                        {
                            m_cStation.cHistoryFiles.DeleteFile(sCatName);
                            return true;
                        });
}

// ---- re-ordering ----

void CategoryEditing::MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                                         std::int32_t PosInto)
{
    if (!cCat || cCat->CatLevel() == 0)
        throw RuntimeError(error::InvalidProcedureCall);
    std::vector<TextKey> colKeys; // taken first: a host's cut may do anything when it is asked
    for (const std::shared_ptr<Cut>& cCut : colCutsInsert)
        if (cCut)
            colKeys.push_back(cCut->Key());
    const std::shared_ptr<clsCat> cSubCat = PresentLevel(m_cStation, cCat);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall,
                           L"The category to move cuts in does not exist any more");
    if (!MoveInFrontOf(*cSubCat->SchedCuts(), colKeys, PosInto))
        return;
    m_cStation.cHistoryFiles.Save(MainCatOf(m_cStation, cSubCat));
    m_cStation.SaveOwed();
}

} // namespace ravlo
