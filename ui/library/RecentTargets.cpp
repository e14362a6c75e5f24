// SPDX-License-Identifier: MIT
#include "ui/library/RecentTargets.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "platform/Messages.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sTargetsSection = L"Settings";
constexpr const wchar_t* sSetting = L"RecentTargets";
// Neither is allowed in a category's name.
constexpr wchar_t cBeforeLevel = L':';
constexpr const wchar_t* sBehindTarget = L"|";

} // namespace

std::vector<std::wstring> RecentTargets::Keys() const
{
    std::vector<std::wstring> colKeys;
    for (std::wstring sTarget :
         Split(m_cSettings.Get(sProgramTitle, sTargetsSection, sSetting, L""), sBehindTarget))
        if (const std::size_t end = sTarget.find(cBeforeLevel); end != std::wstring::npos)
        {
            sTarget[end] = cTab;
            colKeys.push_back(std::move(sTarget));
        }
    colKeys.resize(std::min(colKeys.size(), mostRemembered));
    return colKeys;
}

void RecentTargets::Add(const std::wstring& sNodeKey)
{
    if (sNodeKey.find_first_of(std::wstring(sBehindTarget) + cBeforeLevel) != std::wstring::npos)
        return;
    std::vector<std::wstring> colKeys = Keys();
    std::erase_if(colKeys, [&](const std::wstring& sKey) { return EqualIgnoringCase(sKey, sNodeKey); });
    colKeys.insert(colKeys.begin(), sNodeKey);
    colKeys.resize(std::min(colKeys.size(), mostRemembered));
    std::wstring sText;
    for (std::wstring& sKey : colKeys)
    {
        std::replace(sKey.begin(), sKey.end(), cTab, cBeforeLevel);
        sText += sKey + sBehindTarget;
    }
    m_cSettings.Set(sProgramTitle, sTargetsSection, sSetting, sText);
}

} // namespace ravlo
