// SPDX-License-Identifier: MIT
#include "ui/library/LibraryCuts.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "scheduler/MassChange.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/NodeKey.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::int32_t lEditCancelled = 2;

void Add(std::vector<CutRemoval>& colRemovals, const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey)
{
    const std::shared_ptr<Cut>* cCut = cLevel ? cLevel->SchedCuts()->Find(cKey) : nullptr;
    if (cCut)
        colRemovals.push_back({*cCut, cLevel->MainCat(), cLevel->CatLevel()});
}

// The number of cuts that are in none of the levels any more that they were to be removed from.
std::size_t Removed(const clsSchedMan& cSchedMan, const std::vector<CutRemoval>& colRemovals)
{
    KeySet colKeys;
    KeySet colLeft;
    for (const CutRemoval& removal : colRemovals)
    {
        const TextKey cKey = removal.cCut->Key();
        const std::shared_ptr<clsCat> cLevel =
            CatOf(cSchedMan, CategoryKey(removal.cMainCat->CatName(), removal.lLevel));
        colKeys.insert(cKey);
        if (cLevel && cLevel->SchedCuts()->Exists(cKey))
            colLeft.insert(cKey);
    }
    return colKeys.size() - colLeft.size();
}

// Whether a level, or any level of a main category, contains the cut.
bool Contains(const clsCat& cCat, const TextKey& cKey)
{
    return cCat.CatLevel() != 0
               ? cCat.SchedCuts()->Exists(cKey)
               : std::any_of(cCat.SubCats()->begin(), cCat.SubCats()->end(),
                             [&](const std::shared_ptr<clsCat>& cLevel) { return Contains(*cLevel, cKey); });
}

} // namespace

LibraryCuts::LibraryCuts(frmUILibView& cView, LibraryPanes& cPanes, LibraryWork& cWork,
                         LibraryResults& cResults, ModScheduler& cMod)
    : m_cView(cView), m_cPanes(cPanes), m_cWork(cWork), m_cResults(cResults), m_cMod(cMod),
      m_cRecent(cMod.Ports().cUserSettings)
{
    Grid().MoveRequested = [this](std::optional<std::size_t> row) {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan())
            Move(*cSchedMan, row);
    };
    Grid().RemovalRequested = [this](const std::vector<std::size_t>& colRows) {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan())
            Remove(*cSchedMan, colRows);
    };
    Grid().ReorderRefused = [this](const std::wstring& sWhy) { m_cView.SetStatus(sWhy, L""); };
}

// ---- the grid's keys and clicks ----

void LibraryCuts::CellDblClick(std::size_t row, std::size_t col)
{
    Pressed(row, col);
    EditPressed();
}

void LibraryCuts::Pressed(std::size_t row, std::size_t col)
{
    m_cPressed.reset();
    if (row >= 1 && col >= 1 && row <= Grid().RowCount() && !m_cWork.Running())
        m_cWork.Try(L"iGridLib_CellDblClick", [&] { m_cPressed = Grid().KeyAt(row - 1); });
}

void LibraryCuts::EditPressed()
{
    if (const std::optional<TextKey> cKey = std::exchange(m_cPressed, std::nullopt))
        m_cWork.Handle(L"iGridLib_CellDblClick", [&](clsSchedMan& cSchedMan) { Edit(cSchedMan, *cKey); });
}

void LibraryCuts::Edit(clsSchedMan& cSchedMan, const TextKey& cKey)
{
    const std::shared_ptr<DataBase> cDataBase = cSchedMan.DataBase();
    const std::shared_ptr<Cut> cCut = cDataBase ? cDataBase->CutByKey(cKey) : nullptr;
    const bool bEdited = cCut && cSchedMan.RaiseEditRequestCutEvent(cCut) != lEditCancelled;
    if (bEdited && !m_cWork.RefreshPending()) // otherwise the pending refresh shows the node again
        m_cPanes.ShowAgain(cSchedMan);
}

void LibraryCuts::GridDelete()
{
    m_cWork.Handle(L"iGridLib_KeyDown", [this](clsSchedMan&) { Grid().RemoveSelectedFromCategory(); });
}

