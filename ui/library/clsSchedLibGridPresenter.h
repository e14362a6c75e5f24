// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/EarlierRows.h"
#include "ui/library/LibraryContents.h"
#include "ui/library/NextToPlay.h"
#include "ui/library/RecentPlays.h"
#include "ui/library/RowBeginnings.h"
#include "ui/library/ViewOrder.h"
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

// The library window's grid: columns and their saved layout, rows, selection commands and the rules of
// re-ordering. Rows refer to the cuts that the node had when it was shown; a cut's texts are read when they
// are painted. A row is one that is shown; a listed row is one of the node, in schedule order.
class clsSchedLibGridPresenter
{
public:
    // Owns neither view nor module.
    clsSchedLibGridPresenter(clsSchedLibGridView& cView, ModScheduler& cMod) : m_cView(cView), m_cMod(cMod) {}

    // Moves the selected rows in front of that row, or after the last one, and shows them again.
    std::function<void(std::optional<std::size_t> row)> MoveRequested;
    // Removes the cuts of these rows, the selected ones, from their categories.
    std::function<void(const std::vector<std::size_t>& colRows)> RemovalRequested;
    // Receives why rows are not re-ordered in a view that is sorted or narrowed.
    std::function<void(const std::wstring& sWhy)> ReorderRefused;
    // Sort or narrow the view when a node is shown; called one after the other, before the first row is
    // painted.
    std::vector<std::function<void(ViewOrder& cOrder, const EarlierRows& cEarlier)>> Arrangers;

    // What the column of plays shows.
    RecentPlays& Plays() noexcept { return m_cPlays; }

    // The level or main category shown; null for all audio.
    const std::shared_ptr<clsCat>& CurrentCatViewing() const noexcept { return m_cCurrentCat; }
    void SetCurrentCatViewing(std::shared_ptr<clsCat> cCat) noexcept { m_cCurrentCat = std::move(cCat); }
    // No re-ordering: the rows are not those of one level.
    bool BanOLEDrop() const noexcept { return m_bBanOLEDrop; }
    void SetBanOLEDrop(bool bBan) noexcept { m_bBanOLEDrop = bBan; }

    // Makes the columns and lays them out as they were saved.
    void TakeGrid();
    // Saves the layout.
    void LetGoOfGrid();

    // ---- rows, from 0

    // Shows these cuts in place of those before; nothing is selected.
    void Show(ListedCuts listed);
    void Clear() { Show({}); }
    std::size_t RowCount() const noexcept { return m_order.Count(); }
    const std::shared_ptr<Cut>& CutAt(std::size_t row) const { return ListedCut(ListedRow(row)); }
    // Asks the cut for its key only in the listing of all audio.
    TextKey KeyAt(std::size_t row) const;
    // The level a row's cut was listed from; null in the listing of all audio.
    std::shared_ptr<clsCat> LevelAt(std::size_t row) const;
    // Of a column of the list. Empty for a cut that throws, since this is called while painting.
    std::wstring CellText(std::size_t row, std::size_t column) const;
    // The first row from start on, and then from the top, whose artist begins with the text; when no artist
    // does, whose title does. Without regard to case and accents.
    std::optional<std::size_t> FindRow(const std::wstring& sBeginning, std::size_t start) const;

    // ---- which listed rows are shown, and in which order

    const ViewOrder& Order() const noexcept { return m_order; }
    std::size_t ListedRow(std::size_t row) const { return m_order.Listed(row); }
    std::size_t ListedCount() const noexcept { return m_order.ListedCount(); }
    const std::shared_ptr<Cut>& ListedCut(std::size_t listed) const { return m_listed.colCuts[listed]; }
    // What a listed cut is sorted by in a column; the same as an empty text for a cut that throws.
    SortValue SortValueOf(std::size_t listed, std::size_t column) const;
    const ListedCuts& Listing() const noexcept { return m_listed; }
    // Sorts or narrows the view, or undoes that. Rows that are still shown stay selected, and the current one
    // stays in sight. When the whole list is shown again and nothing else was made current, its place is the
    // one it had before it was narrowed; rows that were hidden are selected again, unless the user has
    // selected something else since.
    void Rearrange(const std::function<void(ViewOrder& cOrder)>& change);
    // Call with true while rows are still to be added to a narrowed view. ReturnTo is repeated once they are
    // there, unless the user has selected something else since.
    void SetIncomplete(bool bIncomplete);

    // ---- selection

    // The current row from 1, 0 for none.
    std::int32_t CurrentRow() const;
    std::vector<std::size_t> SelectedRows() const { return m_cView.SelectedRows(); }
    // The cuts of the selected rows, in row order.
    Cuts colSelCuts() const;
    // The levels that contain the cuts of the selected rows, each once, and a level in no category for cuts
    // that no level contains.
    Cats colSubCatsDraggedFrom(const clsSchedMan& cSchedMan) const;
    void SelectAll() { m_cView.SelectAll(true); }
    void SelectNone() { m_cView.SelectAll(false); }
    void InvertSelection();
    // Selects the current row alone, or the first one when there is none.
    void SelectCurrentRow();

