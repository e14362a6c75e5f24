// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Errors.h"

namespace ravlo
{

// The attributes of a type in a type library, released at the end.
class TypeAttributes
{
public:
    explicit TypeAttributes(ITypeInfo& cInfo) : m_cInfo(cInfo)
    {
        ThrowIfFailed(cInfo.GetTypeAttr(&m_pAttributes));
    }
    ~TypeAttributes() { m_cInfo.ReleaseTypeAttr(m_pAttributes); }
    TypeAttributes(const TypeAttributes&) = delete;
    TypeAttributes& operator=(const TypeAttributes&) = delete;
    const TYPEATTR* operator->() const noexcept { return m_pAttributes; }

private:
    ITypeInfo& m_cInfo;
    TYPEATTR* m_pAttributes = nullptr;
};

} // namespace ravlo
