// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"
#include "ui/library/CategoryTreePresenter.h"
#include "ui/library/windows/FolderImages.h"

#include <optional>
#include <string>
#include <vector>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

// TvCats: the category tree on the system's tree view with check boxes.
class CategoryTreeWindow final : public CategoryTreeView
{
public:
    CategoryTreeWindow(HWND hParent, int lId);

    HWND Handle() const noexcept { return m_hTree; }
    void SetLook(HFONT hFont, int lDpi);

    // ---- CategoryTreeView
    void ShowTree(const CategoryTree& cTree) override;
    void ShowChecks(const CategoryTree& cTree, const std::vector<CategoryTree::Node>& colNodes) override;
    void ShowImages() override;
    void Expand(CategoryTree::Node lNode) override;
    void Select(CategoryTree::Node lNode) override;
    void BringIntoView(CategoryTree::Node lNode) override;
    std::optional<CategoryTree::Node> Selected() const override;

    // ---- for the window's messages

    struct Hit
    {
        CategoryTree::Node lNode;
        bool bOnRow; // not on the check box or the expander
    };
    std::optional<Hit> HitTest(POINT onScreen) const;
    // The node of an item; nothing for one of an earlier tree.
    std::optional<CategoryTree::Node> NodeOf(HTREEITEM hItem) const;
    // The nodes whose box shows something else than the tree has: what the user has clicked.
    std::vector<CategoryTree::Node> CheckedByUser() const;
    bool ShowsCheck(CategoryTree::Node lNode) const;
    LRESULT OnCustomDraw(NMTVCUSTOMDRAW& draw) const;
    // Where a node's label is on the screen.
    RECT LabelOf(CategoryTree::Node lNode) const;

    // Puts right what clicks on check boxes leave on the screen.
    void Repaint();
    // Back to the left edge, where check boxes and expanders are.
    void ScrollToLeft();

    // During a drag: marks a node as the target, or none; scrolls near the edges and opens a node the pointer
    // rests on. The view does not report that opening: DragTick returns the node.
    void ShowDropTarget(std::optional<CategoryTree::Node> lNode);
    std::optional<CategoryTree::Node> DragTick(POINT onScreen);

private:
    void Add(const CategoryTree& cTree, CategoryTree::Node lNode, HTREEITEM hParent);
    void SetState(HTREEITEM hItem, bool bChecked);
    void MarkDropTarget();
    bool Scroll(POINT inClient);

    HWND m_hTree;
    UniqueImageList m_hImages;
    const CategoryTree* m_cTree = nullptr;
    std::vector<HTREEITEM> m_hItems; // by node
    std::vector<bool> m_bOpen;       // as shown
    int m_lDpi = 96;
    std::optional<CategoryTree::Node> m_lDropTarget;
    DWORD m_lTargetSince = 0; // GetTickCount
};

} // namespace ravlo
