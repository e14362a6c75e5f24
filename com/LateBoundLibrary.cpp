// SPDX-License-Identifier: MIT
#include "com/LateBoundLibrary.h"

#include "base/CaseFolding.h"
#include "comkit/Collection.h"
#include "comkit/Errors.h"
#include "comkit/Variant.h"
#include "ui/library/GridColumns.h"

#include <algorithm>
#include <dispex.h>
#include <functional>
#include <map>
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

// Throws the error that a failed call has left in info.
[[noreturn]] void Rethrow(EXCEPINFO& info)
{
    if (info.pfnDeferredFillIn)
        Outgoing([&] { return info.pfnDeferredFillIn(&info); });
    const std::wstring sDescription = TextOf(info.bstrDescription);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    const HRESULT hResult = FAILED(info.scode) ? info.scode : E_FAIL;
    const bool bRunTimeError = HRESULT_FACILITY(hResult) == FACILITY_CONTROL;
    throw RuntimeError(info.wCode != 0 ? info.wCode
                       : bRunTimeError ? HRESULT_CODE(hResult)
                                       : static_cast<std::int32_t>(hResult),
                       sDescription);
}

// Another automation object, called by name.
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
    // Set for a script's object, whose members may change; otherwise null.
    ComPtr<IDispatchEx> m_cScriptObject;
    std::map<std::wstring, DISPID> m_colIds; // looked up once: a grid is called for every cell
};

DISPID LateBound::IdOf(const wchar_t* sName)
{
    const auto found = m_colIds.find(sName);
    if (found != m_colIds.end())
        return found->second;
    std::wstring sAsked = sName;
    LPOLESTR pName = sAsked.data();
    DISPID lId = DISPID_UNKNOWN;
    if (m_cScriptObject)
        ThrowIfFailed(Outgoing(
            [&] { return m_cScriptObject->GetDispID(Bstr(sAsked).Get(), fdexNameCaseInsensitive, &lId); }));
    else
        ThrowIfFailed(Outgoing(
            [&] { return m_cObject->GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &lId); }));
    m_colIds.emplace(sName, lId);
    return lId;
}

Variant LateBound::Invoke(const wchar_t* sName, WORD wFlags, std::vector<Variant> colReversed)
{
    const bool bPut = wFlags == DISPATCH_PROPERTYPUT;
    DISPID lValue = DISPID_PROPERTYPUT;
    DISPPARAMS arguments{colReversed.data(), bPut ? &lValue : nullptr, static_cast<UINT>(colReversed.size()),
                         bPut ? 1u : 0u};
    Variant result;
    EXCEPINFO info{};
    const DISPID lId = IdOf(sName);
    VARIANT* const pResult = bPut ? nullptr : &result;
    const HRESULT hResult = Outgoing([&] {
        return m_cScriptObject ? m_cScriptObject->InvokeEx(lId, LOCALE_USER_DEFAULT, wFlags, &arguments,
                                                           pResult, &info, nullptr)
                               : m_cObject->Invoke(lId, IID_NULL, LOCALE_USER_DEFAULT, wFlags, &arguments,
                                                   pResult, &info, nullptr);
    });
    if (hResult == DISP_E_EXCEPTION)
        Rethrow(info);
    ThrowIfFailed(hResult);
    return result;
}

Variant LateBound::Get(const wchar_t* sName, const std::vector<Variant>& colArguments)
{
    return Invoke(sName, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                  {colArguments.rbegin(), colArguments.rend()});
}

Variant LateBound::Call(const wchar_t* sName, const std::vector<Variant>& colArguments)
{
    return Invoke(sName, DISPATCH_METHOD, {colArguments.rbegin(), colArguments.rend()});
}

void LateBound::Put(const wchar_t* sName, const std::vector<Variant>& colArguments, const Variant& value)
{
    std::vector<Variant> colReversed(colArguments.rbegin(), colArguments.rend());
    colReversed.insert(colReversed.begin(), value);
    Invoke(sName, DISPATCH_PROPERTYPUT, std::move(colReversed));
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
