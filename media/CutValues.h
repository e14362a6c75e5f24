// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/Cut.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// What a database stores of a cut. Texts are shared between cuts and copies.
struct CutValues
{
    TextKey cKey;
    TextKey cPath;
    TextKey cSecondaryKey;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cAlbum;
    std::vector<TextKey> colCategories; // each name once without regard to case, none empty
    DateTime dtLastPlayed = 0;
    std::int32_t lYear = 0;
    std::int32_t lRunTimemS = 0;
    std::int32_t lDurationmS = 0;
    std::int32_t lCatLevel = 0; // 0 only on a cut of no database
    bool bOpener = false;
};

// Compares texts letter by letter, unlike keys.
bool SameText(const TextKey& cLeft, const TextKey& cRight) noexcept;

// Adds the names at the end, except those that are empty or already there without regard to case. Linear.
void AddNames(std::vector<TextKey>& colNames, const std::vector<std::wstring>& colMore);

// The names, joined with "/".
std::wstring JoinedNames(const std::vector<TextKey>& colNames);

// The stored values of any cut, without its repeated and empty category names.
CutValues ValuesOf(const Cut& cCut);

} // namespace ravlo
