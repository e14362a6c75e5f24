// SPDX-License-Identifier: MIT
#include "ui/library/CategoryTreePresenter.h"

#include "base/CaseFolding.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

namespace ravlo
{

void CategoryTreePresenter::Fill(const std::vector<TreeNode>& colNodes)
{
    m_colNodes.clear();
    m_colByKey.Clear();
    for (const TreeNode& node : colNodes)
        Add(node);
    for (const TreeNode& node : colNodes)
        if (node.bSorted)
            if (const std::optional<Node> lParent = Find(node.sKey))
                SortChildren(*lParent);
    if (!m_colNodes.empty())
        m_colNodes.front().bExpanded = true;
}

void CategoryTreePresenter::Add(const TreeNode& node)
{
    const bool bRoot = node.sParentKey.empty();
    const Node lNode = m_colNodes.size();
    const std::optional<Node> lParent = bRoot ? std::nullopt : Find(node.sParentKey);
    if (lParent.has_value() == bRoot || !m_colByKey.Add(TextKey(node.sKey), lNode))
        return;
    Entry entry;
    entry.sKey = node.sKey;
    entry.sText = node.sText;
    entry.lParent = lParent;
    m_colNodes.push_back(std::move(entry));
    if (lParent)
        m_colNodes[*lParent].colChildren.push_back(lNode);
}

void CategoryTreePresenter::SortChildren(Node lParent)
{
    std::vector<Node>& colChildren = m_colNodes[lParent].colChildren;
    std::vector<std::pair<std::wstring, Node>> colFolded;
    for (const Node lChild : colChildren)
        colFolded.emplace_back(FoldCase(m_colNodes[lChild].sText), lChild);
    std::sort(colFolded.begin(), colFolded.end()); // by number among equals
    std::transform(colFolded.begin(), colFolded.end(), colChildren.begin(),
                   [](const auto& folded) { return folded.second; });
}

void CategoryTreePresenter::ShowAsOpen(const std::wstring& sKey)
{
    for (Entry& entry : m_colNodes)
        entry.bOpen = false;
    const std::optional<Node> lNode = Find(sKey);
    if (!lNode)
        return;
    m_colNodes[*lNode].bOpen = true;
    if (const std::optional<Node> lParent = m_colNodes[*lNode].lParent)
        m_colNodes[*lParent].bOpen = true;
}

std::optional<CategoryTreePresenter::Node> CategoryTreePresenter::Find(const std::wstring& sKey) const
{
    const Node* pNode = m_colByKey.Find(sKey);
    return pNode ? std::optional<Node>(*pNode) : std::nullopt;
}

bool CategoryTreePresenter::HasSameNodes(const std::vector<TreeNode>& colNodes) const
{
    std::vector<bool> bFound(Count());
    for (const TreeNode& node : colNodes)
    {
        const std::optional<Node> lNode = Find(node.sKey);
        if (!lNode || At(*lNode).sText != node.sText)
            return false;
        bFound[*lNode] = true;
    }
    return std::find(bFound.begin(), bFound.end(), false) == bFound.end();
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Check(Node lNode, bool bCheck)
{
    std::vector<Node> colNodes;
    if (IsRoot(lNode))
    {
        colNodes.resize(m_colNodes.size());
        std::iota(colNodes.begin(), colNodes.end(), Node{0});
    }
    else
    {
        colNodes = m_colNodes[lNode].colChildren;
        colNodes.insert(colNodes.begin(), lNode);
    }
    for (const Node lChecked : colNodes)
        m_colNodes[lChecked].bChecked = bCheck;
    return colNodes;
}

void CategoryTreePresenter::InvertChecks()
{
    for (Entry& entry : m_colNodes)
        entry.bChecked = !entry.bChecked;
}

// In the order in which they are shown, those below collapsed nodes only when asked for.
std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::InOrder(bool bCollapsedToo) const
{
    std::vector<Node> colOrdered;
    std::vector<Node> colToVisit; // the next one is at the back
    if (!m_colNodes.empty())
        colToVisit.push_back(0);
    while (!colToVisit.empty())
    {
        const Node lNode = colToVisit.back();
        colToVisit.pop_back();
        const Entry& entry = m_colNodes[lNode];
        colOrdered.push_back(lNode);
        if (bCollapsedToo || entry.bExpanded)
            colToVisit.insert(colToVisit.end(), entry.colChildren.rbegin(), entry.colChildren.rend());
    }
    return colOrdered;
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Checked() const
{
    std::vector<Node> colChecked = InOrder(true);
    std::erase_if(colChecked, [this](Node lNode) { return IsRoot(lNode) || !m_colNodes[lNode].bChecked; });
    return colChecked;
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Visible() const { return InOrder(false); }

std::optional<CategoryTreePresenter::Node> CategoryTreePresenter::FindText(const std::wstring& sBeginning,
                                                                           Node lFrom, bool bBehind) const
{
    std::vector<Node> colVisible = Visible();
    const auto from = std::find(colVisible.begin(), colVisible.end(), lFrom);
    if (from != colVisible.end())
        std::rotate(colVisible.begin(), from + (bBehind ? 1 : 0), colVisible.end());
    const auto found = std::find_if(colVisible.begin(), colVisible.end(), [&](Node lNode) {
        const std::wstring_view sText = m_colNodes[lNode].sText;
        return EqualIgnoringCase(sText.substr(0, sBeginning.size()), sBeginning);
    });
    return found == colVisible.end() ? std::nullopt : std::optional(*found);
}

void CategoryTreePresenter::SetExpanded(Node lNode, bool bExpanded)
{
    m_colNodes[lNode].bExpanded = bExpanded || IsRoot(lNode);
}

std::vector<std::wstring> CategoryTreePresenter::ExpandedKeys() const
{
    std::vector<std::wstring> colKeys;
    for (const Entry& entry : m_colNodes) // parents are made before their children
        if (entry.bExpanded)
            colKeys.push_back(entry.sKey);
    return colKeys;
}

} // namespace ravlo
