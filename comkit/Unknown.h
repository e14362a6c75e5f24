// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Module.h"

namespace ravlo
{

// The three methods of IUnknown for an object with one interface beside it. Each object keeps the module
// loaded and ends with its last reference.
template <class I> class Unknown : public I
{
public:
    Unknown() = default;
    Unknown(const Unknown&) = delete;
    Unknown& operator=(const Unknown&) = delete;
    virtual ~Unknown() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        if (!ppvObject)
            return E_POINTER;
        *ppvObject = nullptr;
        if (iid != IID_IUnknown && !Answers(iid))
            return E_NOINTERFACE;
        *ppvObject = static_cast<I*>(this);
        this->AddRef();
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

protected:
    virtual bool Answers(REFIID iid) const noexcept { return iid == __uuidof(I); }

private:
    ULONG m_lReferences = 0;
    ModuleLock m_cLock;
};

} // namespace ravlo
