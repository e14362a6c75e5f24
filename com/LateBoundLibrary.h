// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"
#include "ui/library/LibraryTargets.h"

#include <dispex.h>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ravlo
{

// Another automation object, called by name. What it answers with a failure is thrown with its description.
class LateBound
{
public:
    explicit LateBound(IDispatch& cObject) : m_cObject(&cObject), m_cScriptObject(m_cObject.As<IDispatchEx>())
    {
    }

    Variant Get(const wchar_t* sName, const std::vector<Variant>& colArguments = {});
    void Put(const wchar_t* sName, const std::vector<Variant>& colArguments, const Variant& value);
    Variant Call(const wchar_t* sName, const std::vector<Variant>& colArguments);

private:
    DISPID IdOf(const wchar_t* sName);
    Variant Invoke(const wchar_t* sName, WORD wFlags, std::vector<Variant> colReversed);

    ComPtr<IDispatch> m_cObject;
    ComPtr<IDispatchEx>
        m_cScriptObject; // what a script's objects are called through: their members come and go
    std::map<std::wstring, DISPID> m_colIds; // asked for once: a grid is called for every cell
};

// A tree that a host passes: Nodes with Clear, Add, and _NewEnum or Count and Item; its nodes have Key,
// Image, Sorted, Expanded and Parent.
class LateBoundTree final : public TreeTarget, public TreeImages
{
public:
    explicit LateBoundTree(IDispatch& oTv);

    void Clear() override;
    void AddNode(const std::wstring& sParentKey, const std::wstring& sKey, const std::wstring& sText,
                 const wchar_t* sImage) override;
    void SetSorted() override;
    void ExpandFirst() override;
    void ShowAsOpen(const std::wstring& sKey) override;

private:
    void ForEachNode(const std::function<void(const ComPtr<IDispatch>& cNode)>& body);

    ComPtr<IDispatch> m_colNodes;
    LateBound m_cNodes;
    ComPtr<IDispatch> m_cFirst; // of the nodes added here
    ComPtr<IDispatch> m_cLast;
};

// A grid that a host passes: Redraw, ColCount, AddCol, RowCount, RowKey and CellValue.
class LateBoundGrid final : public CellGrid
{
public:
    explicit LateBoundGrid(IDispatch& oGrid) : m_cGrid(oGrid) {}

    void SetRedraw(bool bRedraw) override;
    std::size_t ColCount() const override;
    void AddCol(const std::wstring& sKey, const std::wstring& sHeader) override;
    void Clear() override { SetRowCount(0); }
    void SetRowCount(std::size_t rows) override;
    void SetRowKey(std::size_t row, const std::wstring& sKey) override;
    void SetCell(std::size_t row, const wchar_t* sColKey, const std::wstring& sValue) override;
    void SetCell(std::size_t row, const wchar_t* sColKey, std::int32_t lValue) override;

private:
    mutable LateBound m_cGrid;
};

} // namespace ravlo