void LibraryCuts::Remove(clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows)
{
    const bool bFromAll = !Grid().CurrentCatViewing();
    if (bFromAll)
        m_cResults.Concern(colRows.size());
    if (bFromAll && m_cMod.Box(BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?") != BoxAnswer::Yes)
        return;
    const LibraryWork::Busy cBusy(m_cWork);
    const std::vector<CutRemoval> colRemovals =
        bFromAll ? RemovalsFromAll(cSchedMan, colRows) : RemovalsFromListed(cSchedMan, colRows);
    const auto count = static_cast<std::int32_t>(colRemovals.size());
    m_cView.SetStatus(L"Removing from category...", L"");
    m_cView.ShowProgress(count);
    cSchedMan.RemoveCutsFromCategories(colRemovals, [&](std::size_t done) {
        const auto lDone = static_cast<std::int32_t>(done);
        m_cView.SetStatus(L"Removed " + DecimalText(lDone) + L" of " + DecimalText(count), L"");
        m_cView.MoveProgress(lDone);
    });
    m_cResults.Say(CountedCuts(Removed(cSchedMan, colRemovals)) + L" taken out of " +
                   (bFromAll ? L"all categories" : NodeText(m_cPanes.ShownKey())));
    m_cPanes.ShowAgain(cSchedMan);
}

// From the levels they are listed in, looked up in the present tree: the listing may be older.
std::vector<CutRemoval> LibraryCuts::RemovalsFromListed(const clsSchedMan& cSchedMan,
                                                        const std::vector<std::size_t>& colRows) const
{
    std::vector<CutRemoval> colRemovals;
    for (const std::size_t row : colRows)
        if (const std::shared_ptr<clsCat> cListed = Grid().LevelAt(row))
            Add(colRemovals, CatOf(cSchedMan, CategoryKey(cListed->CatName(), cListed->CatLevel())),
                Grid().KeyAt(row));
    return colRemovals;
}

// From every level that contains them.
std::vector<CutRemoval> LibraryCuts::RemovalsFromAll(const clsSchedMan& cSchedMan,
                                                     const std::vector<std::size_t>& colRows) const
{
    std::vector<TextKey> colKeys;
    colKeys.reserve(colRows.size());
    for (const std::size_t row : colRows)
        colKeys.push_back(Grid().KeyAt(row));
    std::unordered_map<TextKey, Cats> colPlaces;
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    ForEachPlace(colMainCats.get(), KeySet(colKeys.begin(), colKeys.end()),
                 [&](const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey) {
        colPlaces[cKey].push_back(cLevel);
    });
    std::vector<CutRemoval> colRemovals;
    for (const TextKey& cKey : colKeys)
        for (const std::shared_ptr<clsCat>& cLevel : colPlaces[cKey])
            Add(colRemovals, cLevel, cKey);
    return colRemovals;
}

void LibraryCuts::MoveSelected(bool bUp)
{
    if (m_cWork.Running() && !m_bMovingByKeys)
        return;
    m_steps += bUp ? -1 : 1;
    if (m_bMovingByKeys)
        return;
    const ScopedFlag cMoving(m_bMovingByKeys);
    m_cWork.HandleDrop([&](clsSchedMan& cSchedMan) {
        while (const std::ptrdiff_t steps = std::exchange(m_steps, 0))
            if (MayReorder(cSchedMan))
                Grid().MoveSelected(steps);
    });
    m_steps = 0;
}

void LibraryCuts::TakeSelection(bool bCut)
{
    m_cWork.HandleDrop([&](clsSchedMan& cSchedMan) {
        std::optional<DraggedCuts> dragged = TakeDraggedCuts(cSchedMan);
        if (!dragged)
            return;
        m_copied = std::move(*dragged);
        Grid().ShowPale(bCut ? KeySet(m_copied.colKeys.begin(), m_copied.colKeys.end()) : KeySet());
        m_cResults.Remark(CountedCuts(m_copied.colKeys.size()) + L" to paste into a category of the tree");
    });
}

void LibraryCuts::Paste()
{
    m_cWork.HandleDrop([this](clsSchedMan& cSchedMan) {
        const std::wstring sKey = m_cPanes.SelectedKey();
        if (!sKey.empty() && !m_copied.colKeys.empty() && DropOnNode(cSchedMan, sKey, m_copied))
            Grid().ShowPale({});
    });
}

bool LibraryCuts::CancelCut()
{
    if (!Grid().ShowsPale() || m_cWork.Running())
        return false;
    m_copied = {};
    Grid().ShowPale({});
    return true;
}

// Reads the selection after becoming busy, which may process messages.
void LibraryCuts::Move(clsSchedMan& cSchedMan, std::optional<std::size_t> row)
{
    const LibraryWork::Busy cBusy(m_cWork);
    const std::shared_ptr<clsCat> cLevel = Grid().CurrentCatViewing();
    const std::vector<std::size_t> colRows = Grid().SelectedRows();
    if (colRows.empty())
        return;
    const TextKey cFirst = Grid().KeyAt(colRows.front());
    cSchedMan.MoveCutsInCategory(cLevel, Grid().colSelCuts(), Grid().PositionInto(row));
    SayMoved(*cLevel, cFirst, colRows.size());
    m_cPanes.ShowAgain(cSchedMan);
}

void LibraryCuts::SayMoved(const clsCat& cLevel, const TextKey& cFirst, std::size_t cuts)
{
    if (const std::optional<std::size_t> position = cLevel.SchedCuts()->PositionOf(cFirst))
        m_cResults.Say(L"Moved " + CountedCuts(cuts) + L" to position " + CountText(*position + 1));
}

// ---- drag and drop ----

bool LibraryCuts::DragStarted()
{
    if (m_cWork.Running() || !Grid().StartDrag())
        return false;
    m_cDrag = std::make_unique<LibraryWork::Working>(m_cWork);
    return true;
}

// Handles the drop before a refresh that became pending during the drag: the rows are still those that were
// dragged.
void LibraryCuts::DragCompleted(const std::optional<Drop>& drop)
{
    const std::unique_ptr<LibraryWork::Working> cDrag = std::move(m_cDrag);
    Grid().EndDrag();
    if (cDrag && drop)
        m_cWork.RunDrop([&](clsSchedMan& cSchedMan) { Perform(cSchedMan, *drop); });
}

void LibraryCuts::Dropped(const Drop& drop)
{
    if (!drop.bOnTree || !drop.sNodeKey.empty())
        m_cWork.HandleDrop([this](clsSchedMan&) { Grid().RefuseSource(); });
}

void LibraryCuts::Perform(clsSchedMan& cSchedMan, const Drop& drop)
{
    if (!drop.bOnTree)
    {
        if (MayReorder(cSchedMan))
            Grid().Drop(drop.sPayload, drop.row);
        return;
    }
    if (drop.sPayload != sGridPayload || drop.sNodeKey.empty())
        return;
    if (const std::optional<DraggedCuts> dragged = TakeDraggedCuts(cSchedMan))
        DropOnNode(cSchedMan, drop.sNodeKey, *dragged);
}

// Gives the grid the present object of the shown level, which may have been reloaded. Returns false, and
// shows another node, when it was deleted.
bool LibraryCuts::MayReorder(clsSchedMan& cSchedMan)
{
    if (!Grid().CurrentCatViewing())
        return true;
    std::shared_ptr<clsCat> cNow = m_cPanes.ShownCat(cSchedMan);
    if (!cNow)
    {
        m_cPanes.ShowChanges(cSchedMan);
        return false;
    }
    Grid().SetCurrentCatViewing(std::move(cNow));
    return true;
}

std::optional<DraggedCuts> LibraryCuts::TakeDraggedCuts(const clsSchedMan& cSchedMan)
{
    try
    {
        return TakeDragged(Grid(), cSchedMan);
    }
    catch (...)
    {
        m_cMod.DISPLAYERROR(L"Error occurred in dragdrop", true, CurrentError());
        return std::nullopt;
    }
}

bool LibraryCuts::DropOnNode(clsSchedMan& cSchedMan, const std::wstring& sKey, const DraggedCuts& dragged)
{
    if (ParseNodeKey(sKey).bAllAudio)
    {
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Invalid Drop!",
                   L"It's not valid to drop into 'ALL AUDIO'");
        return false;
    }
    const std::optional<Target> target = ChooseTarget(cSchedMan, sKey);
    const eCatDragOptions eOption = target ? ChooseOption(target->sText) : eCancel;
    if (eOption == eCancel)
        return false;
    Change(cSchedMan, eOption, *target, dragged);
    return true;
}

void LibraryCuts::Change(clsSchedMan& cSchedMan, eCatDragOptions eOption, Target target,
                         const DraggedCuts& dragged)
{
    const PresentCuts present = PresentOf(cSchedMan, dragged);
    if (present.colCuts.empty())
        return m_cPanes.ShowAgain(cSchedMan);
    // Look the target up again, now that the pop-ups are closed.
    const std::wstring sName = target.cCat->CatName();
    const std::wstring sMainKey = CategoryKey(sName, 0);
    if (std::shared_ptr<clsCat> cNow = CatOf(cSchedMan, CategoryKey(sName, target.lLevel)))
        target.cCat = std::move(cNow);
    if (eOption == eCopyHere && !MayCopyInto(target.lLevel, present))
        return ShowCopyRefused(m_cMod);
    const LibraryWork::Busy cBusy(m_cWork);
    const std::vector<std::wstring> colBefore = m_cPanes.LevelKeys(sMainKey);
    bool bCreatedNewSubCats = false;
    cSchedMan.DoMassCatChange(eOption, present.colFrom, target.cCat, present.colCuts, bCreatedNewSubCats);
    SayChanged(cSchedMan, eOption, target, dragged);
    if (!bCreatedNewSubCats)
        return m_cPanes.ShowAgain(cSchedMan);
    m_cPanes.RefreshAll(cSchedMan);
    m_cPanes.BringIntoView(m_cPanes.NewLevelKey(sMainKey, colBefore));
}

// Says how many of the cuts the target contains now, and remembers a target that contains any.
void LibraryCuts::SayChanged(const clsSchedMan& cSchedMan, eCatDragOptions eOption, const Target& target,
                             const DraggedCuts& dragged)
{
    const std::shared_ptr<clsCat> cTo = CatOf(cSchedMan, CategoryKey(target.cCat->CatName(), target.lLevel));
    const auto count = static_cast<std::size_t>(
        std::count_if(dragged.colKeys.begin(), dragged.colKeys.end(),
                      [&](const TextKey& cKey) { return cTo && Contains(*cTo, cKey); }));
    if (count != 0) // a target that failed is not offered again
        m_cRecent.Add(CategoryKey(target.cCat->CatName(), target.lLevel));
    const std::wstring sOf = count == dragged.colKeys.size() ? L"" : CountText(count) + L" of ";
    m_cResults.Say((eOption == eCopyHere ? L"Copied " : L"Moved ") + sOf +
                   CountedCuts(dragged.colKeys.size()) + L" into " + target.sText +
                   (eOption == eMoveExclusiveHere ? L" only" : L""));
}

std::optional<LibraryCuts::Target> LibraryCuts::ChooseTarget(const clsSchedMan& cSchedMan,
                                                             const std::wstring& sKey)
{
    const std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, sKey);
    if (!cCat)
        return std::nullopt;
    if (cCat->CatLevel() != 0)
        return TargetOf(cCat);
    const std::wstring& sName = cCat->CatName();
    const Cats colLevels(cCat->SubCats()->begin(), cCat->SubCats()->end());
    std::vector<std::wstring> mnuCatChooseLevel{L"Drop Into: " + sName + L", keeping levels the same"};
    for (const std::shared_ptr<clsCat>& cLevel : colLevels) // mnuCatChooseLevelDrop
        mnuCatChooseLevel.push_back(L"Drop Into " + sName + L" Level " + DecimalText(cLevel->CatLevel()));
    const std::optional<std::size_t> item = m_cView.PopUp(mnuCatChooseLevel);
    if (!item || *item > colLevels.size())
        return std::nullopt;
    return TargetOf(*item == 0 ? cCat : colLevels[*item - 1]);
}

