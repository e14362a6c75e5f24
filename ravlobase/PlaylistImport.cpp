// SPDX-License-Identifier: MIT
// Cuts from playlists.
#include "ravlobase/AudioImport.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/Playlist.h"
#include "tags/AudioTags.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace fs = std::filesystem;

namespace
{

bool IsPlaylist(const std::wstring& sPath)
{
    const std::wstring sExtension = FoldCase(PathText(FilePath(sPath).extension()));
    return sExtension == FoldCase(L".m3u") || sExtension == FoldCase(L".m3u8");
}

// The file of an entry: relative to the playlist's folder. A list from Windows may be read elsewhere.
fs::path FileOf(const std::wstring& sEntry, const fs::path& cFolder)
{
    std::wstring sPath = sEntry;
    if constexpr (fs::path::preferred_separator == '/')
        std::replace(sPath.begin(), sPath.end(), L'\\', L'/');
    return fs::absolute(cFolder / FilePath(sPath)).lexically_normal();
}

class PlaylistWalk
{
public:
    PlaylistWalk(const AudioImport& import, ImportRows& rows) : m_import(import), m_rows(rows) {}

    void Walk(const fs::path& cPlaylist)
    {
        m_seen.insert(TextKey(PathText(cPlaylist)));
        const std::vector<PlaylistEntry> entries = ParsePlaylist(ReadFile(PathText(cPlaylist)));
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            m_rows.Report(L"Reading entry " + CountText(i + 1) + L" of " + CountText(entries.size()), i + 1,
                          entries.size());
            try
            {
                Take(entries[i], cPlaylist);
            }
            catch (const RuntimeError& e)
            {
                m_rows.Reject(entries[i].sPath, e.Description());
            }
        }
    }

private:
    void Take(const PlaylistEntry& entry, const fs::path& cPlaylist)
    {
        if (entry.sPath.find(L"://") != std::wstring::npos)
        {
            m_rows.Reject(entry.sPath, L"is an address, not a file");
            return;
        }
        const fs::path cFile = FileOf(entry.sPath, cPlaylist.parent_path());
        const TextKey cKey(PathText(cFile));
        if (IsPlaylist(entry.sPath))
        {
            if (m_seen.contains(cKey))
                m_rows.Reject(cKey.Text(), L"the playlist names itself, or is named twice");
            else
                Walk(cFile);
            return;
        }
        if (!m_seen.insert(cKey).second)
            return; // a song that is played twice is one cut
        std::error_code failed;
        if (!fs::exists(cFile, failed))
            TakeMissing(entry, cKey);
        else if (const auto stamp = StampOf(cFile); stamp && m_import.stampOf(cKey) == stamp)
            ++m_rows.unchanged;
        else
            TakeFile(cFile, entry);
    }

    void TakeFile(const fs::path& cFile, const PlaylistEntry& entry)
    {
        try
        {
            m_rows.colRows.push_back(RowOfFile(cFile, entry.sName, m_import));
        }
        catch (const RuntimeError& e)
        {
            m_rows.Reject(PathText(cFile), e.Description());
        }
    }

    // A file that only the studio's machine sees may be imported elsewhere, when the list says what it is.
    void TakeMissing(const PlaylistEntry& entry, const TextKey& cKey)
    {
        if (entry.sName.empty() || entry.lDurationmS == 0)
        {
            m_rows.Reject(cKey.Text(), L"was not found");
            return;
        }
        LibraryRow row = RowOfName(entry.sName);
        row.cPath = cKey;
        row.lDurationmS = entry.lDurationmS;
        row.lRunTimemS = entry.lDurationmS;
        if (!m_import.sCategory.empty())
            row.colCategories = {m_import.sCategory};
        row.bOnlyFirstCategories = true;
        m_rows.colRows.push_back(std::move(row));
    }

    const AudioImport& m_import;
    ImportRows& m_rows;
    std::unordered_set<TextKey> m_seen; // playlists and files
};

} // namespace

void CollectPlaylist(const std::wstring& sFile, const AudioImport& import, ImportRows& rows)
{
    PlaylistWalk(import, rows).Walk(fs::absolute(FilePath(sFile)).lexically_normal());
}

} // namespace ravlo
