// SPDX-License-Identifier: MIT
// The cost of the library window with n cuts, compared with a bare list view of the same look that shows n
// rows of one constant text; and of its tree with n categories, compared with a bare tree view. Prints a
// table and exits with 1 when a ratio is above its limit.
#include "bench/windows/WindowBench.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Window.h"

#include <array>
#include <commctrl.h>
#include <string>
#include <vector>

namespace ravlo::bench
{

namespace
{

// Milliseconds within which the window has to answer.
constexpr double dOpeningAim = 1500;
constexpr double dKeyAim = 50;
constexpr double dNotNoticed = 100;

// The same list view as the window's, in a window of the same size, with one text for all cells.
class ConstantList final : public Window
{
public:
    ConstantList(HWND hLike, HWND hGrid, std::size_t rows) : Window(L"RavloBenchList")
    {
        RECT place{};
        ::GetWindowRect(hLike, &place);
        WindowStart start;
        start.sTitle = L"Constant";
        start.lStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
        Create(start);
        ::SetWindowPos(Handle(), HWND_TOP, static_cast<int>(place.left), static_cast<int>(place.top),
                       static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                       0);
        const auto lStyle = static_cast<DWORD>(::GetWindowLongPtrW(hGrid, GWL_STYLE));
        hList =
            MakeControl(Handle(), WC_LISTVIEWW, L"Rows", lStyle & ~DWORD{WS_DISABLED}, 1, WS_EX_CLIENTEDGE);
        const LRESULT lExtended = ::SendMessageW(hGrid, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
        ::SendMessageW(hList, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, lExtended);
        SetFont(hList, reinterpret_cast<HFONT>(::SendMessageW(hGrid, WM_GETFONT, 0, 0)));
        for (int i = 0; i < 10; ++i)
        {
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
            ::SendMessageW(hGrid, LVM_GETCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
            column.mask = LVCF_WIDTH | LVCF_FMT;
            ::SendMessageW(hList, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i),
                           reinterpret_cast<LPARAM>(&column));
        }
        RECT grid{};
        ::GetWindowRect(hGrid, &grid);
        ::MoveWindow(hList, 0, 0, static_cast<int>(grid.right - grid.left),
                     static_cast<int>(grid.bottom - grid.top), TRUE);
        ::SendMessageW(hList, LVM_SETITEMCOUNT, rows, 0);
        ::ShowWindow(Handle(), SW_SHOW);
    }

    HWND hList = nullptr;

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override
    {
        auto* pHeader = lMessage == WM_NOTIFY ? reinterpret_cast<NMHDR*>(lParam) : nullptr;
        if (!pHeader || pHeader->code != LVN_GETDISPINFOW)
            return Default(lMessage, wParam, lParam);
        static wchar_t sText[] = L"Constant text";
        reinterpret_cast<NMLVDISPINFOW*>(lParam)->item.pszText = sText;
        return 0;
    }
    void OnException() noexcept override { std::printf("the baseline's window failed\n"); }
};

void SelectRow(HWND hList, int lRow, bool bSelect)
{
    LVITEMW item{};
    item.state = bSelect ? LVIS_SELECTED : 0u;
    item.stateMask = LVIS_SELECTED;
    ::SendMessageW(hList, LVM_SETITEMSTATE, static_cast<WPARAM>(static_cast<INT_PTR>(lRow)),
                   reinterpret_cast<LPARAM>(&item));
}

void SelectAll(HWND hList, bool bSelect)
{
    ::SendMessageW(hList, WM_SETREDRAW, FALSE, 0);
    SelectRow(hList, -1, bSelect);
    ::SendMessageW(hList, WM_SETREDRAW, TRUE, 0);
}

void Page(HWND hList)
{
    ::SendMessageW(hList, WM_VSCROLL, SB_TOP, 0);
    for (int i = 0; i < 20; ++i)
    {
        ::SendMessageW(hList, WM_VSCROLL, SB_PAGEDOWN, 0);
        ::UpdateWindow(hList);
    }
}

void SetModifier(int lKey, bool bDown)
{
    BYTE keys[256];
    ::GetKeyboardState(keys);
    keys[lKey] = bDown ? 0x80 : 0;
    ::SetKeyboardState(keys);
}
void SetShift(bool bDown) { SetModifier(VK_SHIFT, bDown); }

// Processes all waiting messages, painting included.
void RunMessages()
{
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        ::DispatchMessageW(&message);
}

struct Cost
{
    std::string sWhat;
    double dTime;
};

// The cost of a key or click when every row is selected.
std::vector<Cost> CostsOfInput(const Station& cState)
{
    const HWND hGrid = cState.Grid();
    RECT row{};
    row.left = LVIR_BOUNDS;
    ::SendMessageW(hGrid, LVM_GETITEMRECT, static_cast<WPARAM>(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0)),
                   reinterpret_cast<LPARAM>(&row));
    const LPARAM at = MAKELPARAM(row.left + 60, (row.top + row.bottom) / 2);
    const auto key = [&](WPARAM lKey, bool bShift) {
        SetShift(bShift);
        ::SendMessageW(hGrid, WM_KEYDOWN, lKey, 1);
        SetShift(false);
    };
    struct Input
    {
        const char* sWhat;
        Work work;
    };
    const Input inputs[] =
        {
            {"click",
             [&] {
        ::SendMessageW(hGrid, WM_LBUTTONDOWN, MK_LBUTTON, at);
        ::SendMessageW(hGrid, WM_LBUTTONUP, 0, at);
             }},
            {"Home", [&] { key(VK_HOME, false); }},
            {"End", [&] { key(VK_END, false); }},
            {"Shift+End", [&] { key(VK_END, true); }},
            {"Shift+Home", [&] { key(VK_HOME, true); }},
    };
    std::vector<Cost> colCosts;
    for (const Input& input : inputs)
    {
        double dBest = std::numeric_limits<double>::max();
        for (int i = 0; i < 3; ++i)
        {
            cState.Command(LibraryCommand::mnuSelectAllGrid);
            Paint(hGrid);
            dBest = std::min(dBest, Quickest(
                                        [&] {
                input.work();
                ::UpdateWindow(hGrid);
                                        },
                                        1));
        }
        colCosts.push_back({std::string("all selected, then ") + input.sWhat, dBest});
    }
    return colCosts;
}

struct FindCosts
{
    double dOpen = 0;
    double dKey = 0;
};

// Ctrl+F and its first step, and keys that leave many rows, few and many again when all cuts are read.
FindCosts CostsOfFind(const Station& cState)
{
    const HWND hGrid = cState.Grid();
    FindCosts costs;
    ::SetFocus(hGrid);
    costs.dOpen = Quickest(
        [&] {
        MSG message{};
        message.hwnd = hGrid;
        message.message = WM_KEYDOWN;
        message.wParam = 'F';
        SetModifier(VK_CONTROL, true);
        ::CallMsgFilterW(&message, MSGF_USER); // as the window's own loop receives it
        SetModifier(VK_CONTROL, false);
        ::UpdateWindow(hGrid);
        },
        1);
    const HWND hQuery = ::GetFocus();
    for (const double dStart = Seconds(); Seconds() - dStart < 1;) // its steps
        RunMessages();
    constexpr std::array<const wchar_t*, 5> sQueries = {L"a", L"ar", L"ar 7", L"ar", L"t"};
    std::array<double, sQueries.size()> dQuickest;
    dQuickest.fill(std::numeric_limits<double>::max());
    for (int i = 0; i < 5; ++i)
        for (std::size_t query = 0; query < sQueries.size(); ++query)
            dQuickest[query] = std::min(dQuickest[query], Quickest(
                                                              [&] {
                ::SetWindowTextW(hQuery, sQueries[query]);
                ::UpdateWindow(hGrid);
                                                              },
                                                              1));
    costs.dKey = *std::max_element(dQuickest.begin(), dQuickest.end());
    if (hQuery == hGrid || ::SendMessageW(hGrid, LVM_GETITEMCOUNT, 0, 0) == 0)
        bWithinLimits = (std::printf("find found nothing\n"), false);
    ::SetWindowTextW(hQuery, L"");
    return costs;
}

struct SortCosts
{
    double dClick = 0;
    double dRefresh = 0; // while it is sorted, until it can be used
};

// A click on a heading is posted by the header, so it is processed as a message. Ends in schedule order.
SortCosts CostsOfSort(const Station& cState)
{
    const HWND hGrid = cState.Grid();
    const auto click = [&] {
        NMLISTVIEW notice{};
        notice.hdr = {hGrid, static_cast<UINT_PTR>(::GetDlgCtrlID(hGrid)),
                      static_cast<UINT>(LVN_COLUMNCLICK)};
        notice.iSubItem = 3; // the title
        ::SendMessageW(cState.Form(), WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
        RunMessages();
        ::UpdateWindow(hGrid);
    };
    SortCosts costs;
    costs.dClick = Quickest(click, 1);
    costs.dRefresh = Quickest([&] { cState.ShowAgain(); }, 3);
    click();
    click();
    return costs;
}

void Measure(const Station& cState)
{
    using enum LibraryCommand;
    const HWND hGrid = cState.Grid();
    const std::vector<Cost> colCosts = CostsOfInput(cState);
    const std::int64_t cuts = cState.Size();
    const auto rows = static_cast<std::size_t>(cuts);
    const double dPaint = Quickest([&] { Paint(hGrid); });
    const double dPage = Quickest([&] { Page(hGrid); });
    const double dSelect = Quickest([&] {
        cState.Command(mnuSelectAllGrid);
        cState.Command(mnuSelectNoneGrid);
    });
    SelectRow(hGrid, 7, true);
    const double dInvert = Quickest([&] { cState.Command(mnuInvertSelectionGrid); }, 6);
    const double dShow = Quickest([&] { cState.ShowAgain(); });
    cState.Command(mnuSelectNoneGrid);
    const SortCosts sort = CostsOfSort(cState);
    const FindCosts find = CostsOfFind(cState);

    const ConstantList cConstant(cState.Form(), hGrid, rows);
    const HWND hList = cConstant.hList;
    Row("painting a page", cuts, dPaint, Quickest([&] { Paint(hList); }), 2.5);
    Row("scrolling through 20 pages", cuts, dPage, Quickest([&] { Page(hList); }), 2.5);
    const double dSelectBare = Quickest([&] {
        SelectAll(hList, true);
        SelectAll(hList, false);
    });
    for (const Cost& cost : colCosts)
        Row(cost.sWhat.c_str(), cuts, cost.dTime, dSelectBare, 3, dNotNoticed);
    Row("selecting all and none", cuts, dSelect, dSelectBare, 3);
    Row("inverting, as selecting all and none", cuts, dInvert, dSelectBare, 3);
    const double dCount = Quickest([&] {
        ::SendMessageW(hList, LVM_SETITEMCOUNT, 0, 0);
        ::SendMessageW(hList, LVM_SETITEMCOUNT, rows, 0);
        Paint(hList);
    });
    Row("showing all cuts and the tree again", cuts, dShow, dCount, 6);
    Row("find: opening, with its first step", cuts, find.dOpen, dSelectBare, 3);
    Row("find: the slowest of some keys", cuts, find.dKey, dSelectBare, 3, dKeyAim);
    Row("sorting by title", cuts, sort.dClick, dSelectBare, 12);
    Row("showing all sorted, as in their order", cuts, sort.dRefresh, dShow, 4);
}

// ---- the tree ----

constexpr int lCategories = 404;
constexpr int lLevels = 4;

// One cut in each level of each category.
std::shared_ptr<Cut> CategoryCut(std::int64_t number)
{
    std::shared_ptr<Cut> cCut = MadeUpCut(number);
    cCut->SetCategoryText(L"Category " + std::to_wstring(number / lLevels));
    cCut->SetCatLevel(static_cast<std::int32_t>(number % lLevels + 1));
    return cCut;
}

HTREEITEM NextItem(HWND hTree, HTREEITEM hItem, UINT lRelation)
{
    return reinterpret_cast<HTREEITEM>(
        ::SendMessageW(hTree, TVM_GETNEXTITEM, lRelation, reinterpret_cast<LPARAM>(hItem)));
}

std::vector<HTREEITEM> ItemsBelow(HWND hTree, HTREEITEM hParent)
{
    std::vector<HTREEITEM> colItems;
    for (HTREEITEM h = NextItem(hTree, hParent, TVGN_CHILD); h; h = NextItem(hTree, h, TVGN_NEXT))
    {
        colItems.push_back(h);
        const std::vector<HTREEITEM> colBelow = ItemsBelow(hTree, h);
        colItems.insert(colItems.end(), colBelow.begin(), colBelow.end());
    }
    return colItems;
}

bool IsTicked(HWND hTree, HTREEITEM hItem)
{
    const LRESULT lState = ::SendMessageW(hTree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(hItem),
                                          static_cast<LPARAM>(TVIS_STATEIMAGEMASK));
    return static_cast<UINT>(lState) == INDEXTOSTATEIMAGEMASK(2u);
}

void Tick(HWND hTree, HTREEITEM hItem, bool bTick)
{
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_STATE;
    item.hItem = hItem;
    item.stateMask = TVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(bTick ? 2u : 1u);
    ::SendMessageW(hTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

// A click on the root's box ticks or clears everything below it.
void MeasureTicks(const Station& cState)
{
    const HWND hTree = cState.Tree();
    const HTREEITEM hRoot = NextItem(hTree, nullptr, TVGN_ROOT);
    const std::vector<HTREEITEM> colItems = ItemsBelow(hTree, hRoot);
    TVHITTESTINFO box{};
    box.pt.y = 8;
    while ((box.flags & TVHT_ONITEMSTATEICON) == 0 && ++box.pt.x < 200)
        ::SendMessageW(hTree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&box));
    bool bTicked = false;
    const auto click = [&] {
        const LPARAM at = MAKELPARAM(box.pt.x, box.pt.y);
        ::PostMessageW(hTree, WM_LBUTTONUP, 0, at);
        ::SendMessageW(hTree, WM_LBUTTONDOWN, MK_LBUTTON, at);
        RunMessages();
        bTicked = !bTicked;
        for (const HTREEITEM hItem : {hRoot, colItems.back()})
            if (IsTicked(hTree, hItem) != bTicked)
                bWithinLimits = (std::printf("the click was not heard\n"), false);
    };
    // The boxes of the same tree, set with its painting off.
    const auto bare = [&] {
        bTicked = !bTicked;
        ::DefWindowProcW(hTree, WM_SETREDRAW, FALSE, 0);
        for (const HTREEITEM hItem : colItems)
            Tick(hTree, hItem, bTicked);
        ::DefWindowProcW(hTree, WM_SETREDRAW, TRUE, 0);
        ::InvalidateRect(hTree, nullptr, TRUE);
        RunMessages();
    };
    for (const char* sWhat : {"ticking the root", "ticking the root, all expanded"})
    {
        const double dClick = Quickest(click, 6);
        Row(sWhat, lCategories, dClick, Quickest(bare, 6), 3, dNotNoticed);
        for (const HTREEITEM hItem : colItems)
            ::SendMessageW(hTree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(hItem));
        ::SendMessageW(hTree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(hRoot));
        RunMessages();
    }
}

int Run()
{
    std::printf("%-36s %8s %13s %13s %7s\n", "operation", "n", "window", "baseline", "ratio");
    double dSmallest = 0;
    for (const std::int64_t cuts : {1'000, 10'000, 100'000})
    {
        Station cState(cuts);
        double dOpening = std::numeric_limits<double>::max();
        for (int i = 0; i < 5; ++i)
            dOpening = std::min(dOpening, cState.Open());
        dSmallest = dSmallest == 0 ? dOpening : dSmallest;
        Row("opening, as with 1 000 cuts", cuts, dOpening, dSmallest, 4, dOpeningAim);
        cState.Open([&] { Measure(cState); });
    }
    Station cCategories(lCategories * lLevels, &CategoryCut);
    cCategories.Open([&] { MeasureTicks(cCategories); });
    MeasureHealthWindow();
    return bWithinLimits ? 0 : 1;
}

} // namespace

} // namespace ravlo::bench

int main() { return ravlo::bench::Run(); }