LibraryCuts::Target LibraryCuts::TargetOf(const std::shared_ptr<clsCat>& cCat)
{
    const std::int32_t lLevel = cCat->CatLevel();
    return {cCat, lLevel, cCat->CatName() + (lLevel == 0 ? L"" : L" " + DecimalText(lLevel))};
}

eCatDragOptions LibraryCuts::ChooseOption(const std::wstring& sTarget)
{
    struct Item
    {
        std::wstring sCaption;
        eCatDragOptions eOption;
    };
    const Item mnuCatChooseDrop[] = {
        {L"Copy Into " + sTarget, eCopyHere},                    // mnuCatCopyHere
        {L"Move Into " + sTarget, eMoveHere},                    // mnuCatMoveHere
        {L"Move Exclusive Into " + sTarget, eMoveExclusiveHere}, // mnuCatMoveOnlyHere
        {L"Cancel", eCancel},                                    // mnuCatMoveCopyCancel
    };
    std::vector<std::wstring> colCaptions;
    for (const Item& item : mnuCatChooseDrop)
        colCaptions.push_back(item.sCaption);
    const std::optional<std::size_t> item = m_cView.PopUp(colCaptions);
    return item && *item < std::size(mnuCatChooseDrop) ? mnuCatChooseDrop[*item].eOption : eCancel;
}

} // namespace ravlo
