// SPDX-License-Identifier: MIT
#include "forecast/Light.h"

#include "base/Text.h"
#include "forecast/MakeUp.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace ravlo
{

namespace
{

// "1 cut never plays", "2 cuts never play"
std::wstring Counted(std::int64_t count, const wchar_t* sOne, const wchar_t* sMany)
{
    return DecimalText(count) + L" " + (count == 1 ? sOne : sMany);
}

std::wstring OfPicks(std::int32_t lSome, std::int32_t lAll, const wchar_t* sNoun, const wchar_t* sOne,
                     const wchar_t* sMany)
{
    return DecimalText(lSome) + L" of " + DecimalText(lAll) + L" " + sNoun + L" " +
           (lSome == 1 ? sOne : sMany);
}

class Findings
{
public:
    explicit Findings(const LevelHealth& level) : m_level(level) {}

    std::vector<Finding> Take()
    {
        if (m_level.lPicks == 0)
            return {};
        if (m_level.lUnfilled > 0)
            Add(Light::Red, UnfilledText(m_level));
        if (!m_level.neverPlayed.empty())
            Add(Light::Red, Counted(SizeOf(m_level.neverPlayed), L"cut never plays", L"cuts never play"));
        if (!m_level.underHalf.empty())
            Add(Light::Red, Counted(SizeOf(m_level.underHalf), L"cut plays less than half of its due",
                                    L"cuts play less than half of their due"));
        if (m_level.lRulesBroken > 0)
            Add(BrokenRulesLight(static_cast<std::uint64_t>(m_level.lRulesBroken),
                                 static_cast<std::uint64_t>(m_level.lPicks)),
                OfPicks(m_level.lRulesBroken, m_level.lPicks, L"picks", L"breaks a rule", L"break a rule"));
        AddSeparation(L"artist", m_level.lArtistSepMins, m_level.lAttainableArtistMins);
        AddSeparation(L"title", m_level.lTitleSepMins, m_level.lAttainableTitleMins);
        std::stable_sort(m_findings.begin(), m_findings.end(),
                         [](const Finding& a, const Finding& b) { return a.eLight > b.eLight; });
        return std::move(m_findings);
    }

private:
    static std::int64_t SizeOf(const std::vector<StarvedCut>& cuts)
    {
        return static_cast<std::int64_t>(cuts.size());
    }
    void Add(Light eLight, std::wstring sText) { m_findings.push_back({eLight, std::move(sText)}); }
    void AddSeparation(const wchar_t* sWhat, std::int32_t lSet, std::int32_t lAttainable)
    {
        const std::wstring sSeparation =
            std::wstring(L"the ") + sWhat + L" separation of " + Counted(lSet, L"minute", L"minutes");
        const Light eLight = RoomLight(lSet, lAttainable);
        if (eLight == Light::Red)
            Add(eLight, sSeparation + L" cannot be kept: " + DecimalText(lAttainable) + L" at most");
        else if (eLight == Light::Yellow)
            Add(eLight,
                sSeparation + L" leaves little room: at most " + DecimalText(lAttainable) + L" can be kept");
    }

    const LevelHealth& m_level;
    std::vector<Finding> m_findings;
};

} // namespace

std::vector<Finding> FindingsOf(const LevelHealth& level) { return Findings(level).Take(); }

void SetLight(LevelHealth& level)
{
    level.eLight = Light::Green;
    level.why.clear();
    for (Finding& finding : FindingsOf(level))
    {
        level.eLight = std::max(level.eLight, finding.eLight);
        level.why.push_back(std::move(finding.sText));
    }
}

Light BrokenRulesLight(std::uint64_t broken, std::uint64_t picks) noexcept
{
    return broken == 0 ? Light::Green : broken * 100 > picks ? Light::Red : Light::Yellow;
}

Light RoomLight(std::int32_t lSetMins, std::int32_t lAttainableMins) noexcept
{
    if (lSetMins > lAttainableMins)
        return Light::Red;
    return lSetMins > Comfortable(lAttainableMins) ? Light::Yellow : Light::Green;
}

std::wstring UnfilledText(const LevelHealth& level)
{
    if (level.lUnfilled == 0)
        return {};
    const wchar_t* sReason = L"";
    if (level.cuts.empty())
        sReason = L": the level has no cuts";
    else if (level.lOpeners == 0)
        sReason = L": no cut is an opener";
    return OfPicks(level.lUnfilled, level.lPicks, L"slots", L"stays empty", L"stay empty") + sReason;
}

} // namespace ravlo
