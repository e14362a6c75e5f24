// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <unordered_set>

namespace ravlo
{

// Texts, each once, without regard to case.
using Keys = std::unordered_set<TextKey>;

} // namespace ravlo
