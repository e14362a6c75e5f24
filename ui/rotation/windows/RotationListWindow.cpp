// SPDX-License-Identifier: MIT
#include "ui/rotation/windows/RotationListWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PlaceMemory.h"
#include "ui/rotation/windows/ControlIds.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace ravlo
{

namespace
{

HACCEL Accelerators()
{
    ACCEL keys[] = {{FVIRTKEY | FCONTROL, 'C', eIdListCopy},
                    {FVIRTKEY | FCONTROL, VK_INSERT, eIdListCopy},
                    {FVIRTKEY, VK_F5, eIdListRefresh}};
    return ::CreateAcceleratorTableW(keys, ARRAYSIZE(keys));
}

UniqueFont BoldOf(HFONT hFont)
{
    LOGFONTW font{};
    ::GetObjectW(hFont, sizeof(font), &font);
    font.lfWeight = FW_BOLD;
    return UniqueFont(::CreateFontIndirectW(&font));
}

} // namespace

// ---- making ----

RotationListWindow::RotationListWindow(HWND hOwner, ModScheduler& cMod, ListSource source)
    : Window(sRotationListClass), m_cMod(cMod), m_hAccelerators(Accelerators()),
      m_cPresenter(static_cast<RotationListView&>(*this), std::move(source))
{
    WindowStart start;
    start.lStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME; // as dialogs: without an icon
    start.hParent = hOwner;
    Create(start);
    MakeControls();
    SetLook(DpiOf(Handle()));
}

RotationListWindow::~RotationListWindow()
{
    m_cLoop.reset();
    Destroy();
}

void RotationListWindow::MakeControls()
{
    constexpr DWORD lText = SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL;
    m_hHeading = MakeControl(Handle(), WC_STATICW, L"", lText, eIdListHeading);
    m_hList = MakeControl(Handle(), WC_LISTVIEWW, L"Cuts",
                          WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS |
                              LVS_NOSORTHEADER,
                          eIdRotationList, WS_EX_CLIENTEDGE);
    constexpr DWORD lStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    SendList(LVM_SETEXTENDEDLISTVIEWSTYLE, lStyle, lStyle);
    m_hSentence = MakeControl(Handle(), WC_STATICW, L"", lText, eIdListSentence);
    m_hCopy = MakeControl(Handle(), WC_BUTTONW, L"C&opy", BS_PUSHBUTTON | WS_TABSTOP, eIdListCopy);
    m_hRefresh = MakeControl(Handle(), WC_BUTTONW, L"&Refresh", BS_PUSHBUTTON | WS_TABSTOP, eIdListRefresh);
    m_hClose = MakeControl(Handle(), WC_BUTTONW, L"&Close", BS_DEFPUSHBUTTON | WS_TABSTOP, IDCANCEL);
}

LRESULT RotationListWindow::SendList(UINT lMessage, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessageW(m_hList, lMessage, wParam, lParam);
}

int RotationListWindow::ListColumn(std::size_t column) const
{
    if (column == m_page->nameColumn)
        return 0;
    return static_cast<int>(column == 0 ? m_page->nameColumn : column);
}

void RotationListWindow::MakeColumns(const ListPage& page)
{
    const std::size_t columns = page.columns.size();
    std::vector<int> order;
    for (std::size_t i = 0; i < columns; ++i)
    {
        // ListColumn is its own inverse: the list's column i is the page's column ListColumn(i).
        const ListPage::Column& shown = page.columns[static_cast<std::size_t>(ListColumn(i))];
        std::wstring sHeading = shown.sHeading;
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_FMT | LVCF_SUBITEM;
        column.fmt = shown.bRight ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.iSubItem = static_cast<int>(i);
        column.pszText = sHeading.data();
        SendList(LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
        order.push_back(ListColumn(i));
    }
    SendList(LVM_SETCOLUMNORDERARRAY, columns, reinterpret_cast<LPARAM>(order.data()));
}

// ---- messages ----

LRESULT RotationListWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return 0;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_CLOSE:
        m_cPresenter.CloseClick();
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_GETMINMAXINFO:
        if (m_hFont)
        {
            const SIZE size = WindowSizeFor(Handle(), SmallestClient(), m_lDpi);
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {size.cx, size.cy};
        }
        return 0;
    case WM_DPICHANGED:
        SetLook(HIWORD(wParam));
        TakeSuggestedPlace(Handle(), lParam);
        return 0;
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
        SetLook(m_lDpi); // the message font may have changed
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wParam) != WA_INACTIVE && m_hList)
            ::SetFocus(m_hList);
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(IDCANCEL, DC_HASDEFID);
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void RotationListWindow::OnException() noexcept
{
    m_cMod.ShowCriticalError(L"Error in Rotation List", CurrentError());
}

