// SPDX-License-Identifier: MIT
#include "com/LateBoundLibrary.h"

#include "base/CaseFolding.h"
#include "comkit/Collection.h"
#include "comkit/Errors.h"
#include "ui/library/LibraryFilling.h"

#include <algorithm>

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

// What a call that failed with an exception of the object's own left behind.
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

} // namespace

// ---- calling by name ----

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

LateBoundTree::LateBoundTree(IDispatch& oTv)
    : m_colNodes(ObjectOf(LateBound(oTv).Get(L"Nodes"))), m_cNodes(*m_colNodes)
{
}

void LateBoundTree::Clear()
{
    m_cNodes.Call(L"Clear", {});
    m_cFirst = nullptr;
    m_cLast = nullptr;
}

void LateBoundTree::AddNode(const std::wstring& sParentKey, const std::wstring& sKey,
                            const std::wstring& sText, const wchar_t* sImage)
{
    const bool bRoot = sParentKey.empty();
    m_cLast = ObjectOf(m_cNodes.Call(L"Add", {bRoot ? Variant::Omitted() : Text(sParentKey),
                                              bRoot ? Variant::Omitted() : Variant(lChildOf), Text(sKey),
                                              Text(sText), Text(sImage)}));
    if (!m_cFirst)
        m_cFirst = m_cLast;
}

void LateBoundTree::SetSorted() { LateBound(*m_cLast).Put(L"Sorted", {}, Variant(true)); }

void LateBoundTree::ExpandFirst() { LateBound(*m_cFirst).Put(L"Expanded", {}, Variant(true)); }

void LateBoundTree::ForEachNode(const std::function<void(const ComPtr<IDispatch>& cNode)>& body)
{
    try
    {
        return ForEachItem(m_colNodes.Get(), [&](const Variant& cItem) { body(ObjectOf(cItem)); });
    }
    catch (const RuntimeError& error)
    {
        if (error.Number() != lNoEnumerator)
            throw;
    }
    // By their numbers, then: classes of a script language have no enumerator.
    const std::size_t count = CountIn(m_cNodes.Get(L"Count"));
    for (std::size_t i = 1; i <= count; ++i)
        body(ObjectOf(m_cNodes.Get(L"Item", {Number(i)})));
}

void LateBoundTree::ShowAsOpen(const std::wstring& sKey)
{
    ComPtr<IDispatch> cShown;
    ForEachNode([&](const ComPtr<IDispatch>& cObject) {
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

// ---- the grid ----

void LateBoundGrid::SetRedraw(bool bRedraw) { m_cGrid.Put(L"Redraw", {}, Variant(bRedraw)); }

std::size_t LateBoundGrid::ColCount() const { return CountIn(m_cGrid.Get(L"ColCount")); }

void LateBoundGrid::AddCol(const std::wstring& sKey, const std::wstring& sHeader)
{
    m_cGrid.Call(L"AddCol", {Text(sKey), Text(sHeader)});
}

void LateBoundGrid::SetRowCount(std::size_t rows) { m_cGrid.Put(L"RowCount", {}, Number(rows)); }

void LateBoundGrid::SetRowKey(std::size_t row, const std::wstring& sKey)
{
    m_cGrid.Put(L"RowKey", {Number(row)}, Text(sKey));
}

void LateBoundGrid::SetCell(std::size_t row, const wchar_t* sColKey, const std::wstring& sValue)
{
    m_cGrid.Put(L"CellValue", {Number(row), Text(sColKey)}, Text(sValue));
}

void LateBoundGrid::SetCell(std::size_t row, const wchar_t* sColKey, std::int32_t lValue)
{
    m_cGrid.Put(L"CellValue", {Number(row), Text(sColKey)}, Variant(lValue));
}

} // namespace ravlo
