// SPDX-License-Identifier: MIT
#include "plan/DayExports.h"

#include "base/Text.h"
#include "base/Utf8.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::wstring OneLine(std::wstring sText)
{
    std::replace_if(
        sText.begin(), sText.end(), [](wchar_t c) { return c < L' '; }, L' ');
    return sText;
}

// Seconds, rounded: players expect whole ones.
std::wstring SecondsText(std::int32_t lmS) { return DecimalText((std::int64_t{lmS} + 500) / 1000); }

std::wstring JsonText(const std::wstring& sText)
{
    constexpr const wchar_t* sDigits = L"0123456789abcdef";
    std::wstring sQuoted = L"\"";
    for (const wchar_t c : sText)
    {
        if (c == L'"' || c == L'\\')
            (sQuoted += L'\\') += c;
        else if (c < L' ')
            ((sQuoted += L"\\u00") += sDigits[c >> 4 & 0xF]) += sDigits[c & 0xF];
        else
            sQuoted += c;
    }
    return sQuoted + L"\"";
}

std::wstring SlotJson(const LogRow& row)
{
    std::wstring sText = L"{\"start\": " + JsonText(IsoText(row.dtStart)) +            //
                         L", \"category\": " + JsonText(row.slot.sCategory) +          //
                         L", \"level\": " + DecimalText(row.slot.lLevel) +             //
                         L", \"opener\": " + (row.slot.bOpener ? L"true" : L"false") + //
                         L", \"kind\": " + DecimalText(row.lKind);
    if (row.cut)
        sText += L", \"artist\": " + JsonText(row.cut->sArtist) + //
                 L", \"title\": " + JsonText(row.cut->sTitle) +   //
                 L", \"album\": " + JsonText(row.cut->sAlbum) +   //
                 L", \"path\": " + JsonText(row.cut->sPath) +     //
                 L", \"duration_ms\": " + DecimalText(row.cut->lDurationmS);
    return sText + L"}";
}

} // namespace

std::string DayPlaylist(const std::vector<LogRow>& rows)
{
    std::wstring sText = L"#EXTM3U\n";
    for (const LogRow& row : rows)
    {
        if (!row.cut)
            continue;
        const PlayedCut& cut = *row.cut;
        sText += L"#EXT-X-PROGRAM-DATE-TIME:" + IsoText(row.dtStart) + L"\n#EXTINF:" +
                 SecondsText(cut.lDurationmS) + L"," + OneLine(cut.sArtist + L" - " + cut.sTitle) + L"\n" +
                 (cut.sPath.starts_with(L"#") ? L"./" : L"") + OneLine(cut.sPath) + L"\n";
    }
    return Utf8Of(sText);
}

std::string DayJson(const std::vector<LogRow>& rows)
{
    std::wstring sText = L"[";
    for (const LogRow& row : rows)
        sText += (&row == rows.data() ? L"\n" : L",\n") + SlotJson(row);
    return Utf8Of(sText + L"\n]\n");
}

} // namespace ravlo
