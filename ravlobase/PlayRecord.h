// SPDX-License-Identifier: MIT
#pragma once

#include "media/CutValues.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// A play as the file keeps it: what the cut was when it aired. A later change of the cut, and its removal,
// leave the record as it is.
struct PlayRecord
{
    DateTime dtPlayed = 0;
    TextKey cKey;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cAlbum;
    std::vector<TextKey> colCategories;
    std::int32_t lDurationmS = 0;
    std::int32_t lCatLevel = 0;
};

// A play as it is read from the file: its texts as they are there.
struct RecordedPlay
{
    DateTime dtPlayed = 0;
    std::wstring sKey;
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::int32_t lDurationmS = 0;
    std::wstring sCategories; // between slashes
    std::int32_t lCatLevel = 0;
};

// Whether the step from the old values to the next ones is a play: another last-played time than "never".
bool IsPlay(const CutValues& old, const CutValues& next) noexcept;

// The record of the values' last play.
PlayRecord PlayOf(const CutValues& values);

} // namespace ravlo
