// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Errors.h"
#include "comkit/Module.h"

namespace ravlo
{

// The reference count of an object, which keeps the module loaded.
class References
{
public:
    ULONG Add() noexcept { return ++m_lCount; }
    // Deletes the object, of which this is a member, with its last reference.
    template <class Object> ULONG Remove(Object* pObject) noexcept
    {
        const ULONG lLeft = --m_lCount;
        if (lLeft == 0)
        {
            m_lCount = 1; // destructors may take and drop references; the object is deleted once
            delete pObject;
        }
        return lLeft;
    }

private:
    ULONG m_lCount = 0;
    ModuleLock m_cLock;
};

// The three methods of IUnknown for an object with one interface besides.
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
    STDMETHODIMP_(ULONG) AddRef() override { return m_cReferences.Add(); }
    STDMETHODIMP_(ULONG) Release() override { return m_cReferences.Remove(this); }

protected:
    virtual bool Answers(REFIID iid) const noexcept { return iid == __uuidof(I); }

private:
    References m_cReferences;
};

// An automation object without type information: its members are called directly or by dispatch id.
template <class I> class Untyped : public Unknown<I>
{
public:
    STDMETHODIMP GetTypeInfoCount(UINT* plCount) override
    {
        if (plCount)
            *plCount = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }

protected:
    bool Answers(REFIID iid) const noexcept override { return iid == __uuidof(I) || iid == IID_IDispatch; }
};

// One of several interfaces of an object: lives as long as its owner and counts the owner's references.
template <class I> class Part : public I
{
public:
    explicit Part(IUnknown& cOwner) noexcept : m_cOwner(cOwner) {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    virtual ~Part() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        return m_cOwner.QueryInterface(iid, ppvObject);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return m_cOwner.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return m_cOwner.Release(); }

protected:
    IUnknown& Owner() const noexcept { return m_cOwner; }

    // Runs the body of a member. Keeps the owner alive during it, even when its last reference is dropped
    // inside.
    template <class Body> HRESULT Guard(const wchar_t* sSource, Body&& body) noexcept
    {
        const ComPtr<I> cSelf(this);
        return GuardAs(__uuidof(I), sSource, std::forward<Body>(body));
    }

private:
    IUnknown& m_cOwner;
};

} // namespace ravlo
