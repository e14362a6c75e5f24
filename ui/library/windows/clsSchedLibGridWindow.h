// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/WindowSubclass.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

inline int AsRow(std::size_t row) { return static_cast<int>(row); }

// iGridLib: the cut grid on the system's list view, in its form without rows of its own.
class clsSchedLibGridWindow final : public clsSchedLibGridView
{
public:
    clsSchedLibGridWindow(HWND hParent, int lId);
    clsSchedLibGridWindow(const clsSchedLibGridWindow&) = delete;
    clsSchedLibGridWindow& operator=(const clsSchedLibGridWindow&) = delete;

    HWND Handle() const noexcept { return m_hList; }
    void SetLook(HFONT hFont, int lDpi);

    // Sets where cells are looked up. Not owned.
    void SetRows(const clsSchedLibGridPresenter& cRows) { m_cRows = &cRows; }

    // ---- clsSchedLibGridView
    void SetRedraw(bool bRedraw) override;
    void Repaint() override { ::InvalidateRect(m_hList, nullptr, TRUE); }
    std::size_t ColCount() const override;
    void AddCol(const std::wstring& sHeader) override;
    void ShowLayout(const ColumnLayout& layout) override;
    ColumnLayout Layout() const override;
    void ShowSortMark(std::optional<std::size_t> column, bool bDescending) override;
    void SetRowCount(std::size_t rows) override;
    void SelectAll(bool bSelect) override;
    void SetSelection(const std::vector<bool>& bSelected) override;
    std::vector<std::size_t> SelectedRows() const override;
    std::optional<std::size_t> CurrentRow() const override;
    void SetCurrentRow(std::size_t row) override;
    std::size_t TopRow() const override;
    void SetTopRow(std::size_t row) override;
    void EnsureVisible(std::size_t row) override;
    const PopUpItem* ChooseFromMenu(const PopUpMenu& menu) override;

    // ---- for the window's messages

    // Keeps where a menu was asked for: at that screen point, or at (-1, -1) by the keyboard, which means
    // below the current row. Returns whether it is the headings' menu.
    bool TakeMenuPoint(HWND hControl, POINT onScreen);
    // Answers the list's requests for painting and searching.
    LRESULT OnGetDispInfo(NMLVDISPINFOW& info) const;
    LRESULT OnFindItem(const NMLVFINDITEMW& find);
    LRESULT OnCustomDraw(NMLVCUSTOMDRAW& draw) const;
    // The grid's column with that number in the list, which is what it reports of its headings.
    std::size_t GridColumnOf(int listColumn) const;
    // The list has got the focus: a row shows it.
    void OnFocus();
    // A press on a row has become a drag: the selection stays when the button is released.
    void OnBeginDrag() noexcept { m_lPressed.reset(); }

    // The row, from 0, in front of which a drop at that screen point inserts: the first one above the rows,
    // none below the last one.
    std::optional<std::size_t> DropRow(POINT onScreen) const;
    // During a drag: the line at which the rows would be inserted (one past the last row: below it), or none.
    void ShowInsertionLine(std::optional<std::size_t> before);
    // Scrolls near the edges. True when it did: other rows are below the pointer now.
    bool DragTick(POINT onScreen);

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam);
    LRESULT OnKey(WPARAM wParam, LPARAM lParam);
    void BeforePress(WPARAM lKeys, POINT at);
    void BeforeRelease(WPARAM lKeys);
    LRESULT WithoutPainting(UINT lMessage, WPARAM wParam, LPARAM lParam);
    bool ManySelected() const;
    void ForgetSelection();
    void KeepColumnVisible(int listColumn);
    LRESULT Send(UINT lMessage, WPARAM wParam = 0, LPARAM lParam = 0) const;
    void SetState(int row, UINT lState, UINT lMask);
    std::size_t RowCount() const;
    std::size_t NumberInList(std::size_t column) const; // its number in the list
    std::vector<std::size_t> PresentColumns() const;
    void InsertColumn(std::size_t listColumn, const std::wstring& sHeader) const;
    void AlignColumn(std::size_t gridColumn) const;
    void MarkHeading(std::size_t gridColumn) const;
    void MakeFurtherColumns();
    // In pixels, from the layout. A column of numbers that nobody has sized is at least as wide as they are.
    int ShownWidth(std::size_t column) const;
    int WidthOfNumbers(std::size_t gridColumn) const;
    void ColourRow(NMLVCUSTOMDRAW& draw) const;
    std::optional<RECT> LineAt(std::size_t before) const;
    void InvalidateLine() const;

    HWND m_hList;
    const clsSchedLibGridPresenter* m_cRows = nullptr;
    int m_lDpi = 96;
    bool m_bPlainHeadings = false; // without a theme
    ColumnLayout m_layout;
    std::vector<std::size_t> m_colFurther; // in the list, after the ten that hosts know
    std::optional<std::size_t> m_sortedBy;
    bool m_bDescending = false;
    POINT m_menuAt{};           // on the screen
    std::size_t m_mostRows = 0; // so far: positions and most identifiers are no longer than this number
    int m_lRedrawOff = 0;
    std::optional<std::size_t> m_toTop; // the row to scroll to as soon as it paints again
    std::optional<std::size_t> m_insertBefore;
    std::optional<int> m_lPressed; // the selected row the left button went down on
    mutable std::wstring m_sCell;  // the text last given to the list
    WindowSubclass m_cSubclass;
};

} // namespace ravlo
