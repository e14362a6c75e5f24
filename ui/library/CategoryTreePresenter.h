// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "ui/library/LibraryTargets.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The category tree as values: nodes, their order, which are ticked, expanded and shown as open. A node is
// named by its number, from 0, in the order of making; numbers hold until the next Clear. The first node is
// the root, which is always expanded.
class CategoryTreePresenter final : public TreeTarget, public TreeImages
{
public:
    using Node = std::size_t;

    struct Entry
    {
        std::wstring sKey;
        std::wstring sText;
        std::optional<Node> lParent;
        std::vector<Node> colChildren; // in the order in which they are shown
        bool bSorted = false;          // the children, by text without regard to case
        bool bExpanded = false;
        bool bChecked = false;
        bool bOpen = false; // the image
    };

    // TreeTarget. A node whose key is there already, or whose parent is not, is left out.
    void Clear() override;
    void AddNode(const std::wstring& sParentKey, const std::wstring& sKey, const std::wstring& sText,
                 const wchar_t* sImage) override;
    void SetSorted() override;
    void ExpandFirst() override;
    // TreeImages.
    void ShowAsOpen(const std::wstring& sKey) override;

    std::size_t Count() const noexcept { return m_colNodes.size(); }
    const Entry& At(Node lNode) const { return m_colNodes[lNode]; }
    // By key without regard to case.
    std::optional<Node> Find(const std::wstring& sKey) const;
    // Whether the nodes' keys and texts are those of another tree, in any order.
    bool HasSameNodes(const CategoryTreePresenter& cOther) const;
    static bool IsRoot(Node lNode) noexcept { return lNode == 0; }

    // Ticks or unticks a node and what follows it: everything for the root, its levels for a main category.
    // Returns the nodes concerned.
    std::vector<Node> Check(Node lNode, bool bCheck);
    // One node's tick alone.
    void SetChecked(Node lNode, bool bCheck) { m_colNodes[lNode].bChecked = bCheck; }
    // Flips every tick, the root's included.
    void InvertChecks();
    // The ticked nodes but the root, in the order in which they are shown.
    std::vector<Node> Checked() const;

    // The nodes that are to be seen: those below expanded ones, in the order in which they are shown.
    std::vector<Node> Visible() const;
    // The first visible node whose text begins with that, without regard to case: from a node on, or behind
    // it, and then from the root.
    std::optional<Node> FindText(const std::wstring& sBeginning, Node lFrom, bool bBehind) const;

    // The root stays expanded.
    void SetExpanded(Node lNode, bool bExpanded);
    // The keys of expanded nodes, parents first.
    std::vector<std::wstring> ExpandedKeys() const;

private:
    void Insert(Entry& parent, Node lNode);
    std::vector<Node> InOrder(bool bCollapsedToo) const;

    std::vector<Entry> m_colNodes;
    OrderedKeyedCollection<Node> m_colByKey;
};

// The category tree on the screen. It shows what it is given and reports what the user does.
class CategoryTreeView
{
public:
    virtual ~CategoryTreeView() = default;
    // Shows the tree anew as a whole, ticks and expansion included; no node is selected afterwards.
    virtual void ShowTree(const CategoryTreePresenter& cTree) = 0;
    virtual void ShowChecks(const CategoryTreePresenter& cTree,
                            const std::vector<CategoryTreePresenter::Node>& colNodes) = 0;
    virtual void ShowImages() = 0; // the open and closed ones have changed
    virtual void Expand(CategoryTreePresenter::Node lNode) = 0;
    virtual void Select(CategoryTreePresenter::Node lNode) = 0; // and brings it into view
    virtual void BringIntoView(CategoryTreePresenter::Node lNode) = 0;
    virtual std::optional<CategoryTreePresenter::Node> Selected() const = 0;
};

} // namespace ravlo
