// SPDX-License-Identifier: MIT
#include "scheduler/CategoryEditing.h"

#include "base/Text.h"
#include "rotation/RandomOrder.h"
#include "rotation/RotationOrder.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t cutsPerReport = 50;

std::wstring NameOf(const clsCat& cCat)
{
    return cCat.CatLevel() == 0 ? cCat.CatName() : cCat.CatName() + L" " + DecimalText(cCat.CatLevel());
}

// Whether the tree contains this level object.
bool Contains(const SchedulerState& cState, const std::shared_ptr<clsCat>& cSubCat)
{
    return cState.Present(cSubCat) == cSubCat;
}

// Returns the present positions of a level's cuts in the order in which the cuts with these keys, in this
// order, are in front of the cut at PosInto (from 1). Returns nothing when none of them is there.
std::vector<std::size_t> MovedInFrontOf(const CutCollection& colCuts, const std::vector<TextKey>& colKeys,
                                        std::int32_t PosInto)
{
    const std::size_t count = colCuts.Count();
    std::vector<std::size_t> colMoved; // positions, in the order given
    std::vector<bool> bMoves(count);
    for (const TextKey& cKey : colKeys)
    {
        const std::optional<std::size_t> position = colCuts.PositionOf(cKey);
        if (!position || bMoves[*position])
            continue;
        bMoves[*position] = true;
        colMoved.push_back(*position);
    }
    if (colMoved.empty())
        return {};
    const std::size_t before = std::min(count, static_cast<std::size_t>(std::max(PosInto, 1) - 1));
    std::vector<std::size_t> colOrder;
    colOrder.reserve(count);
    for (std::size_t position = 0; position <= count; ++position)
    {
        if (position == before)
            colOrder.insert(colOrder.end(), colMoved.begin(), colMoved.end());
        if (position < count && !bMoves[position])
            colOrder.push_back(position);
    }
    return colOrder;
}

// A main category of the request: its levels to work on, and whether it was listed itself.
struct Chosen
{
    std::shared_ptr<clsCat> cMainCat;
    Cats colLevels;
    bool bMainListed = false;
};

// The tree's own categories for the given ones, in the same order.
Cats PresentOf(const SchedulerState& cState, const Cats& colCats)
{
    Cats colPresent;
    for (const std::shared_ptr<clsCat>& cCat : colCats)
        if (std::shared_ptr<clsCat> cPresent = cCat ? cState.Present(cCat) : nullptr)
            colPresent.push_back(std::move(cPresent));
    return colPresent;
}

std::vector<Chosen> ChosenOf(const Cats& colPresent)
{
    std::vector<Chosen> colChosen;
    for (const std::shared_ptr<clsCat>& cCat : colPresent)
    {
        const std::shared_ptr<clsCat> cMainCat = cCat->CatLevel() == 0 ? cCat : cCat->MainCat();
        auto found = std::find_if(colChosen.begin(), colChosen.end(),
                                  [&](const Chosen& chosen) { return chosen.cMainCat == cMainCat; });
        if (found == colChosen.end())
            found = colChosen.insert(colChosen.end(), {cMainCat, {}, false});
        if (cCat == cMainCat)
            found->bMainListed = true;
        else if (!Contains(found->colLevels, cCat))
            found->colLevels.push_back(cCat);
    }
    return colChosen;
}

Cats LevelsOf(const clsCat& cMainCat) { return {cMainCat.SubCats()->begin(), cMainCat.SubCats()->end()}; }

} // namespace

std::wstring ListCats(const Cats& colCats, std::size_t most)
{
    const std::size_t listed = most == 0 ? colCats.size() : std::min(most, colCats.size());
    std::wstring sList;
    for (std::size_t cat = 0; cat < listed; ++cat)
        sList += (cat == 0 ? L"" : L", ") + NameOf(*colCats[cat]);
    if (listed < colCats.size())
        sList += L"... (+" + CountText(colCats.size() - listed) + L")";
    return sList;
}

// ---- re-ordering levels ----

void CategoryEditing::ShuffleCategories(const Cats& colCats, bool bConfirmFirst)
{
    const Cats colPresent = PresentOf(m_cState, colCats);
    if (colPresent.empty() ||
        (bConfirmFirst &&
         !IsConfirmed({L"Confirm Shuffle.", L"Really shuffle these categories: "}, colPresent)))
        return;
    Random& cRandom = m_cState.cMod.Ports().cRandom;
    cRandom.Randomize();
    ReorderCategories(colPresent, L"shuffle of ", [&](const clsCat& cSubCat) {
        return RandomOrder(cRandom, cSubCat.SchedCuts()->Count());
    });
}

void CategoryEditing::SpreadCategories(const Cats& colCats, bool bConfirmFirst, const NewOrder& newOrder)
{
    const Cats colPresent = PresentOf(m_cState, colCats);
    if (colPresent.empty() ||
        (bConfirmFirst &&
         !IsConfirmed({L"Spread Categories", L"Are you sure you want to spread the cuts in: ", L"?"},
                      colPresent)))
        return;
    ReorderCategories(colPresent, L"spread of ", [&](const clsCat& cSubCat) {
        const std::vector<TextKey> colKeys = newOrder(cSubCat);
        return PositionsInOrder(*cSubCat.SchedCuts(), colKeys);
    });
}

