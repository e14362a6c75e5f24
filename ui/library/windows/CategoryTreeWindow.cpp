// SPDX-License-Identifier: MIT
#include "ui/library/windows/CategoryTreeWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/library/windows/FolderImages.h"
#include "ui/library/windows/TickImages.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ravlo
{

namespace
{

constexpr int lImageSize = 16; // at 96 dpi
constexpr int lItemGap = 4;
constexpr DWORD lHoverToOpen = 700; // milliseconds
constexpr int lScrollZone = 18;     // at 96 dpi, along the upper and lower edge

LRESULT Send(HWND hTree, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    return ::SendMessageW(hTree, lMessage, wParam, lParam);
}

// The state image of a box, which TickImages draws.
UINT StateOf(CategoryTreePresenter::Ticks eTicks)
{
    return INDEXTOSTATEIMAGEMASK(static_cast<UINT>(eTicks) + 1);
}

TVITEMW ItemOf(HTREEITEM hItem, UINT lMask)
{
    TVITEMW item{};
    item.mask = lMask | TVIF_HANDLE;
    item.hItem = hItem;
    return item;
}

// While one exists, a tree view neither paints nor invalidates, which would cost a hundred times as much as
// setting an item. Sends the message past the control's own handler, since not every tree view's handler does
// this. A hidden tree view stays hidden.
class TreePaintingOff
{
public:
    explicit TreePaintingOff(HWND hTree)
        : m_hTree((::GetWindowLongPtrW(hTree, GWL_STYLE) & WS_VISIBLE) != 0 ? hTree : nullptr)
    {
        if (m_hTree)
            ::DefWindowProcW(m_hTree, WM_SETREDRAW, FALSE, 0);
    }
    ~TreePaintingOff()
    {
        if (m_hTree)
            ::DefWindowProcW(m_hTree, WM_SETREDRAW, TRUE, 0);
    }
    TreePaintingOff(const TreePaintingOff&) = delete;
    TreePaintingOff& operator=(const TreePaintingOff&) = delete;

private:
    HWND m_hTree;
};

} // namespace

CategoryTreeWindow::CategoryTreeWindow(HWND hParent, int lId)
    : m_hTree(MakeControl(hParent, WC_TREEVIEWW, L"Categories",
                          WS_TABSTOP | TVS_HASBUTTONS | TVS_FULLROWSELECT | TVS_SHOWSELALWAYS |
                              TVS_DISABLEDRAGDROP,
                          lId, WS_EX_CLIENTEDGE)),
      m_described(m_hTree, [this](HTREEITEM hItem) { return Described(hItem); })
{
    // Set after creation: a tree view created with this style gives no item a check box.
    SetStyle(TVS_CHECKBOXES, true);
}

void CategoryTreeWindow::SetLook(HFONT hFont, int lDpi)
{
    m_lDpi = lDpi;
    SetFont(m_hTree, hFont);
    const int lSize = Scaled(lImageSize, lDpi);
    UniqueImageList hTicks(TickImages(lDpi));
    const auto hBefore = reinterpret_cast<HIMAGELIST>(
        Send(m_hTree, TVM_SETIMAGELIST, TVSIL_STATE, reinterpret_cast<LPARAM>(hTicks.get())));
    if (hBefore && hBefore != m_hTicks.get())
        ::ImageList_Destroy(hBefore); // the control's own first one
    m_hTicks.swap(hTicks);
    // Last: not every tree view makes room for other state images before it gets other images.
    UniqueImageList hImages(FolderImages(lSize));
    Send(m_hTree, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(hImages.get()));
    m_hImages.swap(hImages);
    const FontContext cContext(m_hTree, hFont);
    const int lText = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy);
    Send(m_hTree, TVM_SETITEMHEIGHT, static_cast<WPARAM>(std::max(lText, lSize) + Scaled(lItemGap, lDpi)), 0);
}

// ---- showing ----

