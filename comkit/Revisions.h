// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "comkit/Outgoing.h"

#include <RavloBase.h>

#include <cstdint>

namespace ravlo
{

// The revisions of a host's object, which is asked for IRevision when they are first wanted.
class Revisions
{
public:
    // The object's present revision; 0 when it has none. The object outlives the call.
    std::uint64_t Of(IUnknown* pObject)
    {
        if (!m_bAsked)
        {
            m_bAsked = true;
            m_cRevision = ComPtr<IUnknown>(pObject).As<IRevision>(IID_IRevision);
        }
        hyper lRevision = 0;
        const bool bHas =
            m_cRevision && SUCCEEDED(Outgoing([&] { return m_cRevision->Revision(&lRevision); }));
        return bHas ? static_cast<std::uint64_t>(lRevision) : 0;
    }

private:
    ComPtr<IRevision> m_cRevision;
    bool m_bAsked = false;
};

} // namespace ravlo
