// SPDX-License-Identifier: MIT
#include "host/client/KeysWindow.h"

#include "platform/windows/CentredDialog.h"

#include <commctrl.h>
#include <cstddef>
#include <string>

namespace ravlo
{

namespace
{

constexpr KeyHelp colKeys[] = {
    {L"Everywhere", nullptr},
    {L"Ctrl+Z, Ctrl+Y", L"undo and redo the last change of orders, levels or categories"},
    {L"Ctrl+F, Ctrl+Shift+F", L"find in the list or tree; in the tree from anywhere"},
    {L"Esc", L"close the find bar and show everything again; end a drag"},
    {L"Ctrl+S", L"save every order once more"},
    {L"F6", L"go to the next pane"},
    {L"Alt+F4", L"close the window"},
    {L"Tree", nullptr},
    {L"Enter", L"show the category or level"},
    {L"Space", L"tick or untick it"},
    {L"F2", L"rename the category"},
    {L"Ctrl+V", L"put what was copied or cut in the list into it"},
    {L"Right click, Shift+F10", L"the menu of the categories"},
    {L"List", nullptr},
    {L"Enter", L"edit the cut"},
    {L"Delete", L"take the selected cuts out of the level"},
    {L"Alt+Up, Alt+Down", L"move them up or down"},
    {L"Alt+Home, Alt+End", L"move them to the top or bottom of the level"},
    {L"Ctrl+A", L"select all"},
    {L"Ctrl+C, Ctrl+X", L"copy or cut them, to be put into a category with Ctrl+V in the tree"},
    {L"Letters", L"go to the next cut whose artist begins with them"},
    {L"Right click, Shift+F10", L"the menu of the cuts"},
    {L"Mouse", nullptr},
    {L"Double-click", L"show a node of the tree; edit a cut of the list"},
    {L"Drag in the list", L"put cuts of a level into another place of its order"},
    {L"Drag to the tree", L"put cuts into a category or level"},
    {L"Click on a heading", L"sort the list by that column; again: reversed, then in schedule order"},
    {L"Right click on a heading", L"choose the columns"},
};

UINT DpiOf(HWND hDialog)
{
    const HDC hDC = ::GetDC(hDialog);
    const int lDpi = ::GetDeviceCaps(hDC, LOGPIXELSX);
    ::ReleaseDC(hDialog, hDC);
    return static_cast<UINT>(lDpi);
}

HFONT BoldOf(HFONT hFont)
{
    LOGFONTW font{};
    ::GetObjectW(hFont, sizeof font, &font);
    font.lfWeight = FW_BOLD;
    return ::CreateFontIndirectW(&font);
}

void AddColumn(HWND hList, int lAt, const wchar_t* sHeading, int lWidth)
{
    std::wstring sText = sHeading;
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = lWidth;
    column.pszText = sText.data();
    ::SendMessageW(hList, LVM_INSERTCOLUMNW, static_cast<WPARAM>(lAt), reinterpret_cast<LPARAM>(&column));
}

void SetCell(HWND hList, UINT lMessage, int lRow, int lColumn, const std::wstring& sCell)
{
    std::wstring sText = sCell;
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = lRow;
    item.iSubItem = lColumn;
    item.pszText = sText.data();
    ::SendMessageW(hList, lMessage, static_cast<WPARAM>(lRow), reinterpret_cast<LPARAM>(&item));
}

void Fill(HWND hDialog)
{
    const HWND hList = ::GetDlgItem(hDialog, lKeysList);
    ::SendMessageW(hList, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    RECT client{};
    ::GetClientRect(hList, &client);
    const int lKey = ::MulDiv(168, static_cast<int>(DpiOf(hDialog)), 96);
    const int lBar = ::GetSystemMetrics(SM_CXVSCROLL);
    AddColumn(hList, 0, L"Key or mouse", lKey);
    AddColumn(hList, 1, L"What it does", static_cast<int>(client.right) - lKey - lBar);
    int lRow = 0;
    for (const KeyHelp& key : colKeys)
    {
        // Keys are indented below their heading.
        SetCell(hList, LVM_INSERTITEMW, lRow, 0, (key.sMeaning ? L"   " : L"") + std::wstring(key.sKey));
        if (key.sMeaning)
            SetCell(hList, LVM_SETITEMTEXTW, lRow, 1, key.sMeaning);
        ++lRow;
    }
    LVITEMW first{};
    first.state = first.stateMask = LVIS_FOCUSED;
    ::SendMessageW(hList, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&first));
}

// What the dialog needs while it is open.
struct Opened
{
    HWND hOwner;
    HFONT hBold = nullptr;
};

// Headings are bold.
LRESULT OnCustomDraw(const NMLVCUSTOMDRAW& draw, HFONT hBold)
{
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || draw.nmcd.dwItemSpec >= std::size(colKeys) ||
        colKeys[draw.nmcd.dwItemSpec].sMeaning)
        return CDRF_DODEFAULT;
    ::SelectObject(draw.nmcd.hdc, hBold);
    return CDRF_NEWFONT;
}

INT_PTR CALLBACK OnKeysMessage(HWND hDialog, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    auto* const pOpened = reinterpret_cast<Opened*>(::GetWindowLongPtrW(hDialog, DWLP_USER));
    switch (lMessage)
    {
    case WM_INITDIALOG:
    {
        ::SetWindowLongPtrW(hDialog, DWLP_USER, lParam);
        auto& opened = *reinterpret_cast<Opened*>(lParam);
        opened.hBold = BoldOf(reinterpret_cast<HFONT>(::SendMessageW(hDialog, WM_GETFONT, 0, 0)));
        Fill(hDialog);
        CentreDialog(hDialog, opened.hOwner);
        return TRUE;
    }
    case WM_NOTIFY:
        if (const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
            pOpened && header.idFrom == lKeysList && header.code == NM_CUSTOMDRAW)
        {
            ::SetWindowLongPtrW(
                hDialog, DWLP_MSGRESULT,
                OnCustomDraw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header), pOpened->hBold));
            return TRUE;
        }
        return FALSE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)
            ::EndDialog(hDialog, LOWORD(wParam));
        return TRUE;
    case WM_DESTROY:
        if (pOpened)
            ::DeleteObject(pOpened->hBold);
        return FALSE;
    default:
        return FALSE;
    }
}

} // namespace

std::span<const KeyHelp> KeysAndMouse() { return colKeys; }

void ShowKeysAndMouse(HWND hOwner)
{
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
    ::InitCommonControlsEx(&controls);
    Opened opened{hOwner};
    ::DialogBoxParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(lKeysDialog), hOwner, OnKeysMessage,
                      reinterpret_cast<LPARAM>(&opened));
}

} // namespace ravlo
