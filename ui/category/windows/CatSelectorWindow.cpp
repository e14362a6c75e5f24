// SPDX-License-Identifier: MIT
#include "ui/category/windows/CatSelectorWindow.h"

#include "ui/category/windows/ControlIds.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <commctrl.h>
#include <cwchar>
#include <numeric>
#include <windowsx.h>

namespace ravlo
{

namespace
{

using enum SelectorControl;

// Lengths at 96 dpi.
constexpr int lSelectorGap = 8;
constexpr int lLabelGap = 3;
constexpr int lLevelsWidth = 72;
constexpr int lNarrowestCats = 130;
constexpr int lNarrowestSongs = 220;
constexpr int lLowestList = 120;
constexpr int lBoxAndRoom = 22; // the box and the room before its text

constexpr const wchar_t* sMatch = L"Songs Matching Criteria:";

bool IsExtended(SelectorControl eList) { return eList != lstlvl; }

// By the language's own order, as a list box of the system sorts.
std::vector<std::wstring> Sorted(std::vector<std::wstring> colEntries)
{
    std::stable_sort(colEntries.begin(), colEntries.end(), [](const std::wstring& a, const std::wstring& b) {
        return ::lstrcmpiW(a.c_str(), b.c_str()) < 0;
    });
    return colEntries;
}

} // namespace

CatSelectorWindow::CatSelectorWindow(HWND hParent, int lId, ModScheduler& cMod)
    : Window(sCatSelectorClass), m_cMod(cMod), m_cSelector(Made(hParent, lId), cMod),
      m_cFind(m_cSelector, *m_cBar)
{
    m_cBar->SetListener(m_cFind);
    m_cBar->SetList(Of(lstCat));
    m_cBar->ShownChanged = [this] { LayOut(); };
}

CatSelectorView& CatSelectorWindow::Made(HWND hParent, int lId)
{
    WindowStart start;
    start.lStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hParent;
    start.lId = lId;
    Create(start);
    MakeControls();
    return *this;
}

CatSelectorWindow::~CatSelectorWindow() { Destroy(); }

void CatSelectorWindow::MakeControls()
{
    const auto label = [&](int lId, const wchar_t* sText) {
        return MakeControl(Handle(), WC_STATICW, sText, SS_LEFTNOWORDWRAP, lId);
    };
    const auto list = [&](SelectorControl eList, int lId, DWORD lStyle) {
        m_hControls[static_cast<std::size_t>(eList)] = MakeControl(
            Handle(), WC_LISTBOXW, L"", lStyle | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP,
            lId, WS_EX_CLIENTEDGE);
    };
    const auto check = [&](SelectorControl eControl, int lId, const wchar_t* sText) {
        m_hControls[static_cast<std::size_t>(eControl)] =
            MakeControl(Handle(), WC_BUTTONW, sText, BS_AUTOCHECKBOX | WS_TABSTOP, lId);
    };
    m_cBar = std::make_unique<FindBar>(Handle(), eIdFindCats,
                                       FindBar::Texts{L"Find categories", L"Find categories"},
                                       [this] { OnException(); });
    m_hCategoriesLabel = label(eIdCategoriesLabel, L"Cate&gories:");
    list(lstCat, eIdlstCat, LBS_EXTENDEDSEL | WS_HSCROLL);
    m_hLevelsLabel = label(eIdLevelsLabel, L"Le&vels:");
    list(lstlvl, eIdlstlvl, 0);
    m_hControls[static_cast<std::size_t>(lblMatch)] = label(eIdlblMatch, sMatch);
    list(lstsongs0, eIdlstsongs0, LBS_EXTENDEDSEL | WS_HSCROLL);
    m_hMatchLabel1 = label(eIdMatchLabel1, sMatch);
    list(lstsongs1, eIdlstsongs1, LBS_EXTENDEDSEL | WS_HSCROLL);
    check(chkOpener, eIdchkOpener, L"Filter for &Openers Only");
    check(chkSortedSongs, eIdchkSortedSongs, L"&Sorted alphabetically");
}

// ---- messages ----

LRESULT CatSelectorWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wParam) == Of(lstCat))
            OnContextMenu({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_SETCURSOR:
        if (!m_bHourglass)
            break;
        ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    default:
        break;
    }
    return Default(lMessage, wParam, lParam);
}

void CatSelectorWindow::OnException() noexcept
{
    m_cMod.ShowCriticalError(L"Error in CatSelector", CurrentError());
}

void CatSelectorWindow::OnCommand(int lId, int lCode)
{
    if (lId == eIdlstCat && lCode == LBN_SELCHANGE)
        m_cSelector.CatClick();
    else if (lId == eIdlstlvl && lCode == LBN_SELCHANGE)
        m_cSelector.LevelClick();
    else if (lId == eIdchkOpener && lCode == BN_CLICKED)
        m_cSelector.OpenerClick();
    else if (lId == eIdchkSortedSongs && lCode == BN_CLICKED)
        m_cSelector.SortedSongsClick();
}

