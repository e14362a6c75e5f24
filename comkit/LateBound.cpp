// SPDX-License-Identifier: MIT
#include "comkit/LateBound.h"

#include "comkit/Errors.h"

namespace ravlo
{

namespace
{

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

} // namespace

HRESULT LateBound::Find(const wchar_t* sName, DISPID& lId)
{
    std::wstring sAsked = sName;
    LPOLESTR pName = sAsked.data();
    lId = DISPID_UNKNOWN;
    return Outgoing([&] {
        return m_cScriptObject ? m_cScriptObject->GetDispID(Bstr(sAsked).Get(), fdexNameCaseInsensitive, &lId)
                               : m_cObject->GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &lId);
    });
}

bool LateBound::Has(const wchar_t* sName)
{
    DISPID lId = DISPID_UNKNOWN;
    return SUCCEEDED(Find(sName, lId)) && lId != DISPID_UNKNOWN;
}

DISPID LateBound::IdOf(const wchar_t* sName)
{
    const auto found = m_colIds.find(sName);
    if (found != m_colIds.end())
        return found->second;
    DISPID lId = DISPID_UNKNOWN;
    ThrowIfFailed(Find(sName, lId));
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

} // namespace ravlo
