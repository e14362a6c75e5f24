// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "base/SearchText.h"
#include "ui/library/LibraryContents.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The category tree as values: nodes, their order, and which are ticked, expanded and shown as open. A node
// is a number, from 0, valid until the next Fill. Node 0 is the root, always expanded and shown.
class CategoryTreePresenter
{
public:
    using Node = std::size_t;

    struct Entry
    {
        std::wstring sKey;
        std::wstring sText;
        std::optional<Node> parent;
        std::vector<Node> colChildren; // as shown: sorted by text, without regard to case, if requested
        bool bExpanded = false;
        bool bChecked = false;
        bool bOpen = false;              // the image
        std::optional<std::size_t> cuts; // nothing: not known
        bool bHidden = false;            // the tree is narrowed to other categories
    };

    // Replaces the nodes: none ticked, the root expanded, narrowed as before. Leaves out a node whose key
    // already exists or whose parent does not.
    void Fill(const std::vector<TreeNode>& colNodes);
    // Marks the node of that key (compared without regard to case) and its parent as open, and all others as
    // closed.
    void ShowAsOpen(const std::wstring& sKey);

    // Gives a main category's node and those of its levels the keys of another name. Does not sort.
    void Rename(const std::wstring& sFrom, const std::wstring& sTo);

    std::size_t Count() const noexcept { return m_colNodes.size(); }
    const Entry& At(Node node) const { return m_colNodes[node]; }
    // By key without regard to case.
    std::optional<Node> Find(const std::wstring& sKey) const;
    // Whether Fill with these nodes, in any order, would change no key and no text.
    bool HasSameNodes(const std::vector<TreeNode>& colNodes) const;
    static bool IsRoot(Node node) noexcept { return node == 0; }

    // Hides the main categories, with their levels, whose texts do not contain each of the words: a
    // category's texts are its name and its levels'. Returns whether that changed what is hidden.
    bool Narrow(const SearchWords& words);
    struct Narrowed
    {
        std::size_t shown = 0; // main categories
        std::size_t categories = 0;
        std::size_t hiddenTicks = 0; // nodes that are ticked and hidden
    };
    Narrowed NarrowedTo() const;

    // Ticks or unticks a node and its dependents that are not hidden: all nodes for the root, its levels for
    // a main category. Returns these nodes.
    std::vector<Node> Check(Node node, bool bCheck);
    // Returns whether the number has changed.
    bool SetCuts(Node node, std::optional<std::size_t> cuts);
    // One node's tick alone.
    void SetChecked(Node node, bool bCheck) { m_colNodes[node].bChecked = bCheck; }
    // Flips every tick, the root's included, but for hidden nodes.
    void InvertChecks();
    // The ticked nodes but the root, hidden ones too, in the order in which they are shown.
    std::vector<Node> Checked() const;

    // The keys of the ticked nodes, the root's included.
    std::vector<std::wstring> CheckedKeys() const;
    // What a node's box shows. A main category that counts as unticked, or lacks some of its levels, shows
    // Some while any level is ticked: a command works on just those.
    enum class Ticks
    {
        None,
        All,
        Some,
    };
    Ticks TicksOf(Node node) const;

    // The visible nodes, those that are not hidden and whose parents are expanded, in the order in which they
    // are shown.
    std::vector<Node> Visible() const;
    // The first visible node whose text begins with a folded one; searches from from on (after it with
    // bBehind) and continues at the root.
    std::optional<Node> FindText(std::string_view sFoldedBeginning, Node from, bool bBehind) const;

    // The root stays expanded.
    void SetExpanded(Node node, bool bExpanded);
    // The keys of expanded nodes, parents first.
    std::vector<std::wstring> ExpandedKeys() const;

private:
    void Add(const TreeNode& given);
    void SortChildren(Node parent);
    std::vector<Node> InOrder(bool bAll) const;
    bool Hide(Node mainNode, bool bHide);

    std::vector<Entry> m_colNodes;
    OrderedKeyedCollection<Node> m_colByKey;
    SearchWords m_words; // that it is narrowed to
};

// The category tree on the screen. Shows the presenter's tree and reports what the user does.
class CategoryTreeView
{
public:
    virtual ~CategoryTreeView() = default;
    // Shows the whole tree but hidden nodes, ticks and expansion included; no node is selected afterwards.
    // Other members ignore hidden nodes.
    virtual void ShowTree(const CategoryTreePresenter& cTree) = 0;
    // The boxes of these nodes and of their parents.
    virtual void ShowChecks(const CategoryTreePresenter& cTree,
                            const std::vector<CategoryTreePresenter::Node>& colNodes) = 0;
    virtual void ShowCounts() = 0; // the numbers of cuts have changed
    virtual void ShowImages() = 0; // the open and closed ones have changed
    virtual void Expand(CategoryTreePresenter::Node node) = 0;
    virtual void Select(CategoryTreePresenter::Node node) = 0; // and brings it into view
    virtual void BringIntoView(CategoryTreePresenter::Node node) = 0;
    // Lets the user edit the node's text in place; false when that is not possible. What the user types is
    // reported, not shown.
    virtual bool EditText(CategoryTreePresenter::Node node) = 0;
    virtual std::optional<CategoryTreePresenter::Node> Selected() const = 0;
};

} // namespace ravlo
