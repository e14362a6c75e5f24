// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

namespace ravlo
{

// A free-standing cut that is only values: for placeholders and copies.
std::shared_ptr<Cut> NewPlainCut();

// A copy of all of a cut's values that belongs to no database.
std::shared_ptr<Cut> PlainCopyOf(const Cut& cCut);

// "m:ss", minutes without padding; a negative duration counts as 0. Milliseconds are cut off.
std::wstring DurationTextOf(std::int32_t lDurationmS);

} // namespace ravlo
