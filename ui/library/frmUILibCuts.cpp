// SPDX-License-Identifier: MIT
#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "scheduler/MassChange.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/NodeKey.h"
#include "ui/library/frmUILibWork.h"

#include <unordered_map>

namespace ravlo
{

namespace
{

constexpr std::int32_t lEditCancelled = 2;

} // namespace

// ---- the grid's keys and clicks ----

void frmUILibPresenter::CellDblClick(std::size_t row, std::size_t col)
{
    if (row >= 1 && col >= 1 && row <= m_cGrid.RowCount())
        Handle(L"iGridLib_CellDblClick", [&](clsSchedMan& cSchedMan) { Edit(cSchedMan, row - 1); });
}

void frmUILibPresenter::Edit(clsSchedMan& cSchedMan, std::size_t row)
{
    const std::shared_ptr<DataBase> cDataBase = cSchedMan.DataBase();
    const std::shared_ptr<Cut> cCut = cDataBase ? cDataBase->CutByKey(m_cGrid.KeyAt(row)) : nullptr;
    const bool bEdited = cCut && cSchedMan.RaiseEditRequestCutEvent(cCut) != lEditCancelled;
    if (bEdited && !m_bRefreshOwed) // the database's news of the edit show the node again by themselves
        ShowAgain(cSchedMan);
}

void frmUILibPresenter::GridDelete()
{
    Handle(L"iGridLib_KeyDown", [this](clsSchedMan&) { m_cGrid.RemoveSelectedFromCategory(); });
}

void frmUILibPresenter::Remove(clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows)
{
    const bool bFromAll = !m_cGrid.CurrentCatViewing();
    if (bFromAll && m_cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?") != BoxAnswer::Yes)
        return;
    const Busy cBusy(*this);
    const std::vector<CutRemoval> colRemovals = RemovalsOf(cSchedMan, colRows, bFromAll);
    const auto count = static_cast<std::int32_t>(colRemovals.size());
    ProgressStart(L"Removing from category...", count);
    cSchedMan.RemoveCutsFromCategories(colRemovals, [&](std::size_t done) {
        const auto lDoneLong = static_cast<std::int32_t>(done);
        Progress(L"Removed " + DecimalText(lDoneLong) + L" of " + DecimalText(count), lDoneLong);
    });
    ShowAgain(cSchedMan);
}

// What the rows' cuts are to be taken out of, in the tree as it is now: the levels listed may be those of an
// earlier population, and in ALL AUDIO a cut leaves every level that holds it.
std::vector<CutRemoval> frmUILibPresenter::RemovalsOf(const clsSchedMan& cSchedMan,
                                                      const std::vector<std::size_t>& colRows,
                                                      bool bFromAll) const
{
    std::vector<CutRemoval> colRemovals;
    const auto Add = [&](const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey) {
        const std::shared_ptr<Cut>* cCut = cLevel ? cLevel->SchedCuts()->Find(cKey) : nullptr;
        if (cCut)
            colRemovals.push_back({*cCut, cLevel->MainCat(), cLevel->CatLevel()});
    };
    if (!bFromAll)
    {
        for (const std::size_t row : colRows)
            if (const std::shared_ptr<clsCat> cListed = m_cGrid.LevelAt(row))
                Add(CatOf(cSchedMan, CategoryKey(cListed->CatName(), cListed->CatLevel())),
                    m_cGrid.KeyAt(row));
        return colRemovals;
    }
    std::vector<TextKey> colKeys;
    for (const std::size_t row : colRows)
        colKeys.push_back(m_cGrid.KeyAt(row));
    std::unordered_map<TextKey, Cats> colPlaces;
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    ForEachPlace(colMainCats.get(), KeySet(colKeys.begin(), colKeys.end()),
                 [&](const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey) {
        colPlaces[cKey].push_back(cLevel);
    });
    for (const TextKey& cKey : colKeys)
        for (const std::shared_ptr<clsCat>& cLevel : colPlaces[cKey])
            Add(cLevel, cKey);
    return colRemovals;
}

void frmUILibPresenter::MoveSelected(bool bUp)
{
    if (m_lWorking > 0 && !m_bMovingByKeys)
        return;
    m_steps += bUp ? -1 : 1;
    if (m_bMovingByKeys)
        return;
    const ScopedFlag cMoving(m_bMovingByKeys);
    HandleDrop([&](clsSchedMan& cSchedMan) {
        while (const std::ptrdiff_t steps = std::exchange(m_steps, 0))
            DropOnGrid(cSchedMan, [&] { m_cGrid.MoveSelected(steps); });
    });
    m_steps = 0;
}

void frmUILibPresenter::CopySelection()
{
    HandleDrop([this](clsSchedMan&) {
        if (std::optional<DraggedCuts> dragged = TakeDraggedCuts())
            m_copied = std::move(*dragged);
    });
}

void frmUILibPresenter::Paste()
{
    HandleDrop([this](clsSchedMan& cSchedMan) {
        const std::optional<CategoryTreePresenter::Node> lNode = m_cTreeView.Selected();
        if (lNode && !m_copied.colKeys.empty())
            DropOnNode(cSchedMan, std::wstring(m_cTree.At(*lNode).sKey), m_copied);
    });
}

// ---- drag and drop ----

bool frmUILibPresenter::DragStarted()
{
    if (m_lWorking > 0 || !m_cGrid.StartDrag())
        return false;
    m_cDrag = std::make_unique<Working>(*this);
    return true;
}

// The drop comes before what was put off during the drag: the rows are still those that were dragged.
void frmUILibPresenter::DragCompleted(const std::optional<Drop>& drop)
{
    const std::unique_ptr<Working> cDrag = std::move(m_cDrag);
    m_cGrid.EndDrag();
    if (cDrag && drop)
        RunDrop([&](clsSchedMan& cSchedMan) { Perform(cSchedMan, *drop); });
}

void frmUILibPresenter::Dropped(const Drop& drop)
{
    if (!drop.bOnTree || !drop.sNodeKey.empty())
        HandleDrop([this](clsSchedMan&) { m_cGrid.RefuseSource(); });
}

void frmUILibPresenter::Perform(clsSchedMan& cSchedMan, const Drop& drop)
{
    if (!drop.bOnTree)
        return DropOnGrid(cSchedMan, [&] { m_cGrid.Drop(drop.sPayload, drop.lRow); });
    if (drop.sPayload != sGridPayload || drop.sNodeKey.empty())
        return;
    if (const std::optional<DraggedCuts> dragged = TakeDraggedCuts())
        DropOnNode(cSchedMan, drop.sNodeKey, *dragged);
}

// Re-orders what is shown, as it is now: nothing may be placed into a level that has been deleted or reloaded
// since.
void frmUILibPresenter::DropOnGrid(clsSchedMan& cSchedMan, const std::function<void()>& reorder)
{
    if (m_cGrid.CurrentCatViewing())
    {
        std::shared_ptr<clsCat> cNow = CatOf(cSchedMan, m_sShownKey);
        if (!cNow)
            return ShowChanges(cSchedMan);
        m_cGrid.SetCurrentCatViewing(std::move(cNow));
    }
    reorder();
}

std::optional<DraggedCuts> frmUILibPresenter::TakeDraggedCuts()
{
    try
    {
        return TakeDragged(m_cGrid);
    }
    catch (...)
    {
        m_cMod.DISPLAYERROR(L"Error occurred in dragdrop", true, CurrentError());
        return std::nullopt;
    }
}

void frmUILibPresenter::DropOnNode(clsSchedMan& cSchedMan, const std::wstring& sKey,
                                   const DraggedCuts& dragged)
{
    if (ParseNodeKey(sKey).bAllAudio)
    {
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Invalid Drop!",
                   L"It's not valid to drop into 'ALL AUDIO'");
        return;
    }
    std::optional<Target> target = ChooseTarget(cSchedMan, sKey);
    if (!target)
        return;
    const eCatDragOptions eOption = ChooseOption(target->sText);
    if (eOption == eCancel)
        return;
    const PresentCuts present = PresentOf(cSchedMan, dragged);
    if (present.colCuts.empty())
        return ShowAgain(cSchedMan);
    // The target, too, as it is now that the pop-ups are closed.
    if (std::shared_ptr<clsCat> cNow = CatOf(cSchedMan, CategoryKey(target->cCat->CatName(), target->lLevel)))
        target->cCat = std::move(cNow);
    if (eOption == eCopyHere && !MayCopy(present, *target))
        return;
    const Busy cBusy(*this);
    const std::wstring sMainKey = MainKeyOf(sKey);
    const std::vector<std::wstring> colBefore = LevelKeys(sMainKey);
    bool bCreatedNewSubCats = false;
    cSchedMan.DoMassCatChange(eOption, present.colFrom, target->cCat, present.colCuts, bCreatedNewSubCats);
    if (!bCreatedNewSubCats)
        return ShowAgain(cSchedMan);
    RefreshAll(cSchedMan);
    ShowNewLevel(sMainKey, colBefore);
}

std::optional<frmUILibPresenter::Target> frmUILibPresenter::ChooseTarget(const clsSchedMan& cSchedMan,
                                                                         const std::wstring& sKey)
{
    const std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, sKey);
    if (!cCat)
        return std::nullopt;
    const auto LevelTarget = [](const std::shared_ptr<clsCat>& cLevel) {
        return Target{cLevel, cLevel->CatLevel(), cLevel->CatName() + L" " + DecimalText(cLevel->CatLevel())};
    };
    if (cCat->CatLevel() != 0)
        return LevelTarget(cCat);
    const std::wstring& sName = cCat->CatName();
    const Cats colLevels(cCat->SubCats()->begin(), cCat->SubCats()->end());
    std::vector<std::wstring> mnuCatChooseLevel{L"Drop Into: " + sName + L", keeping levels the same"};
    for (const std::shared_ptr<clsCat>& cLevel : colLevels) // mnuCatChooseLevelDrop
        mnuCatChooseLevel.push_back(L"Drop Into " + sName + L" Level " + DecimalText(cLevel->CatLevel()));
    const std::optional<std::size_t> lItem = m_cView.PopUp(mnuCatChooseLevel);
    if (!lItem || *lItem > colLevels.size())
        return std::nullopt;
    return *lItem == 0 ? Target{cCat, 0, sName} : LevelTarget(colLevels[*lItem - 1]);
}

eCatDragOptions frmUILibPresenter::ChooseOption(const std::wstring& sTarget)
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
    const std::optional<std::size_t> lItem = m_cView.PopUp(colCaptions);
    return lItem && *lItem < std::size(mnuCatChooseDrop) ? mnuCatChooseDrop[*lItem].eOption : eCancel;
}

bool frmUILibPresenter::MayCopy(const PresentCuts& present, const Target& target) const
{
    if (MayCopyInto(target.lLevel, present))
        return true;
    ShowCopyRefused(m_cMod);
    return false;
}

} // namespace ravlo
