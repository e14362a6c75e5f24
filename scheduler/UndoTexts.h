// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// "1 cut", "12 cuts": how the text of a step counts.
inline std::wstring CountedCuts(std::size_t count)
{
    return CountText(count) + (count == 1 ? L" cut" : L" cuts");
}

} // namespace ravlo
