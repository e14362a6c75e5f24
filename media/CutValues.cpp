// SPDX-License-Identifier: MIT
#include "media/CutValues.h"

#include "media/PlainCut.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

bool SameText(const TextKey& cLeft, const TextKey& cRight) noexcept
{
    // Equal texts have equal hashes, so most differences show without a look at the text.
    return cLeft.Hash() == cRight.Hash() && cLeft.Text() == cRight.Text();
}

void AddNames(std::vector<TextKey>& colNames, const std::vector<std::wstring>& colMore)
{
    // Most cuts have a name or two, which are found faster without a table.
    constexpr std::size_t few = 16;
    const bool bFew = colNames.size() + colMore.size() <= few;
    std::unordered_set<TextKey> colSeen;
    if (!bFew)
        colSeen.insert(colNames.begin(), colNames.end());
    for (const std::wstring& sName : colMore)
    {
        TextKey cName(sName);
        const bool bNew = bFew ? std::find(colNames.begin(), colNames.end(), cName) == colNames.end()
                               : colSeen.insert(cName).second;
        if (bNew && !cName.Empty())
            colNames.push_back(std::move(cName));
    }
}

std::wstring JoinedNames(const std::vector<TextKey>& colNames)
{
    std::wstring sText;
    for (const TextKey& cName : colNames)
        sText += (sText.empty() ? L"" : L"/") + cName.Text();
    return sText;
}

CutValues ValuesOf(const Cut& cCut)
{
    if (const auto* pCut = dynamic_cast<const PlainCut*>(&cCut))
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

} // namespace ravlo
