// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "ui/library/LibraryContents.h"

#include <oaidl.h>
#include <string>
#include <vector>

namespace ravlo
{

// A host's tree: Nodes with Clear, Add, and _NewEnum or Count and Item; its nodes have Key, Image, Sorted,
// Expanded and Parent. Throws the host's errors with their descriptions.
class LateBoundTree
{
public:
    explicit LateBoundTree(IDispatch& oTv);

    // Replaces the tree's nodes by these, all closed, the root expanded.
    void Fill(const std::vector<TreeNode>& colNodes);
    // Gives the image "Open" to the node of that key, compared without regard to case, and to its parent;
    // "Closed" to every other.
    void ShowAsOpen(const std::wstring& sKey);

private:
    ComPtr<IDispatch> m_colNodes;
};

// Fills a host's grid cell by cell through Redraw, ColCount, AddCol, RowCount, RowKey and CellValue. Adds the
// columns when it has none. Throws the host's errors with their descriptions.
void FillGrid(IDispatch& oGrid, clsSchedMan& cSchedMan, const ListedCuts& listed);

} // namespace ravlo