void RotationListWindow::OnCommand(int lId)
{
    switch (lId)
    {
    case eIdListCopy:
        return m_cPresenter.CopyClick();
    case eIdListRefresh:
        return m_cPresenter.Refresh();
    case IDCANCEL:
        return m_cPresenter.CloseClick();
    default:
        return;
    }
}

LRESULT RotationListWindow::OnNotify(NMHDR& header)
{
    if (header.hwndFrom != m_hList || !m_page)
        return 0;
    switch (header.code)
    {
    case LVN_GETDISPINFOW:
        OnGetDispInfo(reinterpret_cast<NMLVDISPINFOW&>(header));
        return 0;
    case LVN_ITEMCHANGED:
        if (const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
            change.iItem >= 0 && (change.uNewState & LVIS_SELECTED) != 0)
            m_cPresenter.RowChosen(static_cast<std::size_t>(change.iItem));
        return 0;
    case NM_CUSTOMDRAW:
        return OnCustomDraw(reinterpret_cast<NMLVCUSTOMDRAW&>(header));
    default:
        return 0;
    }
}

void RotationListWindow::OnGetDispInfo(NMLVDISPINFOW& info)
{
    const auto row = static_cast<std::size_t>(info.item.iItem);
    if ((info.item.mask & LVIF_TEXT) == 0 || row >= m_page->rows.size())
        return;
    m_sCell = m_page->rows[row]
                  .cells[static_cast<std::size_t>(ListColumn(static_cast<std::size_t>(info.item.iSubItem)))];
    info.item.pszText = m_sCell.data();
}

LRESULT RotationListWindow::OnCustomDraw(NMLVCUSTOMDRAW& draw) const
{
    switch (draw.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        if (draw.nmcd.dwItemSpec >= m_page->rows.size() || !m_page->rows[draw.nmcd.dwItemSpec].bMarked)
            return CDRF_DODEFAULT;
        ::SelectObject(draw.nmcd.hdc, m_hBold.get());
        return CDRF_NEWFONT;
    default:
        return CDRF_DODEFAULT;
    }
}

// ---- sizes and places ----

namespace
{

// Lengths at 96 dpi.
constexpr int lMargin = 11;
constexpr int lGap = 8;
constexpr int lButtonWidth = 84;
constexpr int lButtonPadding = 22;
constexpr int lLowestButton = 24;
constexpr int lSentenceLines = 3;
constexpr int lSmallestList = 96;
constexpr int lFirstWidth = 920;
constexpr int lFirstHeight = 460;

} // namespace

int RotationListWindow::px(int lAt96) const { return Scaled(lAt96, m_lDpi); }

