// SPDX-License-Identifier: MIT
#pragma once

#include "ui/health/SortedTable.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

// A sorted table on the system's list view, which asks for texts when it paints: so a level of thousands of
// cuts is shown at once.
class TableWindow
{
public:
    // sName: for screen readers. The table outlives this.
    TableWindow(HWND hParent, int lId, const std::wstring& sName, const SortedTable& table);
    TableWindow(const TableWindow&) = delete;
    TableWindow& operator=(const TableWindow&) = delete;

    HWND Handle() const noexcept { return m_hList; }
    void SetLook(HFONT hFont, int lDpi);
    // A column takes the room that the others leave, but no less than its own width, until the user sizes it.
    // Call when the list has got another size; always with the same column.
    void FillRoom(std::size_t position);
    // Symbols in front of the first column, by SymbolOf; not owned.
    void SetSymbols(HIMAGELIST hSymbols, std::function<int(std::size_t item)> SymbolOf);

    // The table's rows, or their order, have changed: none is selected afterwards.
    void ShowRows();
    // Selects one row, or none, and scrolls it into view.
    void Select(std::optional<std::size_t> row);
    std::optional<std::size_t> Selected() const;

    // Answers the list's own messages; nothing for those that its parent is to handle.
    std::optional<LRESULT> OnNotify(const NMHDR& header, LPARAM lParam);
    // The row that a notification says is selected now; nothing when it says something else, or while this
    // selects it.
    std::optional<std::size_t> RowSelectedIn(const NMHDR& header, LPARAM lParam) const;

private:
    LRESULT Send(UINT lMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::SendMessageW(m_hList, lMessage, wParam, lParam);
    }
    int WidthOf(std::size_t position) const { return static_cast<int>(Send(LVM_GETCOLUMNWIDTH, position)); }
    void SetState(int row, UINT lState, UINT lMask) const;
    void OnGetDispInfo(NMLVDISPINFOW& info) const;
    LRESULT OnFind(const NMLVFINDITEMW& find) const;
    LRESULT OnCustomDraw(NMLVCUSTOMDRAW& draw) const;
    void ShowSortMark() const;

    const SortedTable& m_table;
    HWND m_hList;
    int m_lDpi = 0;
    int m_lFilled = 0; // the width that FillRoom has set
    std::function<int(std::size_t item)> m_SymbolOf;
    bool m_bSelecting = false;
};

} // namespace ravlo
