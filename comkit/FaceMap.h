// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"

#include <unordered_map>

namespace ravlo
{

// Identity: finds the one live face of each core object. Owns neither. A face adds itself with a FaceEntry
// member and holds its core object, so that no other object gets the same address while the face lives.
template <class Face> class FaceMap
{
public:
    static FaceMap& Instance()
    {
        static FaceMap map;
        return map;
    }

    // Returns the face of the core object at pCore, or the result of make() when it has none.
    template <class Make> ComPtr<Face> Get(const void* pCore, Make&& make)
    {
        const auto found = m_colByCore.find(pCore);
        return found != m_colByCore.end() ? ComPtr<Face>(found->second) : make();
    }

    // Returns the face with this identity; null when the object is no face of this module.
    Face* Find(IUnknown* pObject) const noexcept
    {
        const auto found = m_colByIdentity.find(IdentityOf(pObject).Get());
        return found != m_colByIdentity.end() ? found->second : nullptr;
    }

private:
    template <class> friend class FaceEntry;
    std::unordered_map<const void*, Face*> m_colByCore;
    std::unordered_map<IUnknown*, Face*> m_colByIdentity;
};

template <class Face> class FaceEntry
{
public:
    // pIdentity: what the face answers for IUnknown.
    FaceEntry(const void* pCore, Face* pFace, IUnknown* pIdentity) : m_pCore(pCore), m_pIdentity(pIdentity)
    {
        auto& map = FaceMap<Face>::Instance();
        const auto entry = map.m_colByIdentity.emplace(pIdentity, pFace).first;
        try
        {
            map.m_colByCore.emplace(pCore, pFace);
        }
        catch (...)
        {
            map.m_colByIdentity.erase(entry);
            throw;
        }
    }
    FaceEntry(const FaceEntry&) = delete;
    FaceEntry& operator=(const FaceEntry&) = delete;
    ~FaceEntry()
    {
        auto& map = FaceMap<Face>::Instance();
        map.m_colByCore.erase(m_pCore);
        map.m_colByIdentity.erase(m_pIdentity);
    }

private:
    const void* m_pCore;
    IUnknown* m_pIdentity;
};

} // namespace ravlo
