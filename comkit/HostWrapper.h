// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Errors.h"

#include <RavloBase.h>

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace ravlo
{

// Base of a Wrapper around a host's object with interface I. A host object has one wrapper as long as that
// lives.
template <class Wrapper, class I> class HostWrapper
{
public:
    // Precondition: pHost is not null.
    static std::shared_ptr<Wrapper> Of(I* pHost)
    {
        ComPtr<IUnknown> cIdentity = IdentityOf(pHost);
        if (!cIdentity)
            ThrowIfFailed(E_NOINTERFACE); // two such objects could not be told apart
        std::weak_ptr<Wrapper>& cKnown = Known()[cIdentity.Get()];
        if (std::shared_ptr<Wrapper> cFound = cKnown.lock())
            return cFound;
        auto cWrapper = std::make_shared<Wrapper>(ComPtr<I>(pHost), std::move(cIdentity));
        cKnown = cWrapper;
        return cWrapper;
    }
    HostWrapper(const HostWrapper&) = delete;
    HostWrapper& operator=(const HostWrapper&) = delete;

    const ComPtr<I>& Host() const noexcept { return m_cHost; }

protected:
    HostWrapper(ComPtr<I> cHost, ComPtr<IUnknown> cIdentity)
        : m_cHost(std::move(cHost)), m_cIdentity(std::move(cIdentity))
    {
    }
    ~HostWrapper() { Forget(); }

    // After this, Of makes a new wrapper for the host's object.
    void Forget() noexcept
    {
        if (m_cIdentity)
            Known().erase(m_cIdentity.Get());
        m_cIdentity = nullptr;
    }

    // Calls the host's object: a failure or an exception becomes a RuntimeError.
    template <class Member, class... Arguments> void Call(Member member, Arguments... arguments) const
    {
        ThrowIfFailed(Outgoing([&] { return (m_cHost.Get()->*member)(arguments...); }), *m_cHost,
                      __uuidof(I));
    }

    // As Call, for a member that returns an object as its last argument. Throws error 91 when it returns
    // none.
    template <class Result, class Member, class... Arguments>
    ComPtr<Result> CallForObject(Member member, Arguments... arguments) const
    {
        ComPtr<Result> cResult;
        Call(member, arguments..., cResult.Receive());
        if (!cResult)
            throw RuntimeError(error::ObjectNotSet);
        return cResult;
    }

    // The revision of the host's object; 0 when it has none.
    std::uint64_t Revision() const
    {
        if (!m_bAskedForRevision)
        {
            m_bAskedForRevision = true;
            m_cRevision = m_cHost.template As<IRevision>(IID_IRevision);
        }
        hyper lRevision = 0;
        const bool bHas =
            m_cRevision && SUCCEEDED(Outgoing([&] { return m_cRevision->Revision(&lRevision); }));
        return bHas ? static_cast<std::uint64_t>(lRevision) : 0;
    }

private:
    // By the host object's identity. A wrapper holds it, so that no other object can get the same address.
    static std::unordered_map<IUnknown*, std::weak_ptr<Wrapper>>& Known()
    {
        static std::unordered_map<IUnknown*, std::weak_ptr<Wrapper>> colKnown;
        return colKnown;
    }

    ComPtr<I> m_cHost;
    ComPtr<IUnknown> m_cIdentity;
    mutable ComPtr<IRevision> m_cRevision;
    mutable bool m_bAskedForRevision = false;
};

} // namespace ravlo
