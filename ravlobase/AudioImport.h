// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "ravlobase/ImportRows.h"
#include "ravlobase/ImportStamp.h"

#include <functional>
#include <optional>
#include <string>

namespace ravlo
{

// What an import of audio files knows of the database.
struct AudioImport
{
    std::wstring sCategory; // for cuts without one; empty: the genre of the file
    // The stamp that the cut of this key had at its last import; nothing for a file that is new.
    std::function<std::optional<ImportStamp>(const TextKey& cKey)> stampOf;
};

// Collects the audio files of a folder and of the folders in it, in the order of their names. Throws 76 when
// there is no such folder, 75 when it cannot be read. Links to folders are not followed.
void CollectFolder(const std::wstring& sFolder, const AudioImport& import, ImportRows& rows);

// Collects the files of an M3U playlist, with what the playlist says where a file says nothing, or is not
// there. Follows playlists in it, each once. Throws as ReadFile.
void CollectPlaylist(const std::wstring& sFile, const AudioImport& import, ImportRows& rows);

// The row of one audio file. Texts of sKnown ("Artist - Title", may be empty) fill those that the file does
// not have; else the file's name does. Throws as ReadAudioTags.
LibraryRow RowOfFile(const std::wstring& sPath, const std::wstring& sKnown, const AudioImport& import);

// A row with the artist and the title of "Artist - Title", split at its first dash between blanks; without
// one the text is a title.
LibraryRow RowOfName(const std::wstring& sName);

// A genre as a category name: characters that no file name may have become "-".
std::wstring CategoryOfGenre(std::wstring sGenre);

} // namespace ravlo
