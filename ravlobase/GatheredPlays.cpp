// SPDX-License-Identifier: MIT
#include "ravlobase/GatheredPlays.h"

#include "ravlobase/CutFile.h"

#include <algorithm>

namespace ravlo
{

void GatheredPlays::Add(const StoreCut& cCut, DateTime dtWhen)
{
    m_cuts.insert(&cCut);
    if (dtWhen <= 0)
        return;
    m_plays.push_back(PlayOf(cCut.Values()));
    m_plays.back().dtPlayed = dtWhen;
}

void GatheredPlays::Clear() noexcept
{
    m_cuts.clear();
    m_plays.clear();
}

void GatheredPlays::Write(CutFile& cFile)
{
    if (m_cuts.empty() && m_plays.empty())
        return;
    std::vector<const StoreCut*> colCuts(m_cuts.begin(), m_cuts.end());
    std::sort(colCuts.begin(), colCuts.end(),
              [](const StoreCut* pLeft, const StoreCut* pRight) { return pLeft->ID() < pRight->ID(); });
    sqlite::Transaction cTransaction(cFile.Sql());
    for (const StoreCut* pCut : colCuts)
        cFile.UpdateLastPlayed(pCut->ID(), pCut->LastPlayed());
    for (const PlayRecord& play : m_plays)
        cFile.InsertPlay(play);
    cTransaction.Commit();
    Clear();
}

} // namespace ravlo
