// SPDX-License-Identifier: MIT
#pragma once

#include "support/SchedulerTest.h"
#include "ui/library/frmUILibPresenter.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo::test
{

using Rows = std::vector<std::size_t>;
using Items = std::vector<std::wstring>;

inline std::wstring RootKey() { return CategoryKey(sAllAudio, 0); }

// A tree on a fake screen.
class FakeTreeView final : public CategoryTreeView
{
public:
    int lShown = 0;
    int lImages = 0;
    std::vector<bool> bChecked; // as on the screen, by node
    std::vector<CategoryTreePresenter::Node> colExpanded;
    std::vector<CategoryTreePresenter::Node> colBrought; // into view
    std::optional<CategoryTreePresenter::Node> lSelected;

    void ShowTree(const CategoryTreePresenter& cTree) override
    {
        ++lShown;
        lSelected.reset();
        colExpanded.clear();
        bChecked.assign(cTree.Count(), false);
    }
    void ShowChecks(const CategoryTreePresenter& cTree,
                    const std::vector<CategoryTreePresenter::Node>& colNodes) override
    {
        for (const CategoryTreePresenter::Node lNode : colNodes)
            bChecked[lNode] = cTree.At(lNode).bChecked;
    }
    std::optional<CategoryTreePresenter::Node> edited;
    bool EditText(CategoryTreePresenter::Node lNode) override
    {
        edited = lNode;
        return true;
    }
    int lCounted = 0;
    void ShowCounts() override { ++lCounted; }
    void ShowImages() override { ++lImages; }
    void Expand(CategoryTreePresenter::Node lNode) override { colExpanded.push_back(lNode); }
    void Select(CategoryTreePresenter::Node lNode) override { lSelected = lNode; }
    void BringIntoView(CategoryTreePresenter::Node lNode) override { colBrought.push_back(lNode); }
    std::optional<CategoryTreePresenter::Node> Selected() const override { return lSelected; }
};

inline Lines MenuTexts(const PopUpMenu& menu, const std::wstring& sIndent = L"")
{
    Lines colTexts;
    for (const PopUpItem& item : menu)
    {
        colTexts.push_back(sIndent + (item.bEnabled ? L"" : L"-") + (item.bChecked ? L"*" : L"") +
                           item.sCaption);
        for (const std::wstring& sBelow : MenuTexts(item.colItems, sIndent + L" "))
            colTexts.push_back(sBelow);
    }
    return colTexts;
}
// Null for one that is not there, or grey.
inline const PopUpItem* Item(const PopUpMenu& menu, const std::wstring& sPath)
{
    const std::size_t end = std::min(sPath.find(L'>'), sPath.size());
    for (const PopUpItem& item : menu)
        if (item.sCaption == sPath.substr(0, end) && item.bEnabled)
            return end == sPath.size() ? &item : Item(item.colItems, sPath.substr(end + 1));
    return nullptr;
}

// A list on a fake screen.
class FakeGridView final : public clsSchedLibGridView
{
public:
    std::vector<std::wstring> colHeaders;
    ColumnLayout layout;
    std::vector<bool> bSelected;
    std::optional<std::size_t> current;
    std::size_t top = 0;
    Rows colEnsured; // made visible
    std::vector<bool> bRedraws;
    int lFilled = 0;
    std::function<void()> OnSelectedRows;
    Lines colMenu; // as shown last: "-" grey, "*" ticked, what is below an item indented
    std::wstring sSortMark;
    std::wstring sChosen; // of the menus: the captions down to the item, joined with ">"; empty: dismissed

    void SetRedraw(bool bRedraw) override { bRedraws.push_back(bRedraw); }
    void Repaint() override {}
    std::size_t ColCount() const override { return colHeaders.size(); }
    void AddCol(const std::wstring& sHeader) override { colHeaders.push_back(sHeader); }
    void ShowLayout(const ColumnLayout& shown) override { layout = shown; }
    ColumnLayout Layout() const override { return layout; }
    void ShowSortMark(std::optional<std::size_t> column, bool bDescending) override
    {
        sSortMark =
            column ? std::wstring(ListColumnAt(*column).sHeader) + (bDescending ? L" down" : L" up") : L"";
    }
    void SetRowCount(std::size_t rows) override
    {
        ++lFilled;
        bSelected.assign(rows, false);
        current.reset();
        top = 0;
    }
    void SelectAll(bool bSelect) override { bSelected.assign(bSelected.size(), bSelect); }
    void SetSelection(const std::vector<bool>& bRows) override { bSelected = bRows; }
    Rows SelectedRows() const override
    {
        if (OnSelectedRows)
            OnSelectedRows();
        Rows colRows;
        for (std::size_t row = 0; row < bSelected.size(); ++row)
            if (bSelected[row])
                colRows.push_back(row);
        return colRows;
    }
    std::optional<std::size_t> CurrentRow() const override { return current; }
    void SetCurrentRow(std::size_t row) override { current = row; }
    std::size_t TopRow() const override { return top; }
    void SetTopRow(std::size_t row) override { top = row; }
    void EnsureVisible(std::size_t row) override { colEnsured.push_back(row); }
    const PopUpItem* ChooseFromMenu(const PopUpMenu& menu) override
    {
        colMenu = MenuTexts(menu);
        return sChosen.empty() ? nullptr : Item(menu, sChosen);
    }

    void Select(const Rows& colRows)
    {
        SelectAll(false);
        for (const std::size_t row : colRows)
            bSelected[row] = true;
    }
};

// A find bar on a fake screen.
class FakeFindBar final : public FindBarView
{
public:
    bool bShown = false;
    std::wstring sQuery;
    std::wstring sCount;
    Lines colFocused; // "query" and "list", in order
    int lSteps = 0;   // asked for and not run yet

    void ShowBar(bool bShow) override { bShown = bShow; }
    void SetQuery(const std::wstring& sText) override { sQuery = sText; }
    void SetCount(const std::wstring& sText) override { sCount = sText; }
    void FocusQuery() override { colFocused.push_back(L"query"); }
    void FocusList() override { colFocused.push_back(L"list"); }
    void AskForStep() override { lSteps = 1; }
};

// The window: records what it shows, and chooses from its pop-ups the given items.
class FakeLibraryView final : public frmUILibView
{
public:
    Lines colStatus; // "first|second"
    std::vector<bool> bBusy;
    std::vector<Items> colPopUps;
    std::deque<std::optional<std::size_t>> colChoices; // none: dismissed
    std::optional<std::int32_t> lBarMax;               // while the bar shows
    std::int32_t lBar = 0;
    int lFront = 0;
    int lClosed = 0;
    int lAskedFor = 0; // refreshes
    std::function<void()> OnModal;
    std::function<void()> OnPopUp;

    void SetBusy(bool bBusyNow) override { bBusy.push_back(bBusyNow); }
    void SetStatus(const std::wstring& sFirst, const std::wstring& sSecond) override
    {
        colStatus.push_back(sFirst + L"|" + sSecond);
    }
    std::wstring sResult;
    bool bSelectionAsked = false;
    void SetResult(const std::wstring& sNow) override { sResult = sNow; }
    void AskForSelection() override { bSelectionAsked = true; }
    bool bSortingAsked = false;
    void AskForSorting() override { bSortingAsked = true; }
    void ShowProgress(std::int32_t lMax) override
    {
        lBarMax = lMax;
        lBar = 0;
    }
    void MoveProgress(std::int32_t lValue) override { lBar = lValue; }
    void HideProgress() override { lBarMax.reset(); }
    std::optional<std::size_t> PopUp(const Items& colItems) override
    {
        colPopUps.push_back(colItems);
        if (OnPopUp)
            OnPopUp();
        if (colChoices.empty())
            return std::nullopt;
        const std::optional<std::size_t> item = colChoices.front();
        colChoices.pop_front();
        return item;
    }
    void ShowModal() override
    {
        if (OnModal)
            OnModal();
    }
    void BringToFront() override { ++lFront; }
    int lFocused = 0; // the cuts
    void FocusCuts() override { ++lFocused; }
    void Close() override { ++lClosed; }
    void AskForRefresh() override { ++lAskedFor; }

    bool Busy() const { return !bBusy.empty() && bBusy.back(); }
};

// A station with a library window on a fake screen. Files are empty until Show.
struct ScreenLibrary
{
    // bFreshObjects: the database hands out another object for the same cut each time.
    explicit ScreenLibrary(bool bFreshObjects = false)
    {
        cLibrary.cDataBase->bFreshObjects = bFreshObjects;
        cForm.SetSchedMan(cLibrary.cSchedMan);
    }

    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategories,
                                 std::int32_t lLevel)
    {
        return cLibrary.cDataBase->Add(sKey, sCategories, lLevel);
    }
    // Chooses from the headings' menu.
    void ChooseFromHeadings(const std::wstring& sPath)
    {
        cGridView.sChosen = sPath;
        cForm.Headings().ShowMenu();
    }
    // And from that of the cuts, for these rows.
    void ChooseFromCuts(const Rows& colRows, const std::wstring& sPath)
    {
        cGridView.Select(colRows);
        cGridView.sChosen = sPath;
        cForm.CutItems().ShowMenu();
    }
    // Populates the station and shows the window.
    void Show()
    {
        cLibrary.Populate();
        cForm.Opened();
        cForm.ShowModalUI();
        cView.bBusy.clear();
    }
    CategoryTreePresenter::Node Node(const std::wstring& sName, std::int32_t lLevel) const
    {
        return Tree().Find(CategoryKey(sName, lLevel)).value();
    }
    bool InTree(const std::wstring& sKey) const { return Tree().Find(sKey).has_value(); }
    void SelectNode(const std::wstring& sName, std::int32_t lLevel) { cTreeView.Select(Node(sName, lLevel)); }
    std::wstring SelectedNode() const
    {
        return cTreeView.lSelected ? Tree().At(*cTreeView.lSelected).sKey : L"";
    }
    void ShowNode(const std::wstring& sName, std::int32_t lLevel)
    {
        SelectNode(sName, lLevel);
        cForm.Panes().ShowSelectedNode();
    }
    // A drag of the selected rows, until it is completed.
    void StartDrag() { ASSERT_TRUE(CutActions().DragStarted()); }
    void StartDrag(const Rows& colRows)
    {
        cGridView.Select(colRows);
        StartDrag();
    }
    void GiveUpDrag() { CutActions().DragCompleted(std::nullopt); }
    void DropOnNode(const std::wstring& sName, std::int32_t lLevel)
    {
        StartDrag();
        CutActions().DragCompleted(
            LibraryCuts::Drop{true, CategoryKey(sName, lLevel), std::nullopt, sGridPayload});
    }
    void DropOnRow(std::optional<std::size_t> row)
    {
        StartDrag();
        CutActions().DragCompleted(LibraryCuts::Drop{false, L"", row, sGridPayload});
    }
    void Remove(const Rows& colRows)
    {
        cGridView.Select(colRows);
        CutActions().GridDelete();
    }
    Keys RowKeys()
    {
        Keys colKeys;
        for (std::size_t row = 0; row < Grid().RowCount(); ++row)
            colKeys.push_back(Grid().CutAt(row)->Key().Text());
        return colKeys;
    }
    Keys SelectedKeys()
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : Grid().colSelCuts())
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }
    FakeCut& CutInRow(std::size_t row) { return dynamic_cast<FakeCut&>(*Grid().CutAt(row)); }
    void Announce(void (DataBaseEvents::*announce)(const Cuts&), const std::shared_ptr<Cut>& cCut)
    {
        cLibrary.cDataBase->Announce(announce, Cuts{cCut});
    }
    Boxes& Shown() { return cPorts.cMessages.Boxes; }
    clsSchedLibGridPresenter& Grid() { return cForm.Grid(); }
    const CategoryTreePresenter& Tree() const { return cForm.Tree(); }
    LibraryCuts& CutActions() { return cForm.Cuts(); }
    clsSchedMan& Man() { return *cLibrary.cSchedMan; }
    FakeDataBase& DataBase() { return *cLibrary.cDataBase; }
    Keys Order(const std::wstring& sName, std::int32_t lLevel) const { return cLibrary.Order(sName, lLevel); }
    // In level 1 of Rock and of Jazz.
    void ExpectOrders(const Keys& colRock, const Keys& colJazz) const
    {
        EXPECT_EQ(Order(L"Rock", 1), colRock);
        EXPECT_EQ(Order(L"Jazz", 1), colJazz);
    }
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const { return cLibrary.MainCat(sName); }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel) const
    {
        return cLibrary.Level(sName, lLevel);
    }
    void Answers(std::deque<BoxAnswer> colAnswers) { cPorts.cMessages.Answers = std::move(colAnswers); }
    Lines& Said() { return cLibrary.cHost.colSaid; }
    bool SifSaved(const std::wstring& sName) { return cPorts.cFiles.FileExists(SifPath(sName)); }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    FakeLibraryView cView;
    FakeTreeView cTreeView;
    FakeGridView cGridView;
    FakeFindBar cCutsBar;
    FakeFindBar cCategoriesBar;
    frmUILibPresenter cForm{cView, cTreeView, cGridView, {cCutsBar, cCategoriesBar}, cLibrary.cMod};
};

// A host's database may hand out another object for the same cut each time: every test runs with both kinds.
class ScreenLibraryTest : public testing::TestWithParam<bool>, protected ScreenLibrary
{
protected:
    ScreenLibraryTest() : ScreenLibrary(GetParam()) {}
    ~ScreenLibraryTest() override { cLibrary.cHost.OnEvent = nullptr; }
};
inline std::string ObjectsOf(const testing::TestParamInfo<bool>& param)
{
    return param.param ? "Fresh" : "Same";
}

} // namespace ravlo::test
