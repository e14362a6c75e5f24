// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/LibraryContents.h"

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace ravlo
{

// How many cuts are before each listed cut in the order of its level.
class NextToPlay
{
public:
    // Forgets the cuts listed before.
    void Reset() { m_colBefore.reset(); }
    // Nothing for a cut in no level. In the listing of all audio, a cut in several levels gets the smallest
    // of its numbers; the first call reads the order of every level.
    std::optional<std::size_t> Before(const ListedCuts& listed, std::size_t listedRow);

private:
    std::optional<std::unordered_map<TextKey, std::size_t>> m_colBefore; // in the listing of all audio
};

} // namespace ravlo
