// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "comkit/Variant.h"

#include <string>

namespace ravlo
{

// The HRESULT that hosts see as a run-time error number: 0x800A0000 | number. An error without such a number
// has its HRESULT, which is negative, as the number.
HRESULT ResultOf(const RuntimeError& cError) noexcept;

// Throws when hResult is a failure: its run-time error, with the standard description.
void ThrowIfFailed(HRESULT hResult);

// As above, for a call of another object through its interface iid: uses the description that the object
// left, when it supports error information.
void ThrowIfFailed(HRESULT hResult, IUnknown& cObject, REFIID iid);

// Returns the current exception's text. Call inside a catch block.
std::wstring CurrentErrorText();

// Returns the current exception as an HRESULT and leaves its text as the thread's error information. sSource
// names the class ("RavloScheduler.clsCat"). Call inside a catch block.
HRESULT ReportCurrentException(REFIID iid, const wchar_t* sSource) noexcept;

// Leaves an error text for the caller as the thread's error information.
void LeaveErrorInfo(REFIID iid, const wchar_t* sSource, const std::wstring& sDescription) noexcept;

// Runs the body of a member and turns exceptions into an HRESULT with error information.
template <class Body> HRESULT GuardAs(REFIID iid, const wchar_t* sSource, Body&& body) noexcept
{
    try
    {
        body();
        return S_OK;
    }
    catch (...)
    {
        return ReportCurrentException(iid, sSource);
    }
}

// The caller's place for a result. Throws E_POINTER when it is null.
template <class T> T& Out(T* pResult)
{
    if (!pResult)
        throw RuntimeError(E_POINTER, L"Invalid pointer");
    return *pResult;
}

// Stores the result of make for the caller. Does not call make without a place: a new reference or string
// would have no owner, and work that is reported as failed would be done.
template <class T, class Make> void StoreIn(T* pResult, Make&& make)
{
    T& place = Out(pResult);
    place = ToHost(make());
}

} // namespace ravlo
