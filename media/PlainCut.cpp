// SPDX-License-Identifier: MIT
#include "media/PlainCut.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>

namespace ravlo
{

std::wstring PlainCut::DurationText() const { return DurationTextOf(m_values.lDurationmS); }

std::vector<std::wstring> PlainCut::CategoryNames() const
{
    std::vector<std::wstring> colNames;
    colNames.reserve(m_values.colCategories.size());
    for (const TextKey& cName : m_values.colCategories)
        colNames.push_back(cName.Text());
    return colNames;
}

bool PlainCut::HasCategoryName(std::wstring_view sName) const
{
    return std::any_of(m_values.colCategories.begin(), m_values.colCategories.end(),
                       [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
}

void PlainCut::AddCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    AddNames(next.colCategories, {sName});
    Change(std::move(next));
}

void PlainCut::RemoveCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    std::erase_if(next.colCategories,
                  [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
    Change(std::move(next));
}

std::wstring PlainCut::CategoryText() const { return JoinedNames(m_values.colCategories); }

void PlainCut::SetCategoryText(const std::wstring& sText)
{
    CutValues next = m_values;
    next.colCategories.clear();
    AddNames(next.colCategories, Split(sText, L"/"));
    Change(std::move(next));
}

void PlainCut::SetKey(const std::wstring& sKey)
{
    CutValues next = m_values;
    next.cKey = TextKey(sKey);
    next.cPath = next.cKey;
    Change(std::move(next));
}

std::shared_ptr<Cut> NewPlainCut() { return std::make_shared<PlainCut>(); }

std::shared_ptr<Cut> NewPlainCut(const PlainCutValues& values)
{
    CutValues all;
    all.cKey = values.cKey;
    all.cArtist = values.cArtist;
    all.cTitle = values.cTitle;
    all.cAlbum = values.cAlbum;
    all.dtLastPlayed = values.dtLastPlayed;
    all.lDurationmS = values.lDurationmS;
    all.bOpener = values.bOpener;
    return std::make_shared<PlainCut>(std::move(all), values.lID);
}

std::wstring DurationTextOf(std::int32_t lDurationmS)
{
    const std::int32_t lSeconds = lDurationmS > 0 ? lDurationmS / 1000 : 0;
    const std::wstring sRest = DecimalText(lSeconds % 60);
    return DecimalText(lSeconds / 60) + (sRest.size() < 2 ? L":0" : L":") + sRest;
}

} // namespace ravlo
