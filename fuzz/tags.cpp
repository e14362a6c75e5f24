// SPDX-License-Identifier: MIT
// Audio files: the first byte of an input chooses the extension, the rest is the file. It is read, with texts
// and numbers in their ranges, or refused in one clear sentence; reading never changes it.
#include "fuzz/TempFolder.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "tags/AudioTags.h"

#include <algorithm>

namespace ravlo::fuzz
{

namespace
{

constexpr const char* extensions[] = {"mp3", "flac", "ogg", "m4a", "wav", "aiff", "wma", "opus", "ape", "wv"};

void RequireText(const std::wstring& sText)
{
    RAVLO_REQUIRE(Trim(sText) == sText && sText.size() <= 2000);
    RAVLO_REQUIRE(std::none_of(sText.begin(), sText.end(), [](wchar_t c) { return c < L' ' || c == 0x7F; }));
}

void RequireTags(const std::wstring& sFile)
{
    try
    {
        const AudioTags tags = ReadAudioTags(sFile);
        for (const std::wstring& sText : {tags.sArtist, tags.sTitle, tags.sAlbum, tags.sGenre})
            RequireText(sText);
        RAVLO_REQUIRE(tags.lYear >= 0 && tags.lYear <= 9999 && tags.lDurationmS > 0);
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::InvalidFileFormat && !e.Description().empty());
    }
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    static const fuzz::TempFolder cFolder;
    if (size < 2)
        return 0;
    const std::string sName =
        std::string("song.") + fuzz::extensions[pBytes[0] % std::size(fuzz::extensions)];
    const std::string_view bytes = fuzz::BytesOf(pBytes + 1, size - 1);
    cFolder.Write(sName, bytes);
    fuzz::RequireTags(cFolder.File(sName));
    RAVLO_REQUIRE(cFolder.Read(sName) == bytes);
    return 0;
}