void CategoryTreeWindow::ShowTree(const CategoryTreePresenter& cTree)
{
    m_cTree = &cTree;
    ShowDropTarget(std::nullopt);
    Send(m_hTree, WM_SETREDRAW, FALSE, 0);
    m_hItems.clear();
    Send(m_hTree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    m_hItems.resize(cTree.Count());
    m_bOpen.assign(cTree.Count(), false);
    if (cTree.Count() != 0)
        Add(cTree, 0, TVI_ROOT);
    Send(m_hTree, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(m_hTree, nullptr, TRUE);
}

void CategoryTreeWindow::Add(const CategoryTreePresenter& cTree, CategoryTreePresenter::Node node,
                             HTREEITEM hParent)
{
    const CategoryTreePresenter::Entry& entry = cTree.At(node);
    std::wstring sText = entry.sText;
    TVINSERTSTRUCTW insert{};
    insert.hParent = hParent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_STATE;
    insert.item.pszText = sText.data();
    insert.item.lParam = static_cast<LPARAM>(node);
    insert.item.iImage = insert.item.iSelectedImage = entry.bOpen ? eFolderOpen : eFolderClosed;
    insert.item.stateMask = TVIS_STATEIMAGEMASK;
    insert.item.state = StateOf(cTree.TicksOf(node));
    m_bOpen[node] = entry.bOpen;
    m_hItems[node] =
        reinterpret_cast<HTREEITEM>(Send(m_hTree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    for (const CategoryTreePresenter::Node child : entry.colChildren)
        if (!cTree.At(child).bHidden)
            Add(cTree, child, m_hItems[node]);
    if (entry.bExpanded)
        Expand(node);
}

void CategoryTreeWindow::ShowChecks(const CategoryTreePresenter& cTree,
                                    const std::vector<CategoryTreePresenter::Node>& colNodes)
{
    {
        const TreePaintingOff cOff(m_hTree);
        std::optional<CategoryTreePresenter::Node> parent; // the last one shown: levels come together
        for (const CategoryTreePresenter::Node node : colNodes)
        {
            const std::optional<CategoryTreePresenter::Node> before =
                std::exchange(parent, cTree.At(node).parent);
            if (before && before != parent)
                ShowTicks(*before);
            ShowTicks(node);
        }
        if (parent)
            ShowTicks(*parent);
    }
    Repaint();
}

void CategoryTreeWindow::ShowTicks(CategoryTreePresenter::Node node)
{
    if (!HasItem(node))
        return;
    const UINT lState = StateOf(m_cTree->TicksOf(node));
    if (TicksShown(node) != lState)
        SetState(m_hItems[node], lState);
}

void CategoryTreeWindow::BeforeToggle(CategoryTreePresenter::Node node)
{
    if (HasItem(node) && TicksShown(node) == StateOf(CategoryTreePresenter::Ticks::Some))
        SetState(m_hItems[node], StateOf(CategoryTreePresenter::Ticks::None));
}

// A tree view may paint the row whose check box was clicked as the selected one, until a row is selected or
// marked as the target of a drop. Selecting would scroll; marking what is marked already does not.
void CategoryTreeWindow::Repaint()
{
    MarkDropTarget();
    ::InvalidateRect(m_hTree, nullptr, FALSE);
}

void CategoryTreeWindow::MarkDropTarget()
{
    Send(m_hTree, TVM_SELECTITEM, TVGN_DROPHILITE,
         m_dropTarget ? reinterpret_cast<LPARAM>(m_hItems[*m_dropTarget]) : 0);
}

void CategoryTreeWindow::SetState(HTREEITEM hItem, UINT lState)
{
    TVITEMW item = ItemOf(hItem, TVIF_STATE);
    item.stateMask = TVIS_STATEIMAGEMASK;
    item.state = lState;
    m_described.Direct(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void CategoryTreeWindow::ShowImages()
{
    for (CategoryTreePresenter::Node node = 0; m_cTree && node < m_hItems.size(); ++node)
    {
        const bool bOpen = m_cTree->At(node).bOpen;
        if (m_bOpen[node] == bOpen || !HasItem(node))
            continue;
        m_bOpen[node] = bOpen;
        TVITEMW item = ItemOf(m_hItems[node], TVIF_IMAGE | TVIF_SELECTEDIMAGE);
        item.iImage = item.iSelectedImage = bOpen ? eFolderOpen : eFolderClosed;
        Send(m_hTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
}

void CategoryTreeWindow::ShowCounts() { ::InvalidateRect(m_hTree, nullptr, TRUE); }

void CategoryTreeWindow::Expand(CategoryTreePresenter::Node node)
{
    if (HasItem(node))
        Send(m_hTree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(m_hItems[node]));
}

void CategoryTreeWindow::Select(CategoryTreePresenter::Node node)
{
    if (!HasItem(node))
        return;
    Send(m_hTree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(m_hItems[node]));
    BringIntoView(node);
}

void CategoryTreeWindow::BringIntoView(CategoryTreePresenter::Node node)
{
    if (!HasItem(node))
        return;
    Send(m_hTree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(m_hItems[node]));
    ScrollToLeft();
}

// The style is on only during an edit: otherwise a second click on a label would begin one.
bool CategoryTreeWindow::EditText(CategoryTreePresenter::Node node)
{
    if (!HasItem(node))
        return false;
    BringIntoView(node);
    m_bMayEdit = true;
    SetStyle(TVS_EDITLABELS, true);
    const auto hEdit =
        reinterpret_cast<HWND>(Send(m_hTree, TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(m_hItems[node])));
    m_bMayEdit = hEdit != nullptr;
    if (!hEdit)
        SetStyle(TVS_EDITLABELS, false);
    return m_bMayEdit;
}

void CategoryTreeWindow::EditEnded()
{
    m_bMayEdit = false;
    SetStyle(TVS_EDITLABELS, false);
}

void CategoryTreeWindow::SetStyle(LONG_PTR lStyle, bool bOn)
{
    const LONG_PTR lNow = ::GetWindowLongPtrW(m_hTree, GWL_STYLE);
    ::SetWindowLongPtrW(m_hTree, GWL_STYLE, bOn ? lNow | lStyle : lNow & ~lStyle);
}

// Some tree views handle only one of these messages.
void CategoryTreeWindow::ScrollToLeft()
{
    Send(m_hTree, WM_HSCROLL, SB_THUMBPOSITION, 0);
    Send(m_hTree, WM_HSCROLL, SB_LEFT, 0);
}

std::optional<CategoryTreePresenter::Node> CategoryTreeWindow::Selected() const
{
    return NodeOf(reinterpret_cast<HTREEITEM>(Send(m_hTree, TVM_GETNEXTITEM, TVGN_CARET, 0)));
}

// ---- asking ----

std::optional<CategoryTreePresenter::Node> CategoryTreeWindow::NodeOf(HTREEITEM hItem) const
{
    if (!hItem)
        return std::nullopt;
    TVITEMW item = ItemOf(hItem, TVIF_PARAM);
    if (!Send(m_hTree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)))
        return std::nullopt;
    const auto node = static_cast<CategoryTreePresenter::Node>(item.lParam);
    return node < m_hItems.size() && m_hItems[node] == hItem ? std::optional(node) : std::nullopt;
}

std::optional<CategoryTreeWindow::Hit> CategoryTreeWindow::HitTest(POINT onScreen) const
{
    TVHITTESTINFO hit{};
    hit.pt = onScreen;
    ::ScreenToClient(m_hTree, &hit.pt);
    const auto hItem =
        reinterpret_cast<HTREEITEM>(Send(m_hTree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    const std::optional<CategoryTreePresenter::Node> node = NodeOf(hItem);
    if (!node)
        return std::nullopt;
    const bool bOnBox = (hit.flags & TVHT_ONITEMSTATEICON) != 0;
    return Hit{*node, !bOnBox && (hit.flags & TVHT_ONITEMBUTTON) == 0, bOnBox};
}

UINT CategoryTreeWindow::TicksShown(CategoryTreePresenter::Node node) const
{
    const LRESULT lState =
        m_described.Direct(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(m_hItems[node]), TVIS_STATEIMAGEMASK);
    return static_cast<UINT>(lState) & TVIS_STATEIMAGEMASK;
}

bool CategoryTreeWindow::ShowsCheck(CategoryTreePresenter::Node node) const
{
    return TicksShown(node) == StateOf(CategoryTreePresenter::Ticks::All);
}

std::vector<CategoryTreePresenter::Node> CategoryTreeWindow::CheckedByUser() const
{
    std::vector<CategoryTreePresenter::Node> colNodes;
    for (CategoryTreePresenter::Node node = 0; m_cTree && node < m_hItems.size(); ++node)
        if (HasItem(node) && TicksShown(node) != StateOf(m_cTree->TicksOf(node)))
            colNodes.push_back(node);
    return colNodes;
}

RECT CategoryTreeWindow::LabelOf(CategoryTreePresenter::Node node) const
{
    RECT label{};
    // The message takes the item where it puts the rectangle.
    std::memcpy(&label, &m_hItems[node], sizeof(HTREEITEM));
    Send(m_hTree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&label));
    ::MapWindowPoints(m_hTree, nullptr, reinterpret_cast<POINT*>(&label), 2);
    return label;
}

// ---- during a drag ----

void CategoryTreeWindow::ShowDropTarget(std::optional<CategoryTreePresenter::Node> node)
{
    if (node == m_dropTarget)
        return;
    m_dropTarget = node;
    m_lTargetSince = ::GetTickCount();
    MarkDropTarget();
}

std::optional<CategoryTreePresenter::Node> CategoryTreeWindow::DragTick(POINT onScreen)
{
    POINT point = onScreen;
    ::ScreenToClient(m_hTree, &point);
    RECT client{};
    ::GetClientRect(m_hTree, &client);
    if (!::PtInRect(&client, point))
        return std::nullopt;
    if (Scroll(point) && m_dropTarget)
    {
        // Another node is below the pointer now.
        const std::optional<Hit> hit = HitTest(onScreen);
        ShowDropTarget(hit ? std::optional(hit->node) : std::nullopt);
    }
    if (!m_dropTarget || ::GetTickCount() - m_lTargetSince <= lHoverToOpen)
        return std::nullopt;
    Expand(*m_dropTarget);
    m_lTargetSince = ::GetTickCount();
    return m_dropTarget;
}

// True when there was anything to scroll.
bool CategoryTreeWindow::Scroll(POINT inClient)
{
    RECT client{};
    ::GetClientRect(m_hTree, &client);
    const int lZone = Scaled(lScrollZone, m_lDpi);
    const auto First = [this] { return Send(m_hTree, TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE, 0); };
    const LRESULT lFirst = First();
    if (inClient.y < lZone)
        Send(m_hTree, WM_VSCROLL, SB_LINEUP, 0);
    else if (inClient.y > client.bottom - lZone)
        Send(m_hTree, WM_VSCROLL, SB_LINEDOWN, 0);
    return First() != lFirst;
}

} // namespace ravlo