bool CatSelectorWindow::OnKey(const MSG& message)
{
    if (m_cBar->OnKey(message) || OnType(message))
        return true;
    if (message.message != WM_KEYDOWN)
        return false;
    const auto bDown = [](int lKey) { return ::GetKeyState(lKey) < 0; };
    if (message.wParam == 'F' && bDown(VK_CONTROL) && !bDown(VK_MENU))
    {
        if (::IsWindowEnabled(Of(lstCat)))
            m_cFind.OpenBar();
        return true;
    }
    if (message.wParam == VK_TAB && message.hwnd == Of(chkSortedSongs) && !bDown(VK_SHIFT) &&
        !bDown(VK_CONTROL))
    {
        m_cSelector.SortedSongsTab();
        return true;
    }
    const bool bSongs = message.hwnd == Of(lstsongs0) || message.hwnd == Of(lstsongs1);
    if (message.wParam == 'A' && bSongs && bDown(VK_CONTROL))
    {
        ::SendMessageW(message.hwnd, LB_SETSEL, TRUE, -1);
        return true;
    }
    return false;
}

// A letter in a list goes to the entry that begins with what was typed; a blank within a text does not
// select.
bool CatSelectorWindow::OnType(const MSG& message)
{
    const bool bBlank = message.message == WM_KEYDOWN && message.wParam == VK_SPACE &&
                        ::GetKeyState(VK_CONTROL) >= 0 && ::GetKeyState(VK_SHIFT) >= 0;
    if (message.message != WM_CHAR && !bBlank)
        return false;
    for (const SelectorControl eList : {lstCat, lstlvl, lstsongs0, lstsongs1})
        if (message.hwnd == Of(eList) && ::IsWindowEnabled(message.hwnd))
            return m_cSelector.TypeInList(eList, bBlank ? L' ' : static_cast<wchar_t>(message.wParam));
    return false;
}

// At the pointer, or with the keyboard at the list's corner.
void CatSelectorWindow::OnContextMenu(POINT onScreen)
{
    RECT list{};
    ::GetWindowRect(Of(lstCat), &list);
    if (onScreen.x == -1 && onScreen.y == -1)
        onScreen = {list.left + Scaled(lSelectorGap, m_lDpi), list.top + Scaled(lSelectorGap, m_lDpi)};
    const UniqueMenu hMenu(::CreatePopupMenu());
    ::AppendMenuW(hMenu.get(), MF_STRING, eIdmnuFind, L"&Find...\t  Ctrl+F");
    ::AppendMenuW(hMenu.get(), MF_STRING | (m_cSelector.Names().SortedByName() ? MF_CHECKED : 0u),
                  eIdmnuSortByName, L"&Sort by name");
    const BOOL lChosenId =
        ::TrackPopupMenuEx(hMenu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, static_cast<int>(onScreen.x),
                           static_cast<int>(onScreen.y), Handle(), nullptr);
    if (lChosenId == eIdmnuFind)
        m_cFind.OpenBar();
    else if (lChosenId == eIdmnuSortByName)
        m_cSelector.SetSortByName(!m_cSelector.Names().SortedByName());
}

// ---- layout ----

void CatSelectorWindow::SetLook(HFONT hFont, int lDpi)
{
    m_hFont = hFont;
    m_lDpi = lDpi;
    SetFont(m_hCategoriesLabel, hFont);
    SetFont(m_hLevelsLabel, hFont);
    SetFont(m_hMatchLabel1, hFont);
    m_cBar->SetLook(hFont, lDpi);
    for (const HWND hControl : m_hControls)
        SetFont(hControl, hFont);
    for (const SelectorControl eList : {lstCat, lstsongs0, lstsongs1})
        FitHorizontally(eList);
    LayOut();
}

SIZE CatSelectorWindow::SmallestSize() const
{
    const FontContext cContext(Handle(), m_hFont);
    const int lLine = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy);
    const auto px = [&](int lAt96) { return Scaled(lAt96, m_lDpi); };
    return {px(lNarrowestCats + lSelectorGap + lLevelsWidth + lSelectorGap + lNarrowestSongs),
            3 * lLine + px(lLowestList + lLabelGap + 2 * lSelectorGap)};
}

