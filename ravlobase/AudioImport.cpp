// SPDX-License-Identifier: MIT
#include "ravlobase/AudioImport.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "platform/DeviceNames.h"
#include "ravlobase/FilePath.h"
#include "tags/AudioTags.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace fs = std::filesystem;

namespace
{

constexpr int lDeepest = 60; // folders in folders; a loop of links ends here

// Collects the audio files below a folder.
class FolderWalk
{
public:
    explicit FolderWalk(ImportRows& rows) : m_rows(rows) {}

    // Nothing when the folder cannot be listed.
    void Walk(const fs::path& cFolder, int lDepth)
    {
        std::vector<fs::path> colFolders;
        const std::size_t first = colFiles.size();
        if (lDepth > lDeepest || !List(cFolder, colFolders))
        {
            m_rows.Reject(PathText(cFolder), lDepth > lDeepest ? L"too many folders in each other"
                                                               : L"the folder cannot be read");
            return;
        }
        std::sort(colFiles.begin() + static_cast<std::ptrdiff_t>(first), colFiles.end());
        std::sort(colFolders.begin(), colFolders.end());
        for (const fs::path& cInner : colFolders)
            Walk(cInner, lDepth + 1);
    }

    std::vector<fs::path> colFiles;

private:
    bool List(const fs::path& cFolder, std::vector<fs::path>& colFolders)
    {
        std::error_code failed;
        for (fs::directory_iterator it(cFolder, failed), end; !failed && it != end; it.increment(failed))
        {
            std::error_code ignored;
            if (it->is_directory(ignored))
            {
                if (!it->is_symlink(ignored))
                    colFolders.push_back(it->path());
            }
            else if (IsAudioFile(PathText(it->path())))
                colFiles.push_back(it->path());
        }
        return !failed;
    }

    ImportRows& m_rows;
};

std::optional<std::wstring> NotEmpty(const std::wstring& sText)
{
    return sText.empty() ? std::nullopt : std::optional(sText);
}

void TakeFile(const fs::path& cPath, const AudioImport& import, ImportRows& rows)
{
    const std::wstring sPath = PathText(cPath);
    const auto stamp = StampOf(cPath);
    if (stamp && import.stampOf(TextKey(sPath)) == stamp)
    {
        ++rows.unchanged;
        return;
    }
    try
    {
        rows.colRows.push_back(RowOfFile(cPath, L"", import));
    }
    catch (const RuntimeError& e)
    {
        rows.Reject(sPath, e.Description());
    }
}

} // namespace

std::optional<ImportStamp> StampOf(const fs::path& cPath)
{
    std::error_code failedTime;
    std::error_code failedSize;
    const auto when = fs::last_write_time(cPath, failedTime);
    const auto size = fs::file_size(cPath, failedSize);
    if (failedTime || failedSize)
        return std::nullopt;
    const auto since = std::chrono::file_clock::to_sys(when).time_since_epoch();
    return ImportStamp{std::chrono::duration_cast<std::chrono::milliseconds>(since).count(),
                       static_cast<std::int64_t>(size)};
}

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
    const auto dash = sName.find(sDash);
    if (dash != std::wstring::npos)
        row.sArtist = NotEmpty(Trim(sName.substr(0, dash)));
    row.sTitle = NotEmpty(Trim(dash == std::wstring::npos ? sName : sName.substr(dash + sDash.size())));
    return row;
}

LibraryRow RowOfFile(const fs::path& cPath, const std::wstring& sKnown, const AudioImport& import)
{
    const AudioTags tags = ReadAudioTags(PathText(cPath));
    LibraryRow row = RowOfName(sKnown.empty() ? PathText(cPath.stem()) : sKnown);
    row.cPath = TextKey(PathText(cPath));
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
    row.stamp = StampOf(cPath);
    return row;
}

void CollectFolder(const std::wstring& sFolder, const AudioImport& import, ImportRows& rows)
{
    std::error_code failed;
    const fs::path cFolder = fs::absolute(FilePath(sFolder)).lexically_normal();
    if (!fs::is_directory(cFolder, failed))
        throw RuntimeError(error::PathNotFound, L"The folder \"" + sFolder + L"\" was not found.");
    if (fs::directory_iterator(cFolder, failed); failed)
        throw RuntimeError(error::PathFileAccess, L"The folder \"" + sFolder + L"\" cannot be read.");
    FolderWalk walk(rows);
    walk.Walk(cFolder, 0);
    const std::size_t files = walk.colFiles.size();
    std::unordered_set<TextKey> keys;
    for (std::size_t i = 0; i < files; ++i)
    {
        rows.Report(L"Reading file " + CountText(i + 1) + L" of " + CountText(files), i + 1, files);
        if (keys.insert(TextKey(PathText(walk.colFiles[i]))).second)
            TakeFile(walk.colFiles[i], import, rows);
        else
            rows.Reject(PathText(walk.colFiles[i]), L"another file has the same name but for the case");
    }
}

} // namespace ravlo
