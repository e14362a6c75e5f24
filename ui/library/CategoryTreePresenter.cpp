// SPDX-License-Identifier: MIT
#include "ui/library/CategoryTreePresenter.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "ui/library/NodeKey.h"

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
    for (const TreeNode& given : colNodes)
        Add(given);
    for (const TreeNode& given : colNodes)
        if (given.bSorted)
            if (const std::optional<Node> parent = Find(given.sKey))
                SortChildren(*parent);
    if (!m_colNodes.empty())
        m_colNodes.front().bExpanded = true;
    Narrow(m_words);
}

void CategoryTreePresenter::Add(const TreeNode& given)
{
    const bool bRoot = given.sParentKey.empty();
    const Node node = m_colNodes.size();
    const std::optional<Node> parent = bRoot ? std::nullopt : Find(given.sParentKey);
    if (parent.has_value() == bRoot || !m_colByKey.Add(TextKey(given.sKey), node))
        return;
    Entry entry;
    entry.sKey = given.sKey;
    entry.sText = given.sText;
    entry.parent = parent;
    m_colNodes.push_back(std::move(entry));
    if (parent)
        m_colNodes[*parent].colChildren.push_back(node);
}

void CategoryTreePresenter::Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    const std::optional<Node> mainNode = Find(CategoryKey(sFrom, 0));
    if (!mainNode)
        return;
    std::vector<Node> colNodes = m_colNodes[*mainNode].colChildren;
    colNodes.push_back(*mainNode);
    for (const Node node : colNodes)
    {
        Entry& entry = m_colNodes[node];
        m_colByKey.Remove(std::wstring_view(entry.sKey));
        entry.sKey = CategoryKey(sTo, ParseNodeKey(entry.sKey).lLevel.value_or(0));
        m_colByKey.Add(TextKey(entry.sKey), node);
    }
    m_colNodes[*mainNode].sText = sTo;
}

void CategoryTreePresenter::SortChildren(Node parent)
{
    std::vector<Node>& colChildren = m_colNodes[parent].colChildren;
    std::vector<std::pair<std::wstring, Node>> colFolded;
    colFolded.reserve(colChildren.size());
    for (const Node child : colChildren)
        colFolded.emplace_back(FoldCase(m_colNodes[child].sText), child);
    std::sort(colFolded.begin(), colFolded.end()); // equal texts by number
    std::transform(colFolded.begin(), colFolded.end(), colChildren.begin(),
                   [](const auto& folded) { return folded.second; });
}

void CategoryTreePresenter::ShowAsOpen(const std::wstring& sKey)
{
    for (Entry& entry : m_colNodes)
        entry.bOpen = false;
    const std::optional<Node> node = Find(sKey);
    if (!node)
        return;
    m_colNodes[*node].bOpen = true;
    if (const std::optional<Node> parent = m_colNodes[*node].parent)
        m_colNodes[*parent].bOpen = true;
}

std::optional<CategoryTreePresenter::Node> CategoryTreePresenter::Find(const std::wstring& sKey) const
{
    const Node* pNode = m_colByKey.Find(sKey);
    return pNode ? std::optional<Node>(*pNode) : std::nullopt;
}