void CatSelectorWindow::LayOut()
{
    if (!m_hFont)
        return;
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const FontContext cContext(Handle(), m_hFont);
    const auto px = [&](int lAt96) { return Scaled(lAt96, m_lDpi); };
    const int lLine = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy);
    const int lWidth = static_cast<int>(client.right);
    const int lHeight = static_cast<int>(client.bottom);
    const int lCats = std::max(px(lNarrowestCats), (lWidth - px(lLevelsWidth + 2 * lSelectorGap)) * 2 / 5);
    const int lLevels = lCats + px(lSelectorGap);
    const int lSongs = lLevels + px(lLevelsWidth + lSelectorGap);
    const int lSongsWidth = lWidth - lSongs;
    const int lTop = lLine + px(lLabelGap);
    const int lCheckHeight = std::max(lLine, px(17));
    const int lSorted = lHeight - lCheckHeight;
    const int lOpener = lSorted - px(4) - lCheckHeight;
    const int lSongsHeight = lOpener - px(lSelectorGap) - lTop;
    const auto checkWidth = [&](SelectorControl eControl) {
        const SIZE size = TextSize(cContext.Get(), WindowText(Of(eControl)));
        return std::min(lSongsWidth, static_cast<int>(size.cx) + px(lBoxAndRoom));
    };
    const int lBar = m_cBar->Height();
    Mover cMover(11);
    cMover.Move(m_hCategoriesLabel, 0, 0, lCats, lLine);
    cMover.Move(m_cBar->Handle(), 0, lTop, lCats, lBar);
    cMover.Move(Of(lstCat), 0, lTop + lBar, lCats, lHeight - lTop - lBar);
    cMover.Move(m_hLevelsLabel, lLevels, 0, px(lLevelsWidth), lLine);
    cMover.Move(Of(lstlvl), lLevels, lTop, px(lLevelsWidth), lHeight - lTop);
    cMover.Move(Of(lblMatch), lSongs, 0, lSongsWidth, lLine);
    cMover.Move(m_hMatchLabel1, lSongs, 0, lSongsWidth, lLine);
    cMover.Move(Of(lstsongs0), lSongs, lTop, lSongsWidth, lSongsHeight);
    cMover.Move(Of(lstsongs1), lSongs, lTop, lSongsWidth, lSongsHeight);
    cMover.Move(Of(chkOpener), lSongs, lOpener, checkWidth(chkOpener), lCheckHeight);
    cMover.Move(Of(chkSortedSongs), lSongs, lSorted, checkWidth(chkSortedSongs), lCheckHeight);
}

// So that long entries can be scrolled into view. The widest are looked for among the longest.
void CatSelectorWindow::FitHorizontally(SelectorControl eList) const
{
    constexpr std::size_t measured = 20;
    struct Entry
    {
        LRESULT lLength;
        std::size_t at;
    };
    std::vector<Entry> colAll(static_cast<std::size_t>(::SendMessageW(Of(eList), LB_GETCOUNT, 0, 0)));
    for (std::size_t i = 0; i < colAll.size(); ++i)
        colAll[i] = {::SendMessageW(Of(eList), LB_GETTEXTLEN, i, 0), i};
    std::vector<Entry> colLongest(std::min(measured, colAll.size()));
    std::partial_sort_copy(colAll.begin(), colAll.end(), colLongest.begin(), colLongest.end(),
                           [](const Entry& a, const Entry& b) { return a.lLength > b.lLength; });
    const FontContext cContext(Handle(), m_hFont);
    int lWidest = 0;
    for (const Entry& entry : colLongest)
    {
        const std::wstring sEntry = EntryText(eList, entry.at);
        SIZE size{};
        ::GetTextExtentPoint32W(cContext.Get(), sEntry.c_str(), static_cast<int>(sEntry.size()), &size);
        lWidest = std::max(lWidest, static_cast<int>(size.cx));
    }
    ::SendMessageW(Of(eList), LB_SETHORIZONTALEXTENT,
                   static_cast<WPARAM>(lWidest + Scaled(lSelectorGap, m_lDpi)), 0);
}

// ---- what the selector asks of its controls ----

