// SPDX-License-Identifier: MIT
#include "ui/health/HealthTexts.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <array>

namespace ravlo
{

namespace
{

constexpr std::size_t mostOverAsked = 3; // named

std::wstring Wide(const std::string& sText) { return TextFromStore(sText); }

} // namespace

LevelState StateOf(const LevelHealth& level) noexcept
{
    if (level.lPicks > 0)
        return LevelState::Asked;
    return level.cuts.empty() ? LevelState::Empty : LevelState::Unasked;
}

std::wstring LightText(const LevelHealth& level)
{
    switch (StateOf(level))
    {
    case LevelState::Empty:
        return L"empty";
    case LevelState::Unasked:
        return L"not asked";
    case LevelState::Asked:
        break;
    }
    return Wide(NameOf(level.eLight));
}

double SeverityOf(const LevelHealth& level) noexcept
{
    constexpr double dLight = 1e15;
    constexpr double dStarved = 1e7; // more than any count of rules broken that matters
    if (StateOf(level) == LevelState::Empty)
        return -2;
    if (StateOf(level) == LevelState::Unasked)
        return -1;
    const double dBroken = std::min(level.lRulesBroken, 9'999'999);
    const auto dSeldom = static_cast<double>(level.neverPlayed.size() + level.underHalf.size());
    return static_cast<int>(level.eLight) * dLight + dSeldom * dStarved + dBroken;
}

std::vector<StarvedCut> SeldomPlayed(const LevelHealth& level)
{
    std::vector<StarvedCut> colSeldom = level.neverPlayed;
    for (const StarvedCut& starved : level.underHalf)
        if (starved.lPlays > 0)
            colSeldom.push_back(starved);
    return colSeldom;
}

std::wstring Counted(std::size_t count, const std::wstring& sOne, const std::wstring& sMany)
{
    return CountText(count) + L" " + (count == 1 ? sOne : sMany);
}

std::wstring Capitalised(std::wstring sText)
{
    if (!sText.empty() && sText[0] >= L'a' && sText[0] <= L'z')
        sText[0] = static_cast<wchar_t>(sText[0] - L'a' + L'A');
    return sText;
}

std::wstring SummaryText(const StationHealth& health)
{
    std::array<std::size_t, 3> lights{};
    std::size_t unasked = 0;
    for (const LevelHealth& level : health.levels)
        if (StateOf(level) == LevelState::Asked)
            ++lights.at(static_cast<std::size_t>(level.eLight));
        else
            ++unasked;
    const double dDays = health.dDays;
    std::wstring sText = Wide(NumberText(dDays)) + (dDays == 1 ? L" day from " : L" days from ") +
                         Wide(MomentText(health.dtStart)) + L", " +
                         Counted(static_cast<std::size_t>(health.lPicks), L"slot. ", L"slots. ") +
                         Counted(lights[2], L"level", L"levels") + L" red, " + CountText(lights[1]) +
                         L" yellow, " + CountText(lights[0]) + L" green";
    if (unasked > 0)
        sText += L", " + CountText(unasked) + L" not asked or empty";
    sText += L".";
    for (const std::wstring& sWarning : health.warnings)
        sText += L" " + sWarning;
    return sText;
}

std::wstring OverAskedText(const StationHealth& health)
{
    if (health.overAsked.empty())
        return L"";
    std::wstring sText = L"Asked for more often than the separations allow: ";
    const std::size_t named = std::min(mostOverAsked, health.overAsked.size());
    for (std::size_t i = 0; i < named; ++i)
        sText += (i == 0 ? L"" : L", ") + health.overAsked[i].sName + L" (" +
                 Wide(LoadText(health.overAsked[i].dLoad)) + L")";
    if (health.overAsked.size() > named)
        sText += L" and " + CountText(health.overAsked.size() - named) + L" more";
    return sText + L".";
}

std::vector<std::wstring> ReasonsOf(const LevelHealth& level)
{
    const std::wstring sLevel = LevelText(level.sKey);
    if (StateOf(level) == LevelState::Empty)
        return {sLevel + L" has no cuts."};
    if (StateOf(level) == LevelState::Unasked)
        return {L"The plan does not ask for " + sLevel + L"."};
    std::vector<std::wstring> reasons{sLevel + L" is " + LightText(level) + L"."};
    for (const std::wstring& sWhy : level.why)
        reasons.push_back(Capitalised(sWhy) + L".");
    if (level.why.empty())
        reasons.emplace_back(L"Every cut plays its share and no rule is broken.");
    return reasons;
}

} // namespace ravlo
