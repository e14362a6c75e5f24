// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// An entry of an M3U playlist: a path or an address, and what the #EXTINF line before it says.
struct PlaylistEntry
{
    std::wstring sPath;
    std::wstring sName;           // "Artist - Title", or empty
    std::int32_t lDurationmS = 0; // 0 = unknown
};

// The entries of an M3U or M3U8 playlist, in its order. The bytes are UTF-8 when they can be, else those of
// the Western code page 1252.
std::vector<PlaylistEntry> ParsePlaylist(std::string_view bytes);

} // namespace ravlo
