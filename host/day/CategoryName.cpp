// SPDX-License-Identifier: MIT
#include "host/day/CategoryName.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "base/TextKey.h"
#include "host/day/HostError.h"
#include "host/day/Rotation.h"
#include "platform/DeviceNames.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace ravlo
{

namespace
{

bool IsNumber(const std::wstring& sText)
{
    return !sText.empty() && sText.find_first_not_of(L"0123456789") == std::wstring::npos;
}

std::optional<std::int32_t> LevelIn(const std::wstring& sDigits)
{
    std::int64_t level = 0;
    for (const wchar_t c : sDigits)
    {
        level = level * 10 + (c - L'0');
        if (level > std::numeric_limits<std::int32_t>::max())
            return std::nullopt;
    }
    return level > 0 ? std::optional(static_cast<std::int32_t>(level)) : std::nullopt;
}

} // namespace

CategoryName ParseCategoryName(const std::wstring& sText)
{
    const std::size_t colon = sText.rfind(L':');
    const std::wstring sTail = colon == std::wstring::npos ? std::wstring() : sText.substr(colon + 1);
    const bool bLevel = IsNumber(sTail);
    CategoryName name{bLevel ? sText.substr(0, colon) : sText, 0};
    if (name.sName.empty())
        throw HostError(L"'" + sText + L"' names no category");
    if (bLevel)
    {
        const std::optional<std::int32_t> level = LevelIn(sTail);
        if (!level)
            throw HostError(L"'" + sText +
                            L"' names no level (expected NAME or NAME:LEVEL, levels count from 1)");
        name.lLevel = *level;
    }
    return name;
}

std::wstring TextOf(const CategoryName& name)
{
    return name.lLevel == 0 ? name.sName : name.sName + L":" + DecimalText(name.lLevel);
}

std::wstring TextOf(const std::vector<Target>& targets)
{
    std::wstring sText;
    for (const Target& target : targets)
        sText += (sText.empty() ? L"" : L", ") + TextOf(target.name) + L" (" +
                 CountOf(target.cuts, L"cut", L"cuts") + L")";
    return sText;
}

std::wstring WhyNoCategory(const std::wstring& sName)
{
    constexpr std::size_t mostLetters = 50;
    const auto isBad = [](wchar_t c) {
        return c < L' ' || std::wstring_view(L"*/:<>?\\|\"").find(c) != std::wstring_view::npos;
    };
    if (std::any_of(sName.begin(), sName.end(), isBad))
        return L"a name contains no tabulator and none of * / : < > ? \\ | \".";
    if (IsNumeric(sName))
        return L"a name must not be a number.";
    if (IsDeviceName(sName))
        return L"this is the name of a device.";
    if (sName.size() > mostLetters)
        return L"a name has at most 50 characters.";
    const TextKey cName(sName);
    for (const wchar_t* sOwn : {L"ALL AUDIO", L"ALL SONGS", L"NOCAT"})
        if (cName == TextKey(sOwn))
            return L"the scheduler uses this name itself.";
    return {};
}

bool IsYes(const std::wstring& sAnswer)
{
    const std::wstring sFolded = FoldCase(Trim(sAnswer));
    return sFolded == FoldCase(L"y") || sFolded == FoldCase(L"yes");
}

} // namespace ravlo
