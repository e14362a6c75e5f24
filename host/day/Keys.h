// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <unordered_set>

namespace ravlo
{

struct KeyHash
{
    std::size_t operator()(const TextKey& cKey) const noexcept { return cKey.Hash(); }
};

// Texts, each once, without regard to case.
using Keys = std::unordered_set<TextKey, KeyHash>;

} // namespace ravlo