bool CategoryTreePresenter::HasSameNodes(const std::vector<TreeNode>& colNodes) const
{
    std::vector<bool> bFound(Count());
    for (const TreeNode& given : colNodes)
    {
        const std::optional<Node> node = Find(given.sKey);
        if (!node || At(*node).sText != given.sText)
            return false;
        bFound[*node] = true;
    }
    return std::find(bFound.begin(), bFound.end(), false) == bFound.end();
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Check(Node node, bool bCheck)
{
    std::vector<Node> colNodes;
    if (IsRoot(node))
    {
        colNodes.resize(m_colNodes.size());
        std::iota(colNodes.begin(), colNodes.end(), Node{0});
    }
    else
    {
        colNodes = m_colNodes[node].colChildren;
        colNodes.insert(colNodes.begin(), node);
    }
    std::erase_if(colNodes, [this](Node each) { return m_colNodes[each].bHidden; });
    for (const Node checked : colNodes)
        m_colNodes[checked].bChecked = bCheck;
    return colNodes;
}

bool CategoryTreePresenter::SetCuts(Node node, std::optional<std::size_t> cuts)
{
    return std::exchange(m_colNodes[node].cuts, cuts) != cuts;
}

void CategoryTreePresenter::InvertChecks()
{
    for (Entry& entry : m_colNodes)
        entry.bChecked = entry.bChecked == entry.bHidden;
}

bool CategoryTreePresenter::Narrow(const SearchWords& words)
{
    m_words = words;
    bool bChanged = false;
    for (Node node = 0; node < Count(); ++node)
    {
        if (m_colNodes[node].parent != Node{0})
            continue;
        std::string sTexts = FoldForSearch(m_colNodes[node].sText) + SearchWords::cFieldEnd;
        for (const Node level : m_colNodes[node].colChildren)
            sTexts += FoldForSearch(m_colNodes[level].sText) + SearchWords::cFieldEnd;
        bChanged |= Hide(node, !words.FoundIn(sTexts));
    }
    return bChanged;
}

bool CategoryTreePresenter::Hide(Node mainNode, bool bHide)
{
    for (const Node level : m_colNodes[mainNode].colChildren)
        m_colNodes[level].bHidden = bHide;
    return std::exchange(m_colNodes[mainNode].bHidden, bHide) != bHide;
}

CategoryTreePresenter::Narrowed CategoryTreePresenter::NarrowedTo() const
{
    Narrowed narrowed;
    for (const Entry& entry : m_colNodes)
    {
        const bool bMain = entry.parent == Node{0};
        narrowed.categories += bMain ? 1 : 0;
        narrowed.shown += bMain && !entry.bHidden ? 1 : 0;
        narrowed.hiddenTicks += entry.bHidden && entry.bChecked ? 1 : 0;
    }
    return narrowed;
}

// The nodes in the order in which they are shown; hidden ones, and those below collapsed nodes, only with
// bAll.
std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::InOrder(bool bAll) const
{
    std::vector<Node> colOrdered;
    std::vector<Node> colToVisit; // the next one is at the back
    if (!m_colNodes.empty())
        colToVisit.push_back(0);
    while (!colToVisit.empty())
    {
        const Node node = colToVisit.back();
        colToVisit.pop_back();
        const Entry& entry = m_colNodes[node];
        if (!bAll && entry.bHidden)
            continue;
        colOrdered.push_back(node);
        if (bAll || entry.bExpanded)
            colToVisit.insert(colToVisit.end(), entry.colChildren.rbegin(), entry.colChildren.rend());
    }
    return colOrdered;
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Checked() const
{
    std::vector<Node> colChecked = InOrder(true);
    std::erase_if(colChecked, [this](Node node) { return IsRoot(node) || !m_colNodes[node].bChecked; });
    return colChecked;
}

std::vector<std::wstring> CategoryTreePresenter::CheckedKeys() const
{
    std::vector<std::wstring> colKeys;
    for (const Entry& entry : m_colNodes)
        if (entry.bChecked)
            colKeys.push_back(entry.sKey);
    return colKeys;
}

CategoryTreePresenter::Ticks CategoryTreePresenter::TicksOf(Node node) const
{
    const Entry& entry = m_colNodes[node];
    const std::ptrdiff_t levels =
        IsRoot(node) ? 0
                     : std::count_if(entry.colChildren.begin(), entry.colChildren.end(),
                                     [this](Node level) { return m_colNodes[level].bChecked; });
    const bool bAll = entry.bChecked && (levels == 0 || levels == std::ssize(entry.colChildren));
    return bAll ? Ticks::All : levels == 0 ? Ticks::None : Ticks::Some;
}

std::vector<CategoryTreePresenter::Node> CategoryTreePresenter::Visible() const { return InOrder(false); }

std::optional<CategoryTreePresenter::Node> CategoryTreePresenter::FindText(std::string_view sFoldedBeginning,
                                                                           Node from, bool bBehind) const
{
    std::vector<Node> colVisible = Visible();
    const auto start = std::find(colVisible.begin(), colVisible.end(), from);
    if (start != colVisible.end())
        std::rotate(colVisible.begin(), start + (bBehind ? 1 : 0), colVisible.end());
    const auto found = std::find_if(colVisible.begin(), colVisible.end(), [&](Node node) {
        return BeginsFolded(m_colNodes[node].sText, sFoldedBeginning);
    });
    return found == colVisible.end() ? std::nullopt : std::optional(*found);
}

void CategoryTreePresenter::SetExpanded(Node node, bool bExpanded)
{
    m_colNodes[node].bExpanded = bExpanded || IsRoot(node);
}

std::vector<std::wstring> CategoryTreePresenter::ExpandedKeys() const
{
    std::vector<std::wstring> colKeys;
    for (const Entry& entry : m_colNodes) // parents come before their children
        if (entry.bExpanded)
            colKeys.push_back(entry.sKey);
    return colKeys;
}

} // namespace ravlo
