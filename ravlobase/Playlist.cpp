// SPDX-License-Identifier: MIT
#include "ravlobase/Playlist.h"

#include "base/Text.h"
#include "base/Utf8.h"

#include <limits>
#include <utility>

namespace ravlo
{

namespace
{

// What code page 1252 has from 0x80 to 0x9F; its other bytes are the first characters of Unicode.
constexpr wchar_t page1252[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::wstring TextOf(std::string_view bytes)
{
    bytes = WithoutByteOrderMark(bytes);
    if (std::optional<std::wstring> sText = TextFromUtf8(bytes))
        return *sText;
    std::wstring sText;
    for (const char byte : bytes)
    {
        const auto c = static_cast<unsigned char>(byte);
        sText += c >= 0x80 && c <= 0x9F ? page1252[c - 0x80] : static_cast<wchar_t>(c);
    }
    return sText;
}

// "#EXTINF:205,Artist - Title"; seconds may have a fraction, and attributes may follow them.
void TakeInformation(PlaylistEntry& entry, const std::wstring& sValue)
{
    const std::size_t comma = sValue.find(L',');
    if (comma != std::wstring::npos)
        entry.sName = Trim(sValue.substr(comma + 1));
    const std::wstring sSeconds = sValue.substr(0, std::min(comma, sValue.find(L' ')));
    const double dmS = NumericValue(sSeconds).value_or(0) * 1000;
    if (dmS > 0 && dmS < std::numeric_limits<std::int32_t>::max())
        entry.lDurationmS = static_cast<std::int32_t>(dmS);
}

} // namespace

std::vector<PlaylistEntry> ParsePlaylist(std::string_view bytes)
{
    constexpr std::wstring_view sInformation = L"#EXTINF:";
    std::vector<PlaylistEntry> entries;
    PlaylistEntry next;
    for (std::wstring sLine : Split(TextOf(bytes), L"\n"))
    {
        while (sLine.ends_with(L'\r') || sLine.ends_with(L' ')) // a list that was converted twice has two CR
            sLine.pop_back();
        sLine = Trim(sLine);
        if (sLine.starts_with(sInformation))
            TakeInformation(next, sLine.substr(sInformation.size()));
        if (sLine.empty() || sLine.front() == L'#')
            continue;
        next.sPath = std::move(sLine);
        entries.push_back(std::exchange(next, {}));
    }
    return entries;
}

} // namespace ravlo
