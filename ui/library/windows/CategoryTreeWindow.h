// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"
#include "ui/library/CategoryTreePresenter.h"
#include "ui/library/windows/DescribedTree.h"
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
    void ShowTree(const CategoryTreePresenter& cTree) override;
    void ShowChecks(const CategoryTreePresenter& cTree,
                    const std::vector<CategoryTreePresenter::Node>& colNodes) override;
    void ShowCounts() override;
    void ShowImages() override;
    void Expand(CategoryTreePresenter::Node node) override;
    void Select(CategoryTreePresenter::Node node) override;
    void BringIntoView(CategoryTreePresenter::Node node) override;
    bool EditText(CategoryTreePresenter::Node node) override;
    std::optional<CategoryTreePresenter::Node> Selected() const override;

    // ---- for the window's messages

    struct Hit
    {
        CategoryTreePresenter::Node node;
        bool bOnRow; // not on the check box or the expander
        bool bOnBox;
    };
    std::optional<Hit> HitTest(POINT onScreen) const;
    // The node of an item; nothing for one of an earlier tree.
    std::optional<CategoryTreePresenter::Node> NodeOf(HTREEITEM hItem) const;
    // The nodes whose box differs from the tree: those that the user has clicked.
    std::vector<CategoryTreePresenter::Node> CheckedByUser() const;
    bool ShowsCheck(CategoryTreePresenter::Node node) const;
    // Call before the tree view toggles a node's box by a click or a key: one that shows some levels becomes
    // ticked.
    void BeforeToggle(CategoryTreePresenter::Node node);
    // Edits only begin by EditText, not by clicks.
    bool MayEdit() const noexcept { return m_bMayEdit; }
    // Call at the end of an edit.
    void EditEnded();
    LRESULT OnCustomDraw(NMTVCUSTOMDRAW& draw);
    // Where a node's label is on the screen.
    RECT LabelOf(CategoryTreePresenter::Node node) const;

    // Repaints what clicks on check boxes leave wrong on the screen.
    void Repaint();
    // Back to the left edge, where check boxes and expanders are.
    void ScrollToLeft();

    // During a drag. ShowDropTarget marks a node as the target, or none. DragTick scrolls near the edges and
    // expands a node that the pointer rests on; it returns that node, since the view does not report this
    // expansion.
    void ShowDropTarget(std::optional<CategoryTreePresenter::Node> node);
    std::optional<CategoryTreePresenter::Node> DragTick(POINT onScreen);

private:
    void Add(const CategoryTreePresenter& cTree, CategoryTreePresenter::Node node, HTREEITEM hParent);
    void SetStyle(LONG_PTR lStyle, bool bOn);
    void SetState(HTREEITEM hItem, UINT lState);
    UINT TicksShown(CategoryTreePresenter::Node node) const;
    void ShowTicks(CategoryTreePresenter::Node node);
    void RepaintMoved();
    std::wstring Described(HTREEITEM hItem) const;
    void DrawCount(const NMCUSTOMDRAW& draw, CategoryTreePresenter::Node node) const;
    bool ShowsWholeRow() const;
    void MarkDropTarget();
    // Hidden nodes have none.
    bool HasItem(CategoryTreePresenter::Node node) const { return node < m_hItems.size() && m_hItems[node]; }
    bool Scroll(POINT inClient);

    HWND m_hTree;
    UniqueImageList m_hImages;
    UniqueImageList m_hTicks;
    bool m_bMayEdit = false;
    POINT m_painted = {}; // the place of the scroll bar and the width at the last paint
    const CategoryTreePresenter* m_cTree = nullptr;
    std::vector<HTREEITEM> m_hItems; // by node
    std::vector<bool> m_bOpen;       // as shown
    int m_lDpi = 96;
    std::optional<CategoryTreePresenter::Node> m_dropTarget;
    DWORD m_lTargetSince = 0; // GetTickCount
    DescribedTree m_described;
};

} // namespace ravlo
