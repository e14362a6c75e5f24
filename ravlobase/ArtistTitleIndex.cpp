// SPDX-License-Identifier: MIT
#include "ravlobase/ArtistTitleIndex.h"

#include "base/CaseFolding.h"

namespace ravlo
{

namespace
{

std::size_t PairHash(const std::wstring& sArtist, const std::wstring& sTitle) noexcept
{
    const std::size_t artist = HashIgnoringCase(sArtist);
    // The shift keeps a swapped pair, and one with equal texts, apart from the others.
    return HashIgnoringCase(sTitle) ^ ((artist << 7) | (artist >> (sizeof(std::size_t) * 8 - 7)));
}

bool HasPair(const CutValues& values) { return !values.cArtist.Empty() || !values.cTitle.Empty(); }

} // namespace

void ArtistTitleIndex::Add(StoreCut& cCut)
{
    const CutValues& values = cCut.Values();
    if (HasPair(values))
        m_cuts.emplace(PairHash(values.cArtist.Text(), values.cTitle.Text()), &cCut);
}

void ArtistTitleIndex::Remove(const StoreCut& cCut) noexcept
{
    const CutValues& values = cCut.Values();
    auto [it, itEnd] = m_cuts.equal_range(PairHash(values.cArtist.Text(), values.cTitle.Text()));
    for (; it != itEnd; ++it)
    {
        if (it->second == &cCut)
        {
            m_cuts.erase(it);
            return;
        }
    }
}

StoreCut* ArtistTitleIndex::Find(const std::wstring& sArtist, const std::wstring& sTitle) const noexcept
{
    StoreCut* pFound = nullptr;
    const auto [itFirst, itEnd] = m_cuts.equal_range(PairHash(sArtist, sTitle));
    for (auto it = itFirst; it != itEnd; ++it)
    {
        const CutValues& values = it->second->Values();
        if (EqualIgnoringCase(values.cArtist.Text(), sArtist) &&
            EqualIgnoringCase(values.cTitle.Text(), sTitle) &&
            (pFound == nullptr || it->second->ID() < pFound->ID()))
            pFound = it->second;
    }
    return pFound;
}

} // namespace ravlo
