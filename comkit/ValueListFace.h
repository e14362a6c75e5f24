// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Dispatch.h"

#include <KorvaCollection.h>

#include <vector>

namespace ravlo
{

// _clsValueList: plain values in ascending order, numbers before texts; texts compare without regard to case,
// equal values stay in the order in which they were added. Positions count from 1: error 9 outside. Error 13
// for anything else.
class ValueListFace final : public Dispatch<_clsValueList>
{
public:
    ValueListFace();

    STDMETHODIMP Add(VARIANT Value) override;
    STDMETHODIMP get_Item(VARIANT Index, VARIANT* pVal) override;
    STDMETHODIMP Remove(VARIANT Index) override;
    STDMETHODIMP get_Count(LONG* pVal) override;
    STDMETHODIMP get__NewEnum(IUnknown** ppEnum) override;

    static const ClassIdentity identity;

private:
    std::vector<Variant> m_colValues;
};

} // namespace ravlo
