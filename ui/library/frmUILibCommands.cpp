// SPDX-License-Identifier: MIT
#include "scheduler/CategoryEditing.h"
#include "ui/library/LibraryFilling.h"
#include "ui/library/NodeKey.h"
#include "ui/library/frmUILibWork.h"

#include <functional>
#include <memory>
#include <utility>

namespace ravlo
{

namespace
{

// Calls something once at the next start of progress, as long as it exists.
class Began
{
public:
    Began(std::function<void()>& OnProgressStart, std::function<void()> begun)
        : m_OnProgressStart(OnProgressStart)
    {
        m_OnProgressStart = [this, begun = std::move(begun)] {
            if (!std::exchange(m_bBegan, true))
                begun();
        };
    }
    ~Began() { m_OnProgressStart = nullptr; }
    Began(const Began&) = delete;
    Began& operator=(const Began&) = delete;

private:
    std::function<void()>& m_OnProgressStart;
    bool m_bBegan = false;
};

const wchar_t* HandlerOf(LibraryCommand eCommand)
{
    using enum LibraryCommand;
    switch (eCommand)
    {
    case mnuSelectAllTree:
        return L"mnuSelectAllTree_Click";
    case mnuSelectNoneTree:
        return L"mnuSelectNoneTree_Click";
    case mnuSelectInvertTree:
        return L"mnuSelectInvertTree_Click";
    case mnuSelectAllGrid:
        return L"mnuSelectAllGrid_Click";
    case mnuSelectNoneGrid:
        return L"mnuSelectNoneGrid_Click";
    case mnuInvertSelectionGrid:
        return L"mnuInvertSelectionGrid_Click";
    case mnuReloadAll:
        return L"mnuReloadAll_Click";
    case mnuSave:
        return L"mnuSave_Click";
    case mnuExit:
        return L"mnuExit_Click";
    case mnuCatUI:
        return L"mnuCatUI_Click";
    case mnuCatNew:
        return L"mnuCatNew_Click";
    case mnuCatLevelNew:
        return L"mnuCatLevelNew_Click";
    case mnuShuffle:
        return L"mnuShuffle_Click";
    case mnuCatDelete:
        return L"mnuCatDelete_Click";
    case mnuHelp:
        return L"mnuHelp_Click";
    }
    return L"frmUILib";
}

} // namespace

// ---- commands ----

void frmUILibPresenter::Do(LibraryCommand eCommand)
{
    if (eCommand == LibraryCommand::mnuExit)
        return RequestClose();
    Handle(HandlerOf(eCommand), [&](clsSchedMan& cSchedMan) { Run(eCommand, cSchedMan); });
}

void frmUILibPresenter::Run(LibraryCommand eCommand, clsSchedMan& cSchedMan)
{
    using enum LibraryCommand;
    switch (eCommand)
    {
    case mnuSelectAllTree:
        return CheckAll(true);
    case mnuSelectNoneTree:
        return CheckAll(false);
    case mnuSelectInvertTree:
        return InvertChecks();
    case mnuSelectAllGrid:
        return m_cGrid.SelectAll();
    case mnuSelectNoneGrid:
        return m_cGrid.SelectNone();
    case mnuInvertSelectionGrid:
        return m_cGrid.InvertSelection();
    case mnuReloadAll:
        return Reload(cSchedMan);
    case mnuSave:
        return SaveAll(cSchedMan);
    case mnuExit:
        return; // never run here: it is put off while something runs, not ignored
    case mnuCatUI:
        return ShowCategoryWindow(cSchedMan);
    case mnuCatNew:
        return NewCategory(cSchedMan);
    case mnuCatLevelNew:
        return NewLevel(cSchedMan);
    case mnuShuffle:
        return Shuffle(cSchedMan);
    case mnuCatDelete:
        return Delete(cSchedMan);
    case mnuHelp:
        return cSchedMan.ShowHelp();
    }
}

void frmUILibPresenter::ShowCategoryWindow(clsSchedMan& cSchedMan)
{
    CategoryRequest request;
    request.sCaption = L"Category Selector";
    cSchedMan.ShowCatUI(request);
    if (!TreeIsUpToDate(cSchedMan))
        ShowChanges(cSchedMan);
}

void frmUILibPresenter::NewCategory(clsSchedMan& cSchedMan)
{
    std::wstring sName;
    if (!cSchedMan.CreateMainCat(sName))
        return;
    ShowChanges(cSchedMan);
    if (const std::optional<CategoryTreePresenter::Node> lNew = m_cTree.Find(CategoryKey(sName, 0)))
        m_cTreeView.BringIntoView(*lNew);
}

void frmUILibPresenter::NewLevel(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTreePresenter::Node> lNode = m_cTreeView.Selected();
    if (!lNode)
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Nothing Selected",
                   L"First Select a category in the tree under which to create the new Category Level");
        return;
    }
    if (CategoryTreePresenter::IsRoot(*lNode))
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Choose Another Category In The Tree",
                   L"'ALL AUDIO' is not a valid category selection for this operation");
        return;
    }
    const std::wstring sMainKey = MainKeyOf(m_cTree.At(*lNode).sKey);
    const std::vector<std::wstring> colBefore = LevelKeys(sMainKey);
    if (!cSchedMan.CreateCatLevel(CatOf(cSchedMan, sMainKey)))
        return;
    ShowChanges(cSchedMan);
    ShowNewLevel(sMainKey, colBefore);
}

void frmUILibPresenter::Shuffle(clsSchedMan& cSchedMan)
{
    const Cats colCats = CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"You Need to Check (tick) Them In The Tree.",
                   L"First, select some categories to shuffle");
        return;
    }
    {
        // Not while the manager asks: from its first report on.
        std::unique_ptr<Busy> cBusy;
        const Began cBegan(m_OnProgressStart, [&] { cBusy = std::make_unique<Busy>(*this); });
        cSchedMan.ShuffleCategories(colCats, true);
    }
    ShowAgain(cSchedMan);
}

void frmUILibPresenter::Delete(clsSchedMan& cSchedMan)
{
    const Cats colCats = CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok,
                   L"First Select Some Categories To Delete In The Tree!",
                   L"There are no categories checked in the tree to delete!");
        return;
    }
    const std::wstring sText = L"Really delete the checked categories: \r\n" + ListCats(colCats, mostListed) +
                               L"\r\n\r\nAny items in these categories will be removed from the categories.";
    if (m_cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Confirm Category Deletion", sText) !=
        BoxAnswer::Yes)
        return;
    const Busy cBusy(*this);
    cSchedMan.DeleteCats(colCats);
    RefreshAll(cSchedMan);
}

} // namespace ravlo