void RotationListWindow::SetLook(int lDpi)
{
    m_lDpi = lDpi;
    UniqueFont hFont = MessageFont(lDpi);
    UniqueFont hBold = BoldOf(hFont.get());
    for (const HWND hControl : {m_hHeading, m_hList, m_hSentence, m_hCopy, m_hRefresh, m_hClose})
        SetFont(hControl, hFont.get());
    m_hFont.swap(hFont);
    m_hBold.swap(hBold);
    LayOut();
    ::RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE RotationListWindow::ButtonSize(HWND hButton) const
{
    const FontContext cContext(Handle(), m_hFont.get());
    const SIZE text = TextSize(cContext.Get(), WindowText(hButton));
    return {std::max<LONG>(px(lButtonWidth), text.cx + px(lButtonPadding)),
            std::max<LONG>(px(lLowestButton), text.cy + px(8))};
}

int RotationListWindow::LineHeight() const
{
    const FontContext cContext(Handle(), m_hFont.get());
    return static_cast<int>(TextSize(cContext.Get(), L"Ag").cy);
}

int RotationListWindow::HeadingHeight(int lWidth) const
{
    const FontContext cContext(Handle(), m_hFont.get());
    return static_cast<int>(
        TextSize(cContext.Get(), WindowText(m_hHeading), lWidth, DT_NOPREFIX | DT_EDITCONTROL).cy);
}

SIZE RotationListWindow::SmallestClient() const
{
    const SIZE button = ButtonSize(m_hRefresh);
    const int lWidth = 4 * static_cast<int>(button.cx) + 2 * px(lMargin);
    const int lHeight = HeadingHeight(lWidth - 2 * px(lMargin)) + px(lSmallestList) +
                        lSentenceLines * LineHeight() + static_cast<int>(button.cy) + 2 * px(lMargin) +
                        3 * px(lGap);
    return {lWidth, lHeight};
}

void RotationListWindow::LayOut()
{
    if (!m_hFont || ::IsIconic(Handle()))
        return;
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const int lWidth = static_cast<int>(client.right) - 2 * px(lMargin);
    const SIZE button = ButtonSize(m_hRefresh);
    const int lButtonTop = static_cast<int>(client.bottom) - px(lMargin) - static_cast<int>(button.cy);
    const int lSentence = lSentenceLines * LineHeight();
    const int lSentenceTop = lButtonTop - px(lGap) - lSentence;
    const int lListTop = px(lMargin) + HeadingHeight(lWidth) + px(lGap);
    {
        Mover cMover(6);
        cMover.Move(m_hHeading, px(lMargin), px(lMargin), lWidth, HeadingHeight(lWidth));
        cMover.Move(m_hList, px(lMargin), lListTop, lWidth, lSentenceTop - px(lGap) - lListTop);
        cMover.Move(m_hSentence, px(lMargin), lSentenceTop, lWidth, lSentence);
        int lLeft = px(lMargin);
        for (const HWND hButton : {m_hCopy, m_hRefresh})
        {
            cMover.Move(hButton, lLeft, lButtonTop, static_cast<int>(button.cx), static_cast<int>(button.cy));
            lLeft += static_cast<int>(button.cx) + px(lGap);
        }
        cMover.Move(m_hClose, px(lMargin) + lWidth - static_cast<int>(button.cx), lButtonTop,
                    static_cast<int>(button.cx), static_cast<int>(button.cy));
    }
    SizeColumns();
}

// The last column takes the room that is left.
void RotationListWindow::SizeColumns()
{
    if (!m_page || m_page->columns.empty())
        return;
    RECT client{};
    ::GetClientRect(m_hList, &client);
    int lLeft = static_cast<int>(client.right);
    for (std::size_t i = 0; i < m_page->columns.size(); ++i)
    {
        const bool bLast = i + 1 == m_page->columns.size();
        const int lWidth = std::max(px(m_page->columns[i].lWidth), bLast ? lLeft : 0);
        SendList(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(ListColumn(i)), lWidth);
        lLeft -= lWidth;
    }
}

// ---- what the presenter asks of the window ----

void RotationListWindow::SetTitle(const std::wstring& sTitle) { ::SetWindowTextW(Handle(), sTitle.c_str()); }

void RotationListWindow::ShowPage(const ListPage& page, std::size_t chosen)
{
    m_page = &page;
    const auto hHeader = reinterpret_cast<HWND>(SendList(LVM_GETHEADER));
    if (::SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0) == 0)
        MakeColumns(page);
    ::SetWindowTextW(m_hHeading, page.sHeading.c_str());
    SendList(LVM_SETITEMCOUNT, 0);
    SendList(LVM_SETITEMCOUNT, page.rows.size());
    LayOut();
    if (chosen >= page.rows.size())
        return;
    LVITEMW item{};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendList(LVM_SETITEMSTATE, chosen, reinterpret_cast<LPARAM>(&item));
    SendList(LVM_ENSUREVISIBLE, chosen, FALSE);
}

void RotationListWindow::ShowSentence(const std::wstring& sText)
{
    ::SetWindowTextW(m_hSentence, sText.c_str());
}

// A clipboard that another program holds open is left alone.
void RotationListWindow::CopyText(const std::wstring& sText)
{
    const std::size_t bytes = (sText.size() + 1) * sizeof(wchar_t);
    const HGLOBAL hText = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (!hText)
        return;
    if (void* const pText = ::GlobalLock(hText))
    {
        std::memcpy(pText, sText.c_str(), bytes);
        ::GlobalUnlock(hText);
    }
    bool bTaken = false;
    if (::OpenClipboard(Handle()))
    {
        ::EmptyClipboard();
        bTaken = ::SetClipboardData(CF_UNICODETEXT, hText) != nullptr;
        ::CloseClipboard();
    }
    if (!bTaken)
        ::GlobalFree(hText);
}

void RotationListWindow::Close()
{
    if (m_cLoop)
        m_cLoop->End();
}

void RotationListWindow::ShowModal(const std::wstring& sPlaceKey)
{
    m_cPresenter.Open();
    UserSettings& cUserSettings = m_cMod.Ports().cUserSettings;
    const int lShow = RestorePlace(Handle(), cUserSettings, sPlaceKey, {px(lFirstWidth), px(lFirstHeight)});
    m_cLoop = std::make_unique<ModalLoop>(Handle());
    m_cLoop->SetAccelerators(m_hAccelerators.get());
    ::ShowWindow(Handle(), lShow);
    ::SetForegroundWindow(Handle());
    ::SetFocus(m_hList);
    m_cLoop->Run();
    if (!Handle())
        return;
    RememberPlace(Handle(), cUserSettings, sPlaceKey);
    ::ShowWindow(Handle(), SW_HIDE);
}

} // namespace ravlo
