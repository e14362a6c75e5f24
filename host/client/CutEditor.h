// SPDX-License-Identifier: MIT
#pragma once

#include <RavloBase.h>
#include <windows.h>

namespace ravlo
{

// The controls of the cut editor's dialog.
inline constexpr int lCutDialog = 100;
inline constexpr int lCutPath = 101;
inline constexpr int lCutArtist = 102;
inline constexpr int lCutTitle = 103;
inline constexpr int lCutAlbum = 104;
inline constexpr int lCutYear = 105;
inline constexpr int lCutCategories = 106;
inline constexpr int lCutLevel = 107;
inline constexpr int lCutOpener = 108;

// Lets the user edit a cut, which the database then announces as modified, unless nothing was changed.
// Returns false when the user cancelled. Throws the database's errors; the cut may then be changed in part.
bool EditCut(HWND hOwner, _clsCut& cCut, _clsDataBase& cDataBase);

} // namespace ravlo
