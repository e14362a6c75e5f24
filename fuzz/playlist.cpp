// SPDX-License-Identifier: MIT
// Playlists: every entry names something in one line, the entries stay the same when written and read again,
// and each leads to a whole path or is refused as no file name.
#include "fuzz/Fuzz.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "platform/disk/Disk.h"
#include "ravlobase/Playlist.h"

namespace ravlo::fuzz
{

namespace
{

bool IsOneLine(const std::wstring& sText)
{
    return Trim(sText) == sText && sText.find(L'\n') == std::wstring::npos;
}

std::string Written(const std::vector<PlaylistEntry>& entries)
{
    std::string sText = "#EXTM3U\n";
    for (const PlaylistEntry& entry : entries)
    {
        const std::string sThousandths = std::to_string(entry.lDurationmS % 1000 + 1000).substr(1);
        sText += "#EXTINF:" + std::to_string(entry.lDurationmS / 1000) + "." + sThousandths + "," +
                 Utf8Of(entry.sName) + "\n" + Utf8Of(entry.sPath) + "\n";
    }
    return sText;
}

void RequirePath(const std::wstring& sName)
{
    try
    {
        const std::wstring sPath = disk::PathIn(L"/music", sName);
        RAVLO_REQUIRE(sPath.front() == L'/' && disk::FullPath(sPath) == sPath);
        RAVLO_REQUIRE(disk::PathIn(disk::FolderOf(sPath), sPath) == sPath);
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::BadFileName);
    }
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::vector<PlaylistEntry> entries = ParsePlaylist(fuzz::BytesOf(pBytes, size));
    for (const PlaylistEntry& entry : entries)
    {
        RAVLO_REQUIRE(!entry.sPath.empty() && fuzz::IsOneLine(entry.sPath) && fuzz::IsOneLine(entry.sName));
        RAVLO_REQUIRE(entry.lDurationmS >= 0);
        fuzz::RequirePath(entry.sPath);
    }
    const std::vector<PlaylistEntry> again = ParsePlaylist(fuzz::Written(entries));
    RAVLO_REQUIRE(again.size() == entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        RAVLO_REQUIRE(again[i].sPath == entries[i].sPath && again[i].sName == entries[i].sName);
        RAVLO_REQUIRE(std::abs(again[i].lDurationmS - entries[i].lDurationmS) <= 1);
    }
    return 0;
}