    // Identifies a row when the same node is listed again: a cut and its level, since several levels of a
    // main category may contain one cut.
    struct RowOfCut
    {
        std::shared_ptr<Cut> cCut;
        std::int32_t lLevel = 0; // 0 in the listing of all audio
        std::size_t row = 0;     // at that time
    };
    // Selection and scroll position, kept when the same node is shown again.
    struct Place
    {
        std::vector<RowOfCut> colSelected; // in row order
        std::optional<RowOfCut> current;
        RowOfCut top;
        bool bAtTop = true; // the first row is at the top, and stays there
    };
    Place CurrentPlace() const;
    void ReturnTo(const Place& place);
    // Selects the first row of a cut alone and scrolls it into view; false when no row has it.
    bool GoToCut(const TextKey& cKey);

    // Shows the rows of these cuts pale.
    void ShowPale(KeySet colKeys);
    bool ShowsPale() const noexcept { return !m_colPale.empty(); }
    // Asks a cut for its key only where KeyAt does. Throws nothing, since this is called while painting.
    bool IsPale(std::size_t row) const;

    // ---- what the user does

    // Handles a drop on a row, or after the last one. Shows why when it is refused.
    void Drop(const std::wstring& sPayload, std::optional<std::size_t> row);
    // Shows that the dropped data did not come from this grid.
    void RefuseSource() const;
    // Moves the selected rows down by so many rows, or up for a negative number, at most to the end; under
    // the rules of a drop.
    void MoveSelected(std::ptrdiff_t steps);
    // Calls move, which moves the selected rows next to each other, if they may be moved, and makes them
    // visible. The rows need not be adjacent.
    void MoveTogether(const std::function<void()>& move);
    // Whether the selected rows may be moved next to each other; says why when they may not.
    bool MayMoveTogether() const { return MayMove(SelectedRows()); }
    // Begins and ends a drag of the selected rows; false when there are none.
    bool StartDrag();
    void EndDrag() { m_colDragged.clear(); }
    // How many cuts are dragged, for the user.
    std::wstring DraggedText() const;
    // Whether a drop there would move the dragged rows; otherwise no insertion line is shown.
    bool DropWouldMove(std::optional<std::size_t> row) const;
    // Requests the removal of the selected rows; shows a box when there are none.
    void RemoveSelectedFromCategory();
    // The present position, from 1, in the shown level at which rows moved in front of that row will be.
    std::int32_t PositionInto(std::optional<std::size_t> row) const;

private:
    bool MayReorder(const std::vector<std::size_t>& colRows) const;
    bool MayMove(const std::vector<std::size_t>& colRows) const;
    void MoveAndShow(const std::vector<std::size_t>& colRows, const std::function<void()>& move);
    void MoveRows(const std::vector<std::size_t>& colRows, std::optional<std::size_t> row);
    template <class Use> auto WithCut(std::size_t listed, std::size_t column, Use&& use) const;
    RowOfCut RowOf(std::size_t row) const;
    std::vector<std::optional<std::size_t>> FindRows(const std::vector<RowOfCut>& colWanted) const;
    std::vector<bool> SelectedListed() const;
    std::vector<bool> SelectListed(const std::vector<bool>& bListed);
    std::vector<bool> RememberHidden(bool bWasNarrowed);
    std::optional<std::size_t> RowOfListed(std::size_t listed) const;
    bool ShowsSchedule() const;
    Place PlaceOnScreen() const;
    void Seek(const Place& place);

    clsSchedLibGridView& m_cView;
    ModScheduler& m_cMod;
    std::shared_ptr<clsCat> m_cCurrentCat;
    bool m_bBanOLEDrop = false;
    ListedCuts m_listed;
    mutable NextToPlay m_cNext; // read while painting, as are the plays
    mutable RecentPlays m_cPlays{m_cMod};
    ViewOrder m_order;
    mutable RowBeginnings m_cBeginnings; // read while the user types
    // Of the whole list, while it is narrowed.
    struct Hidden
    {
        Place place;                 // without the selection
        std::vector<bool> bSelected; // by listed row; none when other cuts were listed since
        std::vector<bool> bLeft;     // those of them that were shown last
    };
    std::optional<Hidden> m_hidden;
    // The place that an incomplete view could return to only in part.
    struct Sought
    {
        Place place;
        std::vector<bool> bSelected; // by listed row, since then
    };
    std::optional<Sought> m_sought;
    bool m_bIncomplete = false;
    KeySet m_colPale;
    std::vector<std::size_t> m_colDragged; // reading the selection at each move of the mouse costs too much
};

} // namespace ravlo
