// SPDX-License-Identifier: MIT
#include "ravlobase/AudioImport.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "platform/DeviceNames.h"
#include "platform/disk/Disk.h"
#include "tags/AudioTags.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

constexpr int lDeepest = 60; // folders in folders; a loop of links ends here

// Collects the audio files below a folder.
class FolderWalk
{
public:
    explicit FolderWalk(ImportRows& rows) : m_rows(rows) {}

    // Nothing when the folder cannot be listed.
    void Walk(const std::wstring& sFolder, int lDepth)
    {
        std::vector<std::wstring> colFolders;
        const std::size_t first = colFiles.size();
        if (lDepth > lDeepest || !List(sFolder, colFolders))
        {
            m_rows.Reject(sFolder, lDepth > lDeepest ? L"too many folders in each other"
                                                     : L"the folder cannot be read");
            return;
        }
        std::sort(colFiles.begin() + static_cast<std::ptrdiff_t>(first), colFiles.end());
        std::sort(colFolders.begin(), colFolders.end());
        for (const std::wstring& sInner : colFolders)
            Walk(sInner, lDepth + 1);
    }

    std::vector<std::wstring> colFiles;

private:
    bool List(const std::wstring& sFolder, std::vector<std::wstring>& colFolders)
    {
        std::optional<std::vector<disk::Entry>> entries = disk::Entries(sFolder);
        if (!entries)
            return false;
        for (disk::Entry& entry : *entries)
            if (!entry.bFolder)
            {
                if (IsAudioFile(entry.sPath))
                    colFiles.push_back(std::move(entry.sPath));
            }
            else if (!entry.bLink)
                colFolders.push_back(std::move(entry.sPath));
        return true;
    }

    ImportRows& m_rows;
};

std::optional<std::wstring> NotEmpty(const std::wstring& sText)
{
    return sText.empty() ? std::nullopt : std::optional(sText);
}

void TakeFile(const std::wstring& sPath, const AudioImport& import, ImportRows& rows)
{
    const std::optional<disk::Stamp> stamp = disk::StampOf(sPath);
    if (stamp && import.stampOf(TextKey(sPath)) == stamp)
    {
        ++rows.unchanged;
        return;
    }
    try
    {
        rows.colRows.push_back(RowOfFile(sPath, L"", import));
    }
    catch (const RuntimeError& e)
    {
        rows.Reject(sPath, e.Description());
    }
}

} // namespace

std::wstring CategoryOfGenre(std::wstring sGenre)
{
    constexpr std::wstring_view sNotInNames = L"\\/:*?\"<>|";
    for (wchar_t& c : sGenre)
        if (sNotInNames.find(c) != std::wstring_view::npos)
            c = L'-';
    while (!sGenre.empty() && (sGenre.back() == L'.' || sGenre.back() == L' '))
        sGenre.pop_back();
    return IsDeviceName(sGenre) ? sGenre + L"-" : sGenre;
}

LibraryRow RowOfName(const std::wstring& sName)
{
    constexpr std::wstring_view sDash = L" - ";
    LibraryRow row;
    const std::size_t dash = sName.find(sDash);
    if (dash != std::wstring::npos)
        row.sArtist = NotEmpty(Trim(sName.substr(0, dash)));
    row.sTitle = NotEmpty(Trim(dash == std::wstring::npos ? sName : sName.substr(dash + sDash.size())));
    return row;
}

LibraryRow RowOfFile(const std::wstring& sPath, const std::wstring& sKnown, const AudioImport& import)
{
    const AudioTags tags = ReadAudioTags(sPath);
    LibraryRow row = RowOfName(sKnown.empty() ? disk::StemOf(sPath) : sKnown);
    row.cPath = TextKey(sPath);
    // With a title in the file its name is no credit: "12 - Title" is common.
    if (!tags.sArtist.empty() || !tags.sTitle.empty())
        row.sArtist = NotEmpty(tags.sArtist);
    if (!tags.sTitle.empty())
        row.sTitle = tags.sTitle;
    row.sAlbum = NotEmpty(tags.sAlbum);
    if (tags.lYear > 0)
        row.lYear = tags.lYear;
    row.lDurationmS = tags.lDurationmS;
    row.lRunTimemS = tags.lDurationmS;
    const std::wstring sCategory = import.sCategory.empty() ? CategoryOfGenre(tags.sGenre) : import.sCategory;
    if (!sCategory.empty())
        row.colCategories = {sCategory};
    row.bOnlyFirstCategories = true;
    row.stamp = disk::StampOf(sPath);
    return row;
}

void CollectFolder(const std::wstring& sFolder, const AudioImport& import, ImportRows& rows)
{
    const std::wstring sWhole = disk::FullPath(sFolder);
    const PathKind eKind = disk::KindOf(sWhole);
    if (eKind != PathKind::Folder && eKind != PathKind::Unknown)
        throw RuntimeError(error::PathNotFound, L"The folder \"" + sFolder + L"\" was not found.");
    if (!disk::Entries(sWhole))
        throw RuntimeError(error::PathFileAccess, L"The folder \"" + sFolder + L"\" cannot be read.");
    FolderWalk walk(rows);
    walk.Walk(sWhole, 0);
    const std::size_t files = walk.colFiles.size();
    std::unordered_set<TextKey> keys;
    for (std::size_t i = 0; i < files; ++i)
    {
        rows.Report(L"Reading file " + CountText(i + 1) + L" of " + CountText(files), i + 1, files);
        if (keys.insert(TextKey(walk.colFiles[i])).second)
            TakeFile(walk.colFiles[i], import, rows);
        else
            rows.Reject(walk.colFiles[i], L"another file has the same name but for the case");
    }
}

} // namespace ravlo
