// SPDX-License-Identifier: MIT
#include "ravlobase/GatheredPlays.h"

#include "ravlobase/CutFile.h"

namespace ravlo
{

void GatheredPlays::Write(CutFile& cFile)
{
    if (m_cuts.empty())
        return;
    sqlite::Transaction cTransaction(cFile.Sql());
    for (const auto* pCut : m_cuts)
        cFile.UpdateLastPlayed(pCut->ID(), pCut->LastPlayed());
    cTransaction.Commit();
    m_cuts.clear();
}

} // namespace ravlo
