// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <cstddef>
#include <optional>

namespace ravlo
{

// A host's position, counted from 1 in any number type and rounded to whole, as one from 0. Nothing when it
// is outside 1 to lCount. Error 13 when the value is no number.
std::optional<std::size_t> FindPosition(const Variant& cIndex, std::size_t count);

// The same; error 9 when it is outside.
std::size_t PositionFrom(const Variant& cIndex, std::size_t count);

// Whether the value is a number, a date or a boolean, as opposed to a text, an object or none.
bool IsNumber(const VARIANT& value) noexcept;

} // namespace ravlo
