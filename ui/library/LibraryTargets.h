// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Where the category tree, the cut grid and the progress of filling them go: the library window's own
// controls, or a tree and a grid that a host passes.

class TreeTarget
{
public:
    virtual ~TreeTarget() = default;
    virtual void Clear() = 0;
    // Adds a node as the last child of the node with that key; an empty parent key adds the root.
    virtual void AddNode(const std::wstring& sParentKey, const std::wstring& sKey, const std::wstring& sText,
                         const wchar_t* sImage) = 0;
    // The children of the node added last, which has none yet, are kept sorted by text.
    virtual void SetSorted() = 0;
    virtual void ExpandFirst() = 0;
};

// The images of a filled tree's nodes.
class TreeImages
{
public:
    virtual ~TreeImages() = default;
    // Gives "Open" to the node of that key, compared without regard to case, and to its parent; "Closed" to
    // every other.
    virtual void ShowAsOpen(const std::wstring& sKey) = 0;
};

// The cuts a grid is to list, in order, and the levels they stand in: each run of rows comes from one level.
// Without runs the cuts come from the database itself, and their keys are not known without asking them.
struct ListedCuts
{
    struct Run
    {
        std::shared_ptr<clsCat> cLevel;
        std::size_t end = 0; // one past its last row, from 0
    };
    Cuts colCuts;
    std::vector<TextKey> colKeys; // one per cut, or none at all
    std::vector<Run> colRuns;
};

class GridTarget
{
public:
    virtual ~GridTarget() = default;
    virtual void SetRedraw(bool bRedraw) = 0;
    virtual std::size_t ColCount() const = 0;
    virtual void AddCol(const std::wstring& sKey, const std::wstring& sHeader) = 0;
    virtual void Clear() = 0; // no rows
};

// A grid that is told each cell. Rows count from 1.
class CellGrid : public GridTarget
{
public:
    virtual void SetRowCount(std::size_t rows) = 0;
    virtual void SetRowKey(std::size_t row, const std::wstring& sKey) = 0;
    virtual void SetCell(std::size_t row, const wchar_t* sColKey, const std::wstring& sValue) = 0;
    virtual void SetCell(std::size_t row, const wchar_t* sColKey, std::int32_t lValue) = 0;
};

// A grid that takes all cuts at once and asks them itself when it paints.
class CutGrid : public GridTarget
{
public:
    virtual void TakeRows(ListedCuts listed) = 0;
};

class ProgressTarget
{
public:
    virtual ~ProgressTarget() = default;
    virtual void ProgressStart(const std::wstring& sReason, std::int32_t lMax) = 0;
    virtual void Progress(const std::wstring& sText, std::int32_t lValue) = 0;
    virtual void ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond) = 0;
};

} // namespace ravlo
