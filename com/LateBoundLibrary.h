// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "ui/library/LibraryContents.h"

#include <oaidl.h>
#include <string>
#include <vector>

namespace ravlo
{

// A tree that a host passes: Nodes with Clear, Add, and _NewEnum or Count and Item; its nodes have Key,
// Image, Sorted, Expanded and Parent. An error of the host's is thrown with its description.
class LateBoundTree
{
public:
    explicit LateBoundTree(IDispatch& oTv);

    // Shows these nodes in place of its own, all closed, the root expanded.
    void Fill(const std::vector<TreeNode>& colNodes);
    // Gives the image "Open" to the node of that key, compared without regard to case, and to its parent;
    // "Closed" to every other.
    void ShowAsOpen(const std::wstring& sKey);

private:
    ComPtr<IDispatch> m_colNodes;
};

// Fills a grid that a host passes, cell by cell: Redraw, ColCount, AddCol, RowCount, RowKey and CellValue.
// Columns are added when it has none. An error of the host's is thrown with its description.
void FillGrid(IDispatch& oGrid, clsSchedMan& cSchedMan, const ListedCuts& listed);

} // namespace ravlo