bool CategoryEditing::IsConfirmed(const Question& question, const Cats& colPresent)
{
    return m_cState.cMod.Box(BoxIcon::Question, BoxButtons::YesNoDefaultNo, question.sTitle,
                             question.sText + ListCats(colPresent, mostListed) + question.sEnd) ==
           BoxAnswer::Yes;
}

void CategoryEditing::ReorderCategories(const Cats& colPresent, const wchar_t* sWhat,
                                        const NewPositions& newPositions)
{
    AffectedCats cAffected;
    UnitRecord cUnit(m_cState);
    const std::wstring sStep = sWhat + ListCats(colPresent, mostInUndoText);
    if (colPresent.size() > 1)
        cUnit.WorkInParts(sStep);
    std::optional<RuntimeError> cFailed;
    for (const Chosen& chosen : ChosenOf(PresentOf(m_cState, colPresent))) // the host may have reloaded
    {
        // A level whose main category is listed too is re-ordered once, with it.
        for (const std::shared_ptr<clsCat>& cSubCat :
             chosen.bMainListed ? LevelsOf(*chosen.cMainCat) : chosen.colLevels)
        {
            try
            {
                const std::vector<std::size_t> colPositions = newPositions(*cSubCat);
                if (!Contains(m_cState, cSubCat) || std::is_sorted(colPositions.begin(), colPositions.end()))
                    continue; // the host has deleted or reloaded it, or it has that order
                cUnit.Reorders(cSubCat);
                cSubCat->SchedCuts()->Reorder(colPositions);
            }
            catch (...)
            {
                cFailed = cFailed ? cFailed : CurrentError();
            }
        }
        cAffected.Touch(chosen.cMainCat->CatName());
    }
    if (cAffected.Count() > 1) // the files are saved one after the other
        cUnit.WriteAhead({}, {});
    cUnit.End([&](const ChangeRecord& record, std::size_t) { m_cState.cUndo.Add(sStep, record); });
    SaveReordered(cAffected);
    if (cFailed)
        throw *cFailed;
}

void CategoryEditing::SaveReordered(const AffectedCats& cAffected)
{
    for (const std::wstring& sName : cAffected)
    {
        const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName);
        if (cMainCat &&
            m_cState.cHistoryFiles.Save(cMainCat, {.bBoxes = false}) == HistoryFiles::Saved::Failed)
            m_cState.cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, sProgramTitle,
                              L"Failed to save cat history and ordering for: " + sName);
    }
    m_cState.RetrySaves();
}

// ---- deleting ----

bool CategoryEditing::DeleteCats(const Cats& colCats)
{
    const Cats colPresent = PresentOf(m_cState, colCats);
    bool bAll =
        std::ssize(colPresent) == std::ssize(colCats) - std::count(colCats.begin(), colCats.end(), nullptr);
    if (colPresent.empty() && !bAll)
        return false;
    const std::wstring sWhat = L"deletion of " + ListCats(colPresent, mostInUndoText);
    CutChanges cChanges(m_cState, m_cSync, CutChanges::Origin::Own,
                        [&](const ChangeRecord& record, std::size_t) { m_cState.cUndo.Add(sWhat, record); });
    cChanges.WorkInParts(sWhat);
    for (const Chosen& chosen : ChosenOf(colPresent))
        bAll = DeleteChosen(cChanges, chosen.cMainCat, chosen.colLevels, chosen.bMainListed) && bAll;
    CutChanges::Ending ending;
    ending.afterSave = [this] { m_cState.cEvents.ProgressDone(L"Categories Deleted."); };
    ending.show = [&](const RuntimeError& cError) {
        bAll = false;
        m_cState.cMod.ShowCriticalError(L"Error in DeleteCats [cSchedMan]", cError);
    };
    cChanges.Finish(ending);
    return bAll;
}

bool CategoryEditing::DeleteChosen(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat,
                                   const Cats& colListed, bool bMainListed)
{
    const bool bWhole = bMainListed && colListed.empty();
    bool bGone = true;
    for (const std::shared_ptr<clsCat>& cSubCat : bWhole ? LevelsOf(*cMainCat) : colListed)
        bGone = DeleteLevel(cChanges, {cMainCat, cSubCat}) && bGone;
    if (!m_cState.Contains(cMainCat))
        return !m_cState.MainCat(cMainCat->CatName()); // the host has deleted or reloaded it during an event
    cChanges.CallerSaves(cMainCat->CatName());
    if (!cMainCat->SubCats()->Empty())
        return m_cState.cHistoryFiles.Save(cMainCat) == HistoryFiles::Saved::Yes && bGone && !bWhole;
    // Not saved: a save without records writes nothing, and the old file would restore the levels.
    return bMainListed ? DeleteMainCat(cChanges, cMainCat) : DeleteFile(cMainCat->CatName());
}

