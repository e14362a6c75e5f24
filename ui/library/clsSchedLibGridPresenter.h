// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/LibraryTargets.h"
#include "ui/library/clsSchedLibGridView.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// What a drag out of the grid carries as text; the cuts themselves are read from the grid.
inline constexpr const wchar_t* sGridPayload = L"Scheduler Grid";

// The library window's grid: its columns and their persistence, its rows, the selection commands and
// re-ordering by drag and drop. A row is a shared cut reference of the moment the node was shown; its texts
// are asked of the cut when they are painted.
class clsSchedLibGridPresenter final : public CutGrid
{
public:
    // Owns neither view nor module.
    clsSchedLibGridPresenter(clsSchedLibGridView& cView, ModScheduler& cMod) : m_cView(cView), m_cMod(cMod) {}

    // Raised before and after a drop inside the grid, and for the Delete key with the rows selected.
    std::function<void()> OLEDragDropOperationStarted;
    std::function<void()> OLEDragCompleted;
    std::function<void(const std::vector<std::size_t>& colRows)> RemovalRequested;

    // The manager is held weakly, so that it can end.
    void SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan) { m_cSchedMan = cSchedMan; }
    std::shared_ptr<clsSchedMan> SchedMan() const { return m_cSchedMan.lock(); }
    std::shared_ptr<ravlo::DataBase> DataBase() const;
    // The level or main category shown; null for all audio.
    const std::shared_ptr<clsCat>& CurrentCatViewing() const noexcept { return m_cCurrentCat; }
    void SetCurrentCatViewing(std::shared_ptr<clsCat> cCat) noexcept { m_cCurrentCat = std::move(cCat); }
    // No re-ordering: the rows are not those of one level.
    bool BanOLEDrop() const noexcept { return m_bBanOLEDrop; }
    void SetBanOLEDrop(bool bBan) noexcept { m_bBanOLEDrop = bBan; }

    // The grid is handed over: its columns are made and laid out as they were left. Letting go of it stores
    // the layout.
    void TakeGrid();
    void LetGoOfGrid();

    // ---- rows, from 0

    std::size_t RowCount() const noexcept { return m_listed.colCuts.size(); }
    const std::shared_ptr<Cut>& CutAt(std::size_t lRow) const { return m_listed.colCuts[lRow]; }
    // The cut's key. Asks the cut only in the listing of all audio.
    TextKey KeyAt(std::size_t lRow) const;
    // The level a row's cut was listed from; null in the listing of all audio.
    std::shared_ptr<clsCat> LevelAt(std::size_t lRow) const;
    // Empty for a cut that cannot tell. Never throws for that: it is asked for while painting.
    std::wstring CellText(std::size_t lRow, std::size_t column) const;
    // The first row at or behind lStart, and then from the top, whose artist begins with the text; when no
    // artist does, whose title does. Without regard to case.
    std::optional<std::size_t> FindRow(const std::wstring& sBeginning, std::size_t start) const;

    // The current row from 1, 0 for none.
    std::int32_t CurrentRow() const;
    std::vector<std::size_t> SelectedRows() const { return m_cView.SelectedRows(); }
    // The cuts of the selected rows, in row order.
    Cuts colSelCuts() const;
    // The levels in which the cuts of the selected rows stand, each once, with a free-standing one for cuts
    // that stand nowhere.
    Cats colSubCatsDraggedFrom() const;
    void SelectAll() { m_cView.SelectAll(true); }
    void SelectNone() { m_cView.SelectAll(false); }
    void InvertSelection();

    // A row to be found again when the same node is listed anew: a cut in a level, since one cut may stand in
    // several levels of a main category.
    struct RowOfCut
    {
        std::shared_ptr<Cut> cCut;
        std::int32_t lLevel = 0; // 0 in the listing of all audio
        std::size_t lRow = 0;    // at that time
    };
    // What the user sees of the rows: kept over showing the same node again.
    struct Place
    {
        std::vector<RowOfCut> colSelected; // in row order
        std::optional<RowOfCut> current;
        RowOfCut top;
        bool bAtTop = true; // the first row is at the top, and stays there
    };
    Place CurrentPlace() const;
    void ReturnTo(const Place& place);

    // ---- what the user does

    // A drop onto a row, or past the last one. Shows why when it is refused.
    void Drop(const std::wstring& sPayload, std::optional<std::size_t> lRow);
    // Says that what was dropped did not come from this grid.
    void RefuseSource() const;
    // Moves the selected rows down by so many places, or up for a negative number, as far as there are rows;
    // under the rules of a drop.
    void MoveSelected(std::ptrdiff_t steps);
    // A drag of the selected rows begins, if there are any, and ends.
    bool StartDrag();
    void EndDrag() { m_colDragged.clear(); }
    // Whether a drop of the rows that are dragged would change anything there: where it would not, no
    // insertion line is shown.
    bool DropWouldMove(std::optional<std::size_t> lRow) const;
    void RemoveSelectedFromCategory();

    // CutGrid.
    void SetRedraw(bool bRedraw) override { m_cView.SetRedraw(bRedraw); }
    std::size_t ColCount() const override { return m_cView.ColCount(); }
    void AddCol(const std::wstring&, const std::wstring& sHeader) override { m_cView.AddCol(sHeader); }
    void Clear() override { TakeRows({}); }
    void TakeRows(ListedCuts listed) override;

private:
    bool MayReorder(const std::vector<std::size_t>& colRows) const;
    void MoveRows(const std::vector<std::size_t>& colRows, std::optional<std::size_t> lRow);
    std::int32_t PositionInto(std::optional<std::size_t> lRow) const;
    RowOfCut RowOf(std::size_t lRow) const;
    std::vector<std::optional<std::size_t>> FindRows(const std::vector<RowOfCut>& colWanted) const;

    clsSchedLibGridView& m_cView;
    ModScheduler& m_cMod;
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    std::shared_ptr<clsCat> m_cCurrentCat;
    bool m_bBanOLEDrop = false;
    ListedCuts m_listed;
    std::vector<std::size_t> m_colDragged; // a look at the selection costs too much at each move of the mouse
};

} // namespace ravlo
