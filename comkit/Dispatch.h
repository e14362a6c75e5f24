// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/EventSource.h"
#include "comkit/InterfaceDescription.h"

#include <functional>
#include <type_traits>

namespace ravlo
{

// Everything a face has besides its own members: identity and reference count, the dual interface's
// late-bound side, error and class information, and the connection points of a class with events. A face
// translates between the interface I and the core object it holds; its last release deletes it.
template <class I> class Dispatch : public I, public ISupportErrorInfo, public IProvideClassInfo2
{
public:
    Dispatch(const Dispatch&) = delete;
    Dispatch& operator=(const Dispatch&) = delete;
    virtual ~Dispatch() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        if (!ppvObject)
            return E_POINTER;
        *ppvObject = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(I))
            *ppvObject = static_cast<I*>(this);
        else if (iid == IID_ISupportErrorInfo)
            *ppvObject = static_cast<ISupportErrorInfo*>(this);
        else if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
            *ppvObject = static_cast<IProvideClassInfo2*>(this);
        else if (iid == IID_IConnectionPointContainer && Events())
            *ppvObject = static_cast<IConnectionPointContainer*>(Events());
        else
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return m_cReferences.Add(); }
    STDMETHODIMP_(ULONG) Release() override { return m_cReferences.Remove(this); }

    STDMETHODIMP GetTypeInfoCount(UINT* plCount) override
    {
        if (!plCount)
            return E_POINTER;
        *plCount = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT lIndex, LCID, ITypeInfo** ppInfo) override
    {
        if (!ppInfo)
            return E_POINTER;
        *ppInfo = nullptr;
        if (lIndex != 0)
            return DISP_E_BADINDEX;
        return Guard([&] { *ppInfo = ComPtr<ITypeInfo>(&Description().Info()).Detach(); });
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* pNames, UINT lCount, LCID, DISPID* pIds) override
    {
        HRESULT hNames = E_POINTER;
        const HRESULT hResult =
            Guard([&] { hNames = Description().Info().GetIDsOfNames(pNames, lCount, pIds); });
        return FAILED(hResult) ? hResult : hNames;
    }
    STDMETHODIMP Invoke(DISPID lMember, REFIID, LCID lcid, WORD wFlags, DISPPARAMS* pArguments,
                        VARIANT* pResult, EXCEPINFO* pExcepInfo, UINT* pArgErr) override
    {
        if (!pArguments)
            return E_POINTER;
        HRESULT hInvoke = E_FAIL;
        const HRESULT hResult = Guard([&] {
            hInvoke = Description().Invoke(static_cast<I*>(this), lMember, lcid, wFlags, *pArguments, pResult,
                                           pExcepInfo, pArgErr);
        });
        return FAILED(hResult) ? hResult : hInvoke;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override
    {
        return iid == __uuidof(I) ? S_OK : S_FALSE;
    }

    STDMETHODIMP GetClassInfo(ITypeInfo** ppInfo) override
    {
        return Return(ppInfo, [&] { return module::TypeInfoOf(m_identity.clsid); });
    }
    STDMETHODIMP GetGUID(DWORD lKind, GUID* pGuid) override
    {
        if (!pGuid)
            return E_POINTER;
        *pGuid = GUID_NULL;
        if (lKind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !m_identity.pSource)
            return E_INVALIDARG;
        *pGuid = *m_identity.pSource;
        return S_OK;
    }

protected:
    explicit Dispatch(const ClassIdentity& identity) noexcept : m_identity(identity) {}

    // Null for a class without events.
    virtual EventSource* Events() noexcept { return nullptr; }

    // Runs the body of a member. Keeps the face alive during it, even when the host releases it inside.
    template <class Body> HRESULT Guard(Body&& body) noexcept
    {
        const ComPtr<I> cSelf(this);
        return GuardAs(__uuidof(I), m_identity.sProgID, std::forward<Body>(body));
    }
    // A member that returns the result of make. Does not call make when pVal is null.
    template <class Value, class Make> HRESULT Return(Value* pVal, Make&& make) noexcept
    {
        return Guard([&] { StoreIn(pVal, make); });
    }
    // A property that is a member function or a field of the core object.
    template <class Value, class Core, class Member>
    HRESULT Get(Value* pVal, const Core& cCore, Member member) noexcept
    {
        return Return(pVal, [&] { return std::invoke(member, *cCore); });
    }
    template <class Value, class Core, class Member>
    HRESULT Put(Value newVal, const Core& cCore, Member member) noexcept
    {
        return Guard([&] {
            if constexpr (std::is_member_object_pointer_v<Member>)
                std::invoke(member, *cCore) = FromHost(newVal);
            else
                std::invoke(member, *cCore, FromHost(newVal));
        });
    }

private:
    const InterfaceDescription& Description() const { return module::DescriptionOf(__uuidof(I)); }

    const ClassIdentity& m_identity;
    References m_cReferences;
};

} // namespace ravlo
