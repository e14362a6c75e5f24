// SPDX-License-Identifier: MIT
#include "ui/library/NextToPlay.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::unordered_map<TextKey, std::size_t> OrdersOf(const CatCollection* colMainCats)
{
    std::unordered_map<TextKey, std::size_t> colBefore;
    if (!colMainCats)
        return colBefore;
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
        for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
            for (std::size_t i = 0; i < cLevel->SchedCuts()->Count(); ++i)
                if (const TextKey* pKey = cLevel->SchedCuts()->KeyAt(i))
                {
                    std::size_t& before = colBefore.try_emplace(*pKey, i).first->second;
                    before = std::min(before, i);
                }
    return colBefore;
}

} // namespace

std::optional<std::size_t> NextToPlay::Before(const ListedCuts& listed, std::size_t listedRow)
{
    if (!listed.bShowingAllAudio)
    {
        std::size_t begin = 0;
        for (const ListedCuts::Run& run : listed.colRuns)
        {
            if (listedRow < run.end)
                return listedRow - begin;
            begin = run.end;
        }
        return std::nullopt;
    }
    const std::shared_ptr<Cut> cCut = listed.colCuts[listedRow];
    const TextKey cKey = cCut->Key(); // first: a host's cut may list others when it is asked
    if (!m_colBefore)
        m_colBefore = OrdersOf(listed.colMainCats.lock().get());
    const auto found = m_colBefore->find(cKey);
    return found == m_colBefore->end() ? std::nullopt : std::optional(found->second);
}

} // namespace ravlo
