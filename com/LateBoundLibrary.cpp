// SPDX-License-Identifier: MIT
#include "com/LateBoundLibrary.h"

#include "base/CaseFolding.h"
#include "comkit/Collection.h"
#include "comkit/Errors.h"
#include "comkit/LateBound.h"
#include "comkit/Variant.h"
#include "ui/library/GridColumns.h"

#include <algorithm>
#include <functional>
#include <variant>

namespace ravlo
{

namespace
{

constexpr std::int32_t lNoEnumerator = 451; // "Object not a collection"
constexpr std::int32_t lChildOf = 4;        // the relationship of a new node to the one it is given with

Variant Text(const std::wstring& sText) { return Variant(std::wstring_view(sText)); }
Variant Number(std::size_t number) { return Variant(static_cast<std::int32_t>(number)); }
std::size_t CountIn(const Variant& value)
{
    const std::optional<Variant> cCount = value.As(VT_I4);
    return cCount ? static_cast<std::size_t>(std::max<LONG>(cCount->lVal, 0)) : 0;
}

ComPtr<IDispatch> ObjectOf(const Variant& value)
{
    ComPtr<IDispatch> cObject = ObjectIn<IDispatch>(value);
    if (!cObject)
        throw RuntimeError(error::ObjectNotSet);
    return cObject;
}

// ---- the tree ----

void ForEachNode(const ComPtr<IDispatch>& colNodes,
                 const std::function<void(const ComPtr<IDispatch>& cNode)>& body)
{
    try
    {
        return ForEachItem(colNodes.Get(), [&](const Variant& cItem) { body(ObjectOf(cItem)); });
    }
    catch (const RuntimeError& error)
    {
        if (error.Number() != lNoEnumerator)
            throw;
    }
    // Classes of a script language have no enumerator.
    LateBound cNodes(*colNodes);
    const std::size_t count = CountIn(cNodes.Get(L"Count"));
    for (std::size_t i = 1; i <= count; ++i)
        body(ObjectOf(cNodes.Get(L"Item", {Number(i)})));
}

// ---- the grid ----

// The grid paints nothing while it is filled, and paints again on every way out.
class HostRedrawOff
{
public:
    explicit HostRedrawOff(LateBound& cGrid) : m_cGrid(cGrid) { m_cGrid.Put(L"Redraw", {}, Variant(false)); }
    ~HostRedrawOff()
    {
        try
        {
            m_cGrid.Put(L"Redraw", {}, Variant(true));
        }
        catch (...)
        {
            // A grid that refuses this has already refused a row.
        }
    }
    HostRedrawOff(const HostRedrawOff&) = delete;
    HostRedrawOff& operator=(const HostRedrawOff&) = delete;

private:
    LateBound& m_cGrid;
};

Variant VariantOf(const CellValue& value)
{
    const std::wstring* pText = std::get_if<std::wstring>(&value);
    return pText ? Text(*pText) : Variant(std::get<std::int32_t>(value));
}

void EnsureColumns(LateBound& cGrid)
{
    if (CountIn(cGrid.Get(L"ColCount")) != 0)
        return;
    for (const GridColumn& column : colGridColumns)
        cGrid.Call(L"AddCol", {Text(column.sKey), Text(column.sHeader)});
}

void FillRow(LateBound& cGrid, std::size_t row, const Cut& cCut)
{
    cGrid.Put(L"RowKey", {Number(row)}, Text(cCut.Key().Text()));
    for (const GridColumn& column : colGridColumns)
        cGrid.Put(L"CellValue", {Number(row), Text(column.sKey)},
                  VariantOf(column.ValueOf(cCut, static_cast<std::int32_t>(row))));
}

} // namespace

LateBoundTree::LateBoundTree(IDispatch& oTv) : m_colNodes(ObjectOf(LateBound(oTv).Get(L"Nodes"))) {}

void LateBoundTree::Fill(const std::vector<TreeNode>& colNodes)
{
    LateBound cNodes(*m_colNodes);
    cNodes.Call(L"Clear", {});
    ComPtr<IDispatch> cRoot;
    for (const TreeNode& node : colNodes)
    {
        const bool bRoot = node.sParentKey.empty();
        const ComPtr<IDispatch> cNode =
            ObjectOf(cNodes.Call(L"Add", {bRoot ? Variant::Omitted() : Text(node.sParentKey),
                                          bRoot ? Variant::Omitted() : Variant(lChildOf), Text(node.sKey),
                                          Text(node.sText), Text(sImageClosed)}));
        if (node.bSorted)
            LateBound(*cNode).Put(L"Sorted", {}, Variant(true));
        if (bRoot)
            cRoot = cNode;
    }
    if (cRoot)
        LateBound(*cRoot).Put(L"Expanded", {}, Variant(true));
}

void LateBoundTree::ShowAsOpen(const std::wstring& sKey)
{
    ComPtr<IDispatch> cShown;
    ForEachNode(m_colNodes, [&](const ComPtr<IDispatch>& cObject) {
        LateBound cNode(*cObject);
        const std::optional<Variant> cKey = cNode.Get(L"Key").As(VT_BSTR);
        if (cKey && EqualIgnoringCase(TextOf(cKey->bstrVal), sKey))
            cShown = cObject;
        else
            cNode.Put(L"Image", {}, Text(sImageClosed));
    });
    if (!cShown)
        return;
    LateBound cNode(*cShown);
    cNode.Put(L"Image", {}, Text(sImageOpen));
    if (const ComPtr<IDispatch> cParent = ObjectIn<IDispatch>(cNode.Get(L"Parent"))) // the root has none
        LateBound(*cParent).Put(L"Image", {}, Text(sImageOpen));
}

void FillGrid(IDispatch& oGrid, clsSchedMan& cSchedMan, const ListedCuts& listed)
{
    LateBound cGrid(oGrid);
    const HostRedrawOff cOff(cGrid);
    cGrid.Put(L"RowCount", {}, Number(0));
    EnsureColumns(cGrid);
    FillingReport report(cSchedMan, listed);
    cGrid.Put(L"RowCount", {}, Number(listed.colCuts.size()));
    for (std::size_t row = 1; row <= listed.colCuts.size(); ++row)
    {
        FillRow(cGrid, row, *listed.colCuts[row - 1]);
        report.RowFilled(row);
    }
    report.Done();
}

} // namespace ravlo
