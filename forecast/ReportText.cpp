// SPDX-License-Identifier: MIT
#include "forecast/ReportText.h"

#include "base/DecimalDigits.h"
#include "base/Text.h"
#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ravlo
{

namespace
{

constexpr wchar_t cReplacement = L'\xFFFD';

bool IsHalf(wchar_t c, unsigned lFirst) { return static_cast<unsigned>(c) - lFirst < 0x400; }

// Whether the character at position is half of a surrogate pair without its other half.
bool IsLoneHalf(std::wstring_view sText, std::size_t position)
{
    if (IsHalf(sText[position], 0xD800))
        return position + 1 == sText.size() || !IsHalf(sText[position + 1], 0xDC00);
    if (IsHalf(sText[position], 0xDC00))
        return position == 0 || !IsHalf(sText[position - 1], 0xD800);
    return false;
}

// The text as UTF-8, each character through escape, which returns its replacement or null to keep it.
template <class Escape> std::string Escaped(std::wstring_view sText, Escape escape)
{
    std::wstring sEscaped;
    sEscaped.reserve(sText.size());
    for (std::size_t position = 0; position < sText.size(); ++position)
    {
        const wchar_t c = sText[position];
        if (IsLoneHalf(sText, position))
            sEscaped += cReplacement;
        else if (const wchar_t* sInstead = escape(c))
            sEscaped += sInstead;
        else
            sEscaped += c;
    }
    return Utf8Of(sEscaped);
}

bool IsControl(wchar_t c)
{
    return c < L' ' || (c >= L'\x7F' && c <= L'\x9F') || c == L'\xFFFE' || c == L'\xFFFF';
}

} // namespace

std::string HtmlText(std::wstring_view sText)
{
    return Escaped(sText, [](wchar_t c) -> const wchar_t* {
        switch (c)
        {
        case L'&':
            return L"&amp;";
        case L'<':
            return L"&lt;";
        case L'>':
            return L"&gt;";
        case L'"':
            return L"&quot;";
        case L'\'':
            return L"&#39;";
        case L'\t':
        case L'\n':
        case L'\r':
            return L" ";
        default:
            return IsControl(c) ? L"\xFFFD" : nullptr;
        }
    });
}

std::wstring Shortened(const std::wstring& sText, std::size_t most)
{
    if (sText.size() <= most)
        return sText;
    std::size_t length = most - 1;
    if (IsHalf(sText[length - 1], 0xD800))
        --length;
    return sText.substr(0, length) + L'\x2026';
}

std::string JsonText(std::wstring_view sText)
{
    std::array<wchar_t, 7> sCode{L'\\', L'u', L'0', L'0'};
    const auto digit = [](unsigned lValue) { return L"0123456789abcdef"[lValue & 0xF]; };
    return '"' +
           Escaped(sText,
                   [&](wchar_t c) -> const wchar_t* {
                       if (c == L'"')
                           return L"\\\"";
                       if (c == L'\\')
                           return L"\\\\";
                       if (c >= L' ')
                           return nullptr;
                       sCode[4] = digit(static_cast<unsigned>(c) >> 4);
                       sCode[5] = digit(static_cast<unsigned>(c));
                       return sCode.data();
                   }) +
           '"';
}

std::string NumberText(double dValue, int lDecimals)
{
    std::string text = FixedDigits(dValue, lDecimals);
    if (text.find('.') != std::string::npos)
    {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string AttainableText(std::int32_t lMins) { return lMins == lAnyMins ? "any" : NumberText(lMins); }

std::string PercentText(double dShare) { return NumberText(dShare * 100, 1) + " %"; }

std::wstring LevelText(const std::wstring& sCategoryKey)
{
    std::wstring sText = sCategoryKey;
    std::replace(sText.begin(), sText.end(), cTab, L' ');
    return sText;
}

std::string LoadText(double dLoad)
{
    constexpr double dRounding = 1e-6; // of a hundredth
    return NumberText(std::ceil(dLoad * 100 - dRounding) / 100) + " of 1";
}

std::string MomentText(DateTime dtWhen)
{
    std::wstring sText = IsoText(dtWhen).substr(0, 16);
    std::replace(sText.begin(), sText.end(), L'T', L' ');
    return Utf8Of(sText);
}

const char* NameOf(Light eLight)
{
    switch (eLight)
    {
    case Light::Green:
        return "green";
    case Light::Yellow:
        return "yellow";
    case Light::Red:
        return "red";
    }
    return "";
}

const char* NameOf(eRuleViolation eRule)
{
    switch (eRule)
    {
    case eGlobalArtist:
        return "artist";
    case eGlobalTitle:
        return "title";
    case eGlobalAlbum:
        return "album";
    case eNone:
        break;
    }
    return "";
}

} // namespace ravlo
