// SPDX-License-Identifier: MIT
// Cuts from playlists.
#include "ravlobase/AudioImport.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "platform/disk/Disk.h"
#include "ravlobase/Playlist.h"
#include "tags/AudioTags.h"

#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

bool IsPlaylist(const std::wstring& sPath)
{
    const std::wstring sExtension = FoldCase(disk::ExtensionOf(sPath));
    return sExtension == FoldCase(L".m3u") || sExtension == FoldCase(L".m3u8");
}

class PlaylistWalk
{
public:
    PlaylistWalk(const AudioImport& import, ImportRows& rows) : m_import(import), m_rows(rows) {}

    void Walk(const std::wstring& sPlaylist)
    {
        m_seen.insert(TextKey(sPlaylist));
        const std::vector<PlaylistEntry> entries = ParsePlaylist(disk::ReadFile(sPlaylist));
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            m_rows.Report(L"Reading entry " + CountText(i + 1) + L" of " + CountText(entries.size()), i + 1,
                          entries.size());
            try
            {
                Take(entries[i], sPlaylist);
            }
            catch (const RuntimeError& e)
            {
                m_rows.Reject(entries[i].sPath, e.Description());
            }
        }
    }

private:
    void Take(const PlaylistEntry& entry, const std::wstring& sPlaylist)
    {
        if (entry.sPath.find(L"://") != std::wstring::npos)
        {
            m_rows.Reject(entry.sPath, L"is an address, not a file");
            return;
        }
        const std::wstring sFile = disk::PathIn(disk::FolderOf(sPlaylist), entry.sPath);
        const TextKey cKey(sFile);
        if (IsPlaylist(entry.sPath))
        {
            if (m_seen.contains(cKey))
                m_rows.Reject(cKey.Text(), L"the playlist names itself, or is named twice");
            else
                Walk(sFile);
            return;
        }
        if (!m_seen.insert(cKey).second)
            return; // a song that is played twice is one cut
        if (disk::KindOf(sFile) == PathKind::None)
            TakeMissing(entry, cKey);
        else if (const std::optional<disk::Stamp> stamp = disk::StampOf(sFile);
                 stamp && m_import.stampOf(cKey) == stamp)
            ++m_rows.unchanged;
        else
            TakeFile(sFile, entry);
    }

    void TakeFile(const std::wstring& sFile, const PlaylistEntry& entry)
    {
        try
        {
            m_rows.colRows.push_back(RowOfFile(sFile, entry.sName, m_import));
        }
        catch (const RuntimeError& e)
        {
            m_rows.Reject(sFile, e.Description());
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
    PlaylistWalk(import, rows).Walk(disk::FullPath(sFile));
}

} // namespace ravlo
