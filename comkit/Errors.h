// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "comkit/Variant.h"

#include <stdexcept>
#include <string>

namespace ravlo
{

// An error that has no run-time error number: what the other side gets is the HRESULT and the text.
class ComError : public std::exception
{
public:
    ComError(HRESULT hResult, std::wstring sDescription)
        : m_hResult(hResult), m_sDescription(std::move(sDescription))
    {
    }
    HRESULT Result() const noexcept { return m_hResult; }
    const std::wstring& Description() const noexcept { return m_sDescription; }
    const char* what() const noexcept override { return "COM error"; }

private:
    HRESULT m_hResult;
    std::wstring m_sDescription;
};

// The HRESULT hosts see as a run-time error number: 0x800A0000 | number. A number that is an HRESULT already
// (negative) stays as it is.
HRESULT ResultOf(const RuntimeError& cError) noexcept;

// Throws when hResult is a failure: the run-time error it stands for, with the standard description.
void ThrowIfFailed(HRESULT hResult);

// The same for a call of another object through its interface iid: with the description that object left
// behind, when it says that it leaves any.
void ThrowIfFailed(HRESULT hResult, IUnknown& cObject, REFIID iid);

// Translates the exception that is being handled into an HRESULT and leaves its text as the thread's error
// information. sSource names the class ("RavloScheduler.clsCat").
HRESULT ReportCurrentException(REFIID iid, const wchar_t* sSource) noexcept;

// Leaves an error text for the caller as the thread's error information.
void LeaveErrorInfo(REFIID iid, const wchar_t* sSource, const std::wstring& sDescription) noexcept;

// Runs the body of a member: what it throws becomes an HRESULT with error information. No exception leaves.
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

// Where a callee stores a result; E_POINTER when the caller gave no place for it.
template <class T> T& Out(T* pResult)
{
    if (!pResult)
        throw ComError(E_POINTER, L"Invalid pointer");
    return *pResult;
}

// Stores what make yields where the caller keeps it. Without a place nothing is made: a new reference or
// string would have no owner, and work would be done that is reported as failed.
template <class T, class Make> void StoreIn(T* pResult, Make&& make)
{
    T& place = Out(pResult);
    place = ToHost(make());
}

} // namespace ravlo