void CatSelectorWindow::SetEntries(SelectorControl eList, const std::vector<std::wstring>& colEntries)
{
    const HWND hList = Of(eList);
    std::vector<std::wstring> colSorted;
    if (eList == lstsongs0)
        colSorted = Sorted(colEntries);
    const std::vector<std::wstring>& colShown = eList == lstsongs0 ? colSorted : colEntries;
    const std::size_t bytes = std::accumulate(colShown.begin(), colShown.end(), std::size_t{0},
                                              [](std::size_t sum, const std::wstring& sEntry) {
        return sum + (sEntry.size() + 1) * sizeof(wchar_t);
    });
    ::SendMessageW(hList, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(hList, LB_RESETCONTENT, 0, 0);
    ::SendMessageW(hList, LB_INITSTORAGE, colShown.size(), static_cast<LPARAM>(bytes));
    for (const std::wstring& sEntry : colShown)
        ::SendMessageW(hList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(sEntry.c_str()));
    if (eList != lstlvl)
        FitHorizontally(eList);
    ::SendMessageW(hList, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(hList, nullptr, TRUE);
}

std::wstring CatSelectorWindow::EntryText(SelectorControl eList, std::size_t entry) const
{
    const LRESULT lLength = ::SendMessageW(Of(eList), LB_GETTEXTLEN, entry, 0);
    if (lLength == LB_ERR)
        return {};
    std::wstring sText(static_cast<std::size_t>(lLength), L'\0'); // the terminator has its own room
    ::SendMessageW(Of(eList), LB_GETTEXT, entry, reinterpret_cast<LPARAM>(sText.data()));
    return sText;
}

std::optional<std::size_t> CatSelectorWindow::CurrentEntry(SelectorControl eList) const
{
    const bool bEmpty = ::SendMessageW(Of(eList), LB_GETCOUNT, 0, 0) <= 0;
    const LRESULT lEntry =
        ::SendMessageW(Of(eList), IsExtended(eList) ? LB_GETCARETINDEX : LB_GETCURSEL, 0, 0);
    if (bEmpty || lEntry == LB_ERR)
        return std::nullopt;
    return static_cast<std::size_t>(lEntry);
}

void CatSelectorWindow::SetCurrentEntry(SelectorControl eList, std::size_t entry)
{
    ::SendMessageW(Of(eList), IsExtended(eList) ? LB_SETCARETINDEX : LB_SETCURSEL, entry, 0);
}

std::vector<std::size_t> CatSelectorWindow::SelectedEntries(SelectorControl eList) const
{
    const LRESULT lCount = ::SendMessageW(Of(eList), LB_GETSELCOUNT, 0, 0);
    if (lCount <= 0)
        return {};
    std::vector<int> colItems(static_cast<std::size_t>(lCount));
    ::SendMessageW(Of(eList), LB_GETSELITEMS, colItems.size(), reinterpret_cast<LPARAM>(colItems.data()));
    return {colItems.begin(), colItems.end()};
}

void CatSelectorWindow::SelectEntry(SelectorControl eList, std::size_t entry, bool bSelect)
{
    // Selecting moves the caret too; its place is decided elsewhere.
    const LRESULT lCaret = ::SendMessageW(Of(eList), LB_GETCARETINDEX, 0, 0);
    ::SendMessageW(Of(eList), LB_SETSEL, bSelect ? TRUE : FALSE, static_cast<LPARAM>(entry));
    ::SendMessageW(Of(eList), LB_SETCARETINDEX, static_cast<WPARAM>(lCaret), 0);
}

void CatSelectorWindow::ClearSelection(SelectorControl eList)
{
    if (IsExtended(eList))
        ::SendMessageW(Of(eList), LB_SETSEL, FALSE, -1);
    else
        ::SendMessageW(Of(eList), LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
}

void CatSelectorWindow::Enable(SelectorControl eControl, bool bEnable)
{
    ::EnableWindow(Of(eControl), bEnable);
    if (eControl == lblMatch)
        ::EnableWindow(m_hMatchLabel1, bEnable);
    else if (eControl == lstCat)
        ::EnableWindow(m_cBar->Handle(), bEnable);
}

// A song list and its label are shown and hidden together.
void CatSelectorWindow::Show(SelectorControl eControl, bool bShow)
{
    const int lShow = bShow ? SW_SHOWNA : SW_HIDE;
    ::ShowWindow(Of(eControl), lShow);
    if (eControl == lstsongs0)
        ::ShowWindow(Of(lblMatch), lShow);
    else if (eControl == lstsongs1)
        ::ShowWindow(m_hMatchLabel1, lShow);
}

bool CatSelectorWindow::Visible(SelectorControl eControl) const
{
    return ::IsWindowVisible(Of(eControl)) != FALSE;
}

bool CatSelectorWindow::Checked(SelectorControl eControl) const
{
    return ::SendMessageW(Of(eControl), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void CatSelectorWindow::Check(SelectorControl eControl, bool bCheck)
{
    ::SendMessageW(Of(eControl), BM_SETCHECK, bCheck ? BST_CHECKED : BST_UNCHECKED, 0);
}

void CatSelectorWindow::SetMatchText(const std::wstring& sText)
{
    ::SetWindowTextW(Of(lblMatch), sText.c_str());
    ::SetWindowTextW(m_hMatchLabel1, sText.c_str());
}

void CatSelectorWindow::Focus(SelectorControl eControl) { ::SetFocus(Of(eControl)); }

void CatSelectorWindow::Hourglass(bool bOn)
{
    m_bHourglass = bOn;
    if (bOn)
        ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
    else
        AskForPointer();
}

} // namespace ravlo