bool CategoryEditing::DeleteLevel(CutChanges& cChanges, const SchedulerState::Place& place)
{
    const std::wstring sName = NameOf(*place.cSubCat);
    m_cState.cEvents.ProgressStart(L"Deleting Category: " + sName, place.cSubCat->TotalCuts());
    EmptyLevel(cChanges, place);
    if (!Contains(m_cState, place.cSubCat))
        return true; // the host has deleted or reloaded it during an event
    if (place.cSubCat->TotalCuts() != 0)
        return false;
    cChanges.Deleting(*place.cSubCat);
    try
    {
        place.cMainCat->RemoveSubCat(place.cSubCat);
    }
    catch (const RuntimeError& cError)
    {
        // The level is removed. Only the main category's total is wrong, and that shows only in its average,
        // which is computed again.
        m_cState.cMod.LogError(L"RemoveSubCat", cError);
    }
    m_cState.cEvents.ProgressDone(L"Deleted " + sName);
    return true;
}

// Removes the cuts that are in a level now. Stops when the tree no longer contains the level.
void CategoryEditing::EmptyLevel(CutChanges& cChanges, const SchedulerState::Place& place)
{
    const Cuts colCuts(place.cSubCat->SchedCuts()->begin(), place.cSubCat->SchedCuts()->end());
    CutChanges::Rhythm rhythm;
    rhythm.cuts = cutsPerReport;
    rhythm.tell = [&](std::size_t done) {
        m_cState.cEvents.Progress(L"Removed " + CountText(done) + L" from: " + NameOf(*place.cSubCat),
                                  static_cast<std::int64_t>(done), std::ssize(colCuts));
    };
    rhythm.goOn = [&] { return Contains(m_cState, place.cSubCat); };
    rhythm.mayLeave = [&](const SchedulerState::Place& left) { return left.cSubCat == place.cSubCat; };
    cChanges.Run(
        colCuts, [&](const std::shared_ptr<Cut>& cCut, std::size_t) { cChanges.TakeOut(cCut, place); },
        rhythm);
}

bool CategoryEditing::DeleteMainCat(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat)
{
    cChanges.Deleting(*cMainCat);
    m_cState.colMainCats->Remove(CategoryKey(cMainCat->CatName(), 0));
    m_cState.cCategoryList.Deleted(cMainCat->CatName());
    const bool bFileGone = DeleteFile(cMainCat->CatName());
    return m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath()) && bFileGone;
}

bool CategoryEditing::DeleteFile(const std::wstring& sCatName)
{
    return TrapCritical(m_cState.cMod, L"Error in DeleteCats [cSchedMan]", false, [&] {
        m_cState.cHistoryFiles.DeleteFile(sCatName);
        return true;
    });
}

// ---- re-ordering ----

// Moves of the same cuts in one level are one step, such as those of a key that is held down; none when they
// are back where they were.
void CategoryEditing::MoveTo(const clsCat& cSubCat, const std::vector<std::size_t>& colPositions,
                             const std::vector<TextKey>& colMoved)
{
    ChangeRecord record;
    record.colOrders = {PresentOrder(cSubCat)};
    cSubCat.SchedCuts()->Reorder(colPositions);
    UndoSteps::Series series;
    series.sName = L"re-order\t" + CategoryKey(cSubCat.CatName(), cSubCat.CatLevel());
    for (const TextKey& cKey : colMoved)
        series.sName += sCrLf + cKey.Text();
    series.textOf = [&](const ChangeRecord&) { return L"re-order of " + NameOf(cSubCat); };
    series.colAfter = {PresentOrder(cSubCat)};
    m_cState.cUndo.AddToSeries(series, record);
}

void CategoryEditing::MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                                         std::int32_t PosInto)
{
    if (!cCat || cCat->CatLevel() == 0)
        throw RuntimeError(error::InvalidProcedureCall);
    std::vector<TextKey> colKeys; // read first: reading a host's cut may run anything
    AffectedCats cAffected;
    RenamedCuts cRenamed(m_cState);
    for (const std::shared_ptr<Cut>& cCut : colCutsInsert)
        if (cCut)
        {
            colKeys.push_back(cCut->Key());
            if (!m_cState.cPlacedCuts.Contains(colKeys.back()))
                for (const std::shared_ptr<clsCat>& cMainCat :
                     cRenamed.Follow(m_cState.OwnOf(cCut), colKeys.back()))
                    cAffected.Touch(cMainCat->CatName());
        }
    const std::shared_ptr<clsCat> cSubCat = m_cState.Present(cCat);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall,
                           L"The category to move cuts in does not exist any more");
    if (const std::vector<std::size_t> colPositions = MovedInFrontOf(*cSubCat->SchedCuts(), colKeys, PosInto);
        !colPositions.empty())
    {
        if (!std::is_sorted(colPositions.begin(), colPositions.end()))
            MoveTo(*cSubCat, colPositions, colKeys);
        cAffected.Touch(cSubCat->CatName());
    }
    if (cAffected.Count() == 0)
        return;
    for (const std::wstring& sName : cAffected)
        if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName))
            m_cState.cHistoryFiles.Save(cMainCat);
    m_cState.RetrySaves();
}

} // namespace ravlo
