// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <windows.h>

#include <unknwn.h>

namespace ravlo
{

// An object for the system, such as one of a drag: one interface, reference counted. It begins with one
// reference.
template <class Interface> class CountedObject : public Interface
{
public:
    CountedObject() = default;
    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;
    virtual ~CountedObject() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppObject) override
    {
        const bool bKnown = iid == IID_IUnknown || iid == __uuidof(Interface);
        *ppObject = bKnown ? static_cast<Interface*>(this) : nullptr;
        if (!bKnown)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_lReferences; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG lLeft = --m_lReferences;
        if (lLeft == 0)
            delete this;
        return lLeft;
    }

private:
    std::atomic<ULONG> m_lReferences = 1;
};

} // namespace ravlo
