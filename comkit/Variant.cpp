// SPDX-License-Identifier: MIT
#include "comkit/Variant.h"

#include "comkit/Errors.h"

#include <new>

namespace ravlo
{

BSTR NewBstr(std::wstring_view sText)
{
    const BSTR sResult = SysAllocStringLen(sText.data(), static_cast<UINT>(sText.size()));
    if (!sResult)
        throw std::bad_alloc();
    return sResult;
}

std::wstring TextOf(BSTR sText) { return sText ? std::wstring(sText, SysStringLen(sText)) : std::wstring(); }

void Clear(VARIANT& value) noexcept
{
    Outgoing([&] { return VariantClear(&value); });
}

Variant::Variant(const VARIANT& value) : Variant()
{
    ThrowIfFailed(Outgoing([&] { return VariantCopy(this, const_cast<VARIANT*>(&value)); }));
}

Variant::Variant(std::wstring_view sText) : Variant()
{
    bstrVal = NewBstr(sText);
    vt = VT_BSTR;
}

Variant::Variant(std::int32_t lValue) noexcept : Variant()
{
    vt = VT_I4;
    lVal = lValue;
}

Variant::Variant(bool bValue) noexcept : Variant()
{
    vt = VT_BOOL;
    boolVal = BoolOf(bValue);
}

Variant::Variant(IDispatch* pObject) noexcept : Variant()
{
    vt = VT_DISPATCH;
    pdispVal = pObject;
    AddReference(pObject);
}

Variant::Variant(IUnknown* pObject) noexcept : Variant()
{
    vt = VT_UNKNOWN;
    punkVal = pObject;
    AddReference(pObject);
}

Variant::Variant(Variant&& other) noexcept : VARIANT(other) { VariantInit(&other); }

Variant& Variant::operator=(Variant other) noexcept
{
    std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    return *this;
}

VARIANT Variant::Detach() noexcept
{
    const VARIANT result = *this;
    VariantInit(this);
    return result;
}

Variant Variant::Omitted() noexcept
{
    Variant cResult;
    cResult.vt = VT_ERROR;
    cResult.scode = DISP_E_PARAMNOTFOUND;
    return cResult;
}

Variant Variant::Dereferenced(const VARIANT& value)
{
    Variant cResult;
    ThrowIfFailed(Outgoing([&] { return VariantCopyInd(&cResult, const_cast<VARIANT*>(&value)); }));
    return cResult;
}

std::optional<Variant> Variant::As(VARTYPE vtWanted) const
{
    Variant cResult;
    // For an object the conversion reads its default member.
    const HRESULT hResult = Outgoing([&] {
        return VariantChangeTypeEx(&cResult, const_cast<Variant*>(this), LOCALE_INVARIANT, 0, vtWanted);
    });
    if (FAILED(hResult))
        return std::nullopt;
    return cResult;
}

namespace
{

// Swaps, so that cValue destroys the old value. Precondition: both have the type of cValue.
void SwapWithTarget(const VARIANT& reference, Variant& cValue)
{
    switch (cValue.vt)
    {
    case VT_DISPATCH:
        return std::swap(*reference.ppdispVal, cValue.pdispVal);
    case VT_UNKNOWN:
        return std::swap(*reference.ppunkVal, cValue.punkVal);
    case VT_BSTR:
        return std::swap(*reference.pbstrVal, cValue.bstrVal);
    case VT_I1:
    case VT_UI1:
        return std::swap(*reference.pbVal, cValue.bVal);
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return std::swap(*reference.piVal, cValue.iVal);
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
    case VT_R4:
        return std::swap(*reference.plVal, cValue.lVal);
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
        return std::swap(*reference.pllVal, cValue.llVal);
    default:
        throw RuntimeError(error::TypeMismatch);
    }
}

} // namespace

void StoreThrough(VARIANT& place, Variant cValue)
{
    if ((place.vt & VT_BYREF) == 0)
    {
        Clear(place);
        place = cValue.Detach();
        return;
    }
    if (place.vt == (VT_BYREF | VT_VARIANT))
        return StoreThrough(*place.pvarVal, std::move(cValue));
    auto cFitting = cValue.As(static_cast<VARTYPE>(place.vt & ~VT_BYREF));
    if (!cFitting)
        throw RuntimeError(error::TypeMismatch);
    SwapWithTarget(place, *cFitting);
}

bool IsNumber(const VARIANT& value) noexcept
{
    switch (value.vt)
    {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
    case VT_BOOL:
        return true;
    default:
        return false;
    }
}

bool IsOmitted(const VARIANT& value) noexcept
{
    const VARIANT& inner = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
    return inner.vt == VT_ERROR && inner.scode == DISP_E_PARAMNOTFOUND;
}

} // namespace ravlo
