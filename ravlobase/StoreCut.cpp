// SPDX-License-Identifier: MIT
#include "ravlobase/StoreCut.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "media/PlainCut.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

bool SameText(const TextKey& cLeft, const TextKey& cRight) noexcept
{
    // Texts that are equal letter by letter have equal hashes: most differences show without a look at the
    // text.
    return cLeft.Hash() == cRight.Hash() && cLeft.Text() == cRight.Text();
}

void AddNames(std::vector<TextKey>& colNames, const std::vector<std::wstring>& colMore)
{
    // A cut mostly has a name or two, which are found sooner without a table.
    constexpr std::size_t few = 16;
    const bool bFew = colNames.size() + colMore.size() <= few;
    std::unordered_set<TextKey> colSeen;
    if (!bFew)
        colSeen.insert(colNames.begin(), colNames.end());
    for (const auto& sName : colMore)
    {
        TextKey cName(sName);
        const bool bNew = bFew ? std::find(colNames.begin(), colNames.end(), cName) == colNames.end()
                               : colSeen.insert(cName).second;
        if (bNew && !cName.Empty())
            colNames.push_back(std::move(cName));
    }
}

CutValues ValuesOf(const Cut& cCut)
{
    if (const auto* pCut = dynamic_cast<const StoreCut*>(&cCut))
        return pCut->Values();
    CutValues values;
    values.cKey = cCut.Key();
    values.cPath = TextKey(cCut.Path());
    values.cSecondaryKey = TextKey(cCut.SecondaryKey());
    values.cArtist = TextKey(cCut.Artist());
    values.cTitle = TextKey(cCut.Title());
    values.cAlbum = TextKey(cCut.Album());
    AddNames(values.colCategories, cCut.CategoryNames());
    values.dtLastPlayed = cCut.LastPlayed();
    values.lYear = cCut.Year();
    values.lRunTimemS = cCut.RunTimemS();
    values.lDurationmS = cCut.DurationmS();
    values.lCatLevel = cCut.CatLevel();
    values.bOpener = cCut.Opener();
    return values;
}

StoreCut::StoreCut(CutValues values, std::int32_t lID, CutOwner* pOwner)
    : m_values(std::move(values)), m_pOwner(pOwner), m_lID(lID)
{
}

std::wstring StoreCut::DurationText() const { return DurationTextOf(m_values.lDurationmS); }

std::vector<std::wstring> StoreCut::CategoryNames() const
{
    std::vector<std::wstring> colNames;
    colNames.reserve(m_values.colCategories.size());
    for (const auto& cName : m_values.colCategories)
        colNames.push_back(cName.Text());
    return colNames;
}

bool StoreCut::HasCategoryName(std::wstring_view sName) const
{
    return std::any_of(m_values.colCategories.begin(), m_values.colCategories.end(),
                       [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
}

void StoreCut::AddCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    AddNames(next.colCategories, {sName});
    Set(std::move(next));
}

void StoreCut::RemoveCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    std::erase_if(next.colCategories,
                  [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
    Set(std::move(next));
}

std::wstring StoreCut::CategoryText() const
{
    std::wstring sText;
    for (const auto& cName : m_values.colCategories)
        sText += (sText.empty() ? L"" : L"/") + cName.Text();
    return sText;
}

void StoreCut::SetCategoryText(const std::wstring& sText)
{
    CutValues next = m_values;
    next.colCategories.clear();
    AddNames(next.colCategories, Split(sText, L"/"));
    Set(std::move(next));
}

void StoreCut::SetKey(const std::wstring& sKey)
{
    if (m_pOwner != nullptr)
    {
        throw RuntimeError(error::PermissionDenied,
                           L"The key of a cut that stands in a database cannot be changed.");
    }
    m_values.cKey = TextKey(sKey);
    m_values.cPath = m_values.cKey;
    ++m_lRevision;
}

void StoreCut::SetSecondaryKey(const std::wstring& sKey)
{
    CutValues next = m_values;
    next.cSecondaryKey = TextKey(sKey);
    Set(std::move(next));
}

void StoreCut::SetPath(const std::wstring& sPath)
{
    CutValues next = m_values;
    next.cPath = TextKey(sPath);
    Set(std::move(next));
}

void StoreCut::SetArtist(const std::wstring& sArtist)
{
    CutValues next = m_values;
    next.cArtist = TextKey(sArtist);
    Set(std::move(next));
}

void StoreCut::SetTitle(const std::wstring& sTitle)
{
    CutValues next = m_values;
    next.cTitle = TextKey(sTitle);
    Set(std::move(next));
}

void StoreCut::SetAlbum(const std::wstring& sAlbum)
{
    CutValues next = m_values;
    next.cAlbum = TextKey(sAlbum);
    Set(std::move(next));
}

void StoreCut::SetYear(std::int32_t lYear)
{
    CutValues next = m_values;
    next.lYear = lYear;
    Set(std::move(next));
}

void StoreCut::SetRunTimemS(std::int32_t lRunTime)
{
    CutValues next = m_values;
    next.lRunTimemS = lRunTime;
    Set(std::move(next));
}

void StoreCut::SetDurationmS(std::int32_t lDuration)
{
    CutValues next = m_values;
    next.lDurationmS = lDuration;
    Set(std::move(next));
}

void StoreCut::SetLastPlayed(DateTime dtWhen)
{
    if (m_pOwner != nullptr)
        m_pOwner->ChangeLastPlayed(*this, dtWhen);
    else
        TakeLastPlayed(dtWhen);
}

void StoreCut::SetOpener(bool bOpener)
{
    CutValues next = m_values;
    next.bOpener = bOpener;
    Set(std::move(next));
}

void StoreCut::SetCatLevel(std::int32_t lLevel)
{
    CutValues next = m_values;
    next.lCatLevel = lLevel;
    Set(std::move(next));
}

std::shared_ptr<Cut> StoreCut::CloneCut() const
{
    auto cClone = std::make_shared<StoreCut>(*this);
    cClone->Detach();
    return cClone;
}

void StoreCut::Attach(CutValues values, std::int32_t lID, CutOwner& cOwner) noexcept
{
    Take(std::move(values));
    m_lID = lID;
    m_pOwner = &cOwner;
}

void StoreCut::Set(CutValues next)
{
    if (m_pOwner != nullptr)
        m_pOwner->Change(*this, std::move(next));
    else
        Take(std::move(next));
}

} // namespace ravlo
