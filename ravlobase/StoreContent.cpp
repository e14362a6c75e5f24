// SPDX-License-Identifier: MIT
#include "ravlobase/StoreContent.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

std::shared_ptr<Cut> StoreContent::ByKey(const TextKey& cKey) const
{
    const std::shared_ptr<Cut>* cFound = m_colCuts.Find(cKey);
    return cFound ? *cFound : nullptr;
}

std::shared_ptr<Cut> StoreContent::ByArtistTitle(const std::wstring& sArtist,
                                                 const std::wstring& sTitle) const
{
    const StoreCut* pCut = m_cIndex.Find(sArtist, sTitle);
    return pCut ? ByKey(pCut->Values().cKey) : nullptr;
}

void StoreContent::Reserve(std::size_t count)
{
    m_colCuts.Reserve(count);
    m_cIndex.Reserve(count);
}

bool StoreContent::Add(const std::shared_ptr<StoreCut>& cCut)
{
    if (!m_colCuts.Add(cCut->Values().cKey, cCut))
        return false;
    m_cIndex.Add(*cCut);
    return true;
}

void StoreContent::Insert(const Cuts& colAdded)
{
    if (colAdded.empty())
        return;
    Cuts colAll(m_colCuts.begin(), m_colCuts.end());
    colAll.insert(colAll.end(), colAdded.begin(), colAdded.end());
    std::sort(colAll.begin(), colAll.end(),
              [](const auto& left, const auto& right) { return left->ID() < right->ID(); });
    Collection colOrdered;
    colOrdered.Reserve(colAll.size());
    for (const std::shared_ptr<Cut>& cCut : colAll)
        colOrdered.Add(Own(cCut).Values().cKey, cCut);
    m_colCuts = std::move(colOrdered);
    for (const std::shared_ptr<Cut>& cCut : colAdded)
        m_cIndex.Add(Own(cCut));
}

void StoreContent::Remove(const Cuts& colRemoved)
{
    for (const std::shared_ptr<Cut>& cCut : colRemoved)
    {
        m_cIndex.Remove(Own(cCut));
        Own(cCut).Detach();
    }
    // Each single removal moves the pointers behind it. Beyond a few it is cheaper to collect what stays.
    constexpr std::size_t few = 16;
    if (colRemoved.size() <= few)
    {
        for (const std::shared_ptr<Cut>& cCut : colRemoved)
            m_colCuts.Remove(Own(cCut).Values().cKey);
        return;
    }
    Collection colStay;
    colStay.Reserve(m_colCuts.Count() - colRemoved.size());
    for (const std::shared_ptr<Cut>& cCut : m_colCuts)
        if (Own(cCut).Owner())
            colStay.Add(Own(cCut).Values().cKey, cCut);
    m_colCuts = std::move(colStay);
}

void StoreContent::Clear() noexcept
{
    for (const std::shared_ptr<Cut>& cCut : m_colCuts)
        Own(cCut).Detach();
    m_colCuts.Clear();
    m_cIndex.Clear();
}

void StoreContent::SetValues(StoreCut& cCut, CutValues values)
{
    // An unchanged pair keeps its place in the index: nothing is allocated, so nothing can fail.
    const CutValues& old = cCut.Values();
    if (SameText(old.cArtist, values.cArtist) && SameText(old.cTitle, values.cTitle))
    {
        cCut.Take(std::move(values));
        return;
    }
    m_cIndex.Remove(cCut);
    cCut.Take(std::move(values));
    m_cIndex.Add(cCut);
}

} // namespace ravlo
