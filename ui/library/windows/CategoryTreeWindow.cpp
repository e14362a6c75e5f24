// SPDX-License-Identifier: MIT
#include "ui/library/windows/CategoryTreeWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/library/windows/FolderImages.h"

#include <algorithm>
#include <cstring>

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
                          lId, WS_EX_CLIENTEDGE))
{
    // Set after creation: a tree view created with this style gives no item a check box.
    ::SetWindowLongPtrW(m_hTree, GWL_STYLE, ::GetWindowLongPtrW(m_hTree, GWL_STYLE) | TVS_CHECKBOXES);
}

void CategoryTreeWindow::SetLook(HFONT hFont, int lDpi)
{
    m_lDpi = lDpi;
    SetFont(m_hTree, hFont);
    const int lSize = Scaled(lImageSize, lDpi);
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

void CategoryTreeWindow::Add(const CategoryTreePresenter& cTree, CategoryTreePresenter::Node lNode,
                             HTREEITEM hParent)
{
    const CategoryTreePresenter::Entry& entry = cTree.At(lNode);
    std::wstring sText = entry.sText;
    TVINSERTSTRUCTW insert{};
    insert.hParent = hParent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_STATE;
    insert.item.pszText = sText.data();
    insert.item.lParam = static_cast<LPARAM>(lNode);
    insert.item.iImage = insert.item.iSelectedImage = entry.bOpen ? eFolderOpen : eFolderClosed;
    insert.item.stateMask = TVIS_STATEIMAGEMASK;
    insert.item.state = INDEXTOSTATEIMAGEMASK(entry.bChecked ? 2u : 1u);
    m_bOpen[lNode] = entry.bOpen;
    m_hItems[lNode] =
        reinterpret_cast<HTREEITEM>(Send(m_hTree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    for (const CategoryTreePresenter::Node lChild : entry.colChildren)
        Add(cTree, lChild, m_hItems[lNode]);
    if (entry.bExpanded)
        Expand(lNode);
}

void CategoryTreeWindow::ShowChecks(const CategoryTreePresenter& cTree,
                                    const std::vector<CategoryTreePresenter::Node>& colNodes)
{
    {
        const TreePaintingOff cOff(m_hTree);
        for (const CategoryTreePresenter::Node lNode : colNodes)
            if (lNode < m_hItems.size() && ShowsCheck(lNode) != cTree.At(lNode).bChecked)
                SetState(m_hItems[lNode], cTree.At(lNode).bChecked);
    }
    Repaint();
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
         m_lDropTarget ? reinterpret_cast<LPARAM>(m_hItems[*m_lDropTarget]) : 0);
}

void CategoryTreeWindow::SetState(HTREEITEM hItem, bool bChecked)
{
    TVITEMW item = ItemOf(hItem, TVIF_STATE);
    item.stateMask = TVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(bChecked ? 2u : 1u);
    Send(m_hTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void CategoryTreeWindow::ShowImages()
{
    for (CategoryTreePresenter::Node lNode = 0; m_cTree && lNode < m_hItems.size(); ++lNode)
    {
        const bool bOpen = m_cTree->At(lNode).bOpen;
        if (m_bOpen[lNode] == bOpen)
            continue;
        m_bOpen[lNode] = bOpen;
        TVITEMW item = ItemOf(m_hItems[lNode], TVIF_IMAGE | TVIF_SELECTEDIMAGE);
        item.iImage = item.iSelectedImage = bOpen ? eFolderOpen : eFolderClosed;
        Send(m_hTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
}

void CategoryTreeWindow::Expand(CategoryTreePresenter::Node lNode)
{
    Send(m_hTree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(m_hItems[lNode]));
}

void CategoryTreeWindow::Select(CategoryTreePresenter::Node lNode)
{
    Send(m_hTree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(m_hItems[lNode]));
    BringIntoView(lNode);
}

void CategoryTreeWindow::BringIntoView(CategoryTreePresenter::Node lNode)
{
    Send(m_hTree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(m_hItems[lNode]));
    ScrollToLeft();
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
    const auto lNode = static_cast<CategoryTreePresenter::Node>(item.lParam);
    return lNode < m_hItems.size() && m_hItems[lNode] == hItem ? std::optional(lNode) : std::nullopt;
}

std::optional<CategoryTreeWindow::Hit> CategoryTreeWindow::HitTest(POINT onScreen) const
{
    TVHITTESTINFO hit{};
    hit.pt = onScreen;
    ::ScreenToClient(m_hTree, &hit.pt);
    const auto hItem =
        reinterpret_cast<HTREEITEM>(Send(m_hTree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    const std::optional<CategoryTreePresenter::Node> lNode = NodeOf(hItem);
    if (!lNode)
        return std::nullopt;
    return Hit{*lNode, (hit.flags & (TVHT_ONITEMBUTTON | TVHT_ONITEMSTATEICON)) == 0};
}

bool CategoryTreeWindow::ShowsCheck(CategoryTreePresenter::Node lNode) const
{
    const auto lState = static_cast<UINT>(
        Send(m_hTree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(m_hItems[lNode]), TVIS_STATEIMAGEMASK));
    return (lState & TVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2u);
}

std::vector<CategoryTreePresenter::Node> CategoryTreeWindow::CheckedByUser() const
{
    std::vector<CategoryTreePresenter::Node> colNodes;
    for (CategoryTreePresenter::Node lNode = 0; m_cTree && lNode < m_hItems.size(); ++lNode)
        if (ShowsCheck(lNode) != m_cTree->At(lNode).bChecked)
            colNodes.push_back(lNode);
    return colNodes;
}

LRESULT CategoryTreeWindow::OnCustomDraw(NMTVCUSTOMDRAW& draw) const
{
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return ::GetFocus() != m_hTree ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && (draw.nmcd.uItemState & CDIS_SELECTED) != 0)
    {
        draw.clrText = ::GetSysColor(COLOR_WINDOWTEXT);
        draw.clrTextBk = UnfocusedSelection();
    }
    return CDRF_DODEFAULT;
}

RECT CategoryTreeWindow::LabelOf(CategoryTreePresenter::Node lNode) const
{
    RECT label{};
    // The message takes the item where it puts the rectangle.
    std::memcpy(&label, &m_hItems[lNode], sizeof m_hItems[lNode]);
    Send(m_hTree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&label));
    ::MapWindowPoints(m_hTree, nullptr, reinterpret_cast<POINT*>(&label), 2);
    return label;
}

// ---- during a drag ----

void CategoryTreeWindow::ShowDropTarget(std::optional<CategoryTreePresenter::Node> lNode)
{
    if (lNode == m_lDropTarget)
        return;
    m_lDropTarget = lNode;
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
    if (Scroll(point) && m_lDropTarget)
    {
        // Another node is below the pointer now.
        const std::optional<Hit> hit = HitTest(onScreen);
        ShowDropTarget(hit ? std::optional(hit->lNode) : std::nullopt);
    }
    if (!m_lDropTarget || ::GetTickCount() - m_lTargetSince <= lHoverToOpen)
        return std::nullopt;
    Expand(*m_lDropTarget);
    m_lTargetSince = ::GetTickCount();
    return m_lDropTarget;
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
