// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ravlo
{

// What an audio file says about itself. A text is empty and a number 0 where the file says nothing. Texts
// have no control characters and no blanks around them.
struct AudioTags
{
    std::wstring sArtist; // several ones are joined with ", "
    std::wstring sTitle;
    std::wstring sAlbum;
    std::wstring sGenre; // the first one
    std::int32_t lYear = 0;
    std::int32_t lDurationmS = 0; // above 0
};

// Whether a file is taken for audio, by its extension.
bool IsAudioFile(std::wstring_view sPath);

// Reads a file's tags and length. Throws a RuntimeError whose description follows the file's name: 75 for a
// file that cannot be opened, 321 for one that is no audio, is damaged, or has an excessively long text.
AudioTags ReadAudioTags(const std::wstring& sPath);

} // namespace ravlo
