// SPDX-License-Identifier: MIT
#include "comkit/Positions.h"

#include "base/RuntimeError.h"

namespace ravlo
{

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

std::optional<std::size_t> FindPosition(const Variant& cIndex, std::size_t count)
{
    if (!IsNumber(cIndex))
        throw RuntimeError(error::TypeMismatch);
    const auto cLong = cIndex.As(VT_I4); // nothing: outside 32 bits, and so outside every collection
    if (!cLong || cLong->lVal < 1 || static_cast<std::size_t>(cLong->lVal) > count)
        return std::nullopt;
    return static_cast<std::size_t>(cLong->lVal) - 1;
}

std::size_t PositionFrom(const Variant& cIndex, std::size_t count)
{
    const auto lPosition = FindPosition(cIndex, count);
    if (!lPosition)
        throw RuntimeError(error::SubscriptOutOfRange);
    return *lPosition;
}

} // namespace ravlo
