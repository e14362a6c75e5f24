// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Com.h"

namespace ravlo
{

// Calls an object that another module may implement. COM lets no exception pass from one module to another;
// an object that throws all the same, be it C++ of any runtime that unwinds alike, has failed with
// E_UNEXPECTED.
template <class Call> HRESULT Outgoing(Call&& call) noexcept
{
    try
    {
        return call();
    }
    catch (...)
    {
        return E_UNEXPECTED;
    }
}

// The calls that answer nothing of use and are made where nothing may be thrown.
template <class I> void TakeReference(I* pObject) noexcept
{
    Outgoing([&] {
        pObject->AddRef();
        return S_OK;
    });
}
template <class I> void LetGo(I* pObject) noexcept
{
    Outgoing([&] {
        pObject->Release();
        return S_OK;
    });
}
template <class I> HRESULT Ask(I* pObject, REFIID iid, void** ppvObject) noexcept
{
    return Outgoing([&] { return pObject->QueryInterface(iid, ppvObject); });
}

} // namespace ravlo
