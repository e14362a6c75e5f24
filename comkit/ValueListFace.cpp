// SPDX-License-Identifier: MIT
#include "comkit/ValueListFace.h"

#include "base/CaseFolding.h"
#include "comkit/Collection.h"

#include <algorithm>

namespace ravlo
{

const ClassIdentity ValueListFace::identity{
    CLSID_clsValueList, LIBID_KorvaCollection,          IID__clsValueList, nullptr, L"KorvaCollection",
    L"clsValueList",    L"KorvaCollection.clsValueList"};

namespace
{

bool ComesBefore(const Variant& cLeft, const Variant& cRight)
{
    const bool bLeftText = cLeft.vt == VT_BSTR;
    const bool bRightText = cRight.vt == VT_BSTR;
    if (bLeftText != bRightText)
        return bRightText;
    if (bLeftText)
        return FoldCase(TextOf(cLeft.bstrVal)) < FoldCase(TextOf(cRight.bstrVal));
    return VarCmp(const_cast<Variant*>(&cLeft), const_cast<Variant*>(&cRight), LOCALE_INVARIANT, 0) ==
           static_cast<HRESULT>(VARCMP_LT);
}

} // namespace

ValueListFace::ValueListFace() : Dispatch(identity) {}

STDMETHODIMP ValueListFace::Add(VARIANT Value)
{
    return Guard([&] {
        Variant cValue = Variant::Dereferenced(Value);
        if (!IsNumber(cValue) && cValue.vt != VT_BSTR)
            throw RuntimeError(error::TypeMismatch);
        const auto place = std::upper_bound(m_colValues.begin(), m_colValues.end(), cValue, ComesBefore);
        m_colValues.insert(place, std::move(cValue));
    });
}

STDMETHODIMP ValueListFace::get_Item(VARIANT Index, VARIANT* pVal)
{
    return Return(
        pVal, [&] { return m_colValues[PositionFrom(Variant::Dereferenced(Index), m_colValues.size())]; });
}

STDMETHODIMP ValueListFace::Remove(VARIANT Index)
{
    return Guard([&] {
        const std::size_t position = PositionFrom(Variant::Dereferenced(Index), m_colValues.size());
        m_colValues.erase(m_colValues.begin() + static_cast<std::ptrdiff_t>(position));
    });
}

STDMETHODIMP ValueListFace::get_Count(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(m_colValues.size()); });
}

STDMETHODIMP ValueListFace::get__NewEnum(IUnknown** ppEnum)
{
    const auto count = [this] { return m_colValues.size(); };
    const auto at = [this](std::size_t position) { return m_colValues[position]; };
    const ComPtr<IUnknown> cSelf(static_cast<_clsValueList*>(this));
    return Return(ppEnum, [&] { return NewEnumerator(cSelf, count, at); });
}

} // namespace ravlo
