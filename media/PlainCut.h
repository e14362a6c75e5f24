// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

namespace ravlo
{

// A free-standing cut that is only values: for placeholders and copies.
std::shared_ptr<Cut> NewPlainCut();

// What a selection reads of a cut. Keys share their texts.
struct PlainCutValues
{
    TextKey cKey;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cAlbum;
    std::int32_t lID = 0;
    std::int32_t lDurationmS = 0;
    DateTime dtLastPlayed = 0; // 0 = never
    bool bOpener = false;
};
// A free-standing cut with these values; the path is empty.
std::shared_ptr<Cut> NewPlainCut(const PlainCutValues& values);

// A copy of all of a cut's values that belongs to no database.
std::shared_ptr<Cut> PlainCopyOf(const Cut& cCut);

// "m:ss", minutes without padding; a negative duration counts as 0. Milliseconds are cut off.
std::wstring DurationTextOf(std::int32_t lDurationmS);

} // namespace ravlo
