// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"

#include <cstddef>
#include <memory>
#include <unordered_set>
#include <utility>

namespace ravlo
{

using KeySet = std::unordered_set<TextKey>;

// Calls found(cLevel, cKey) for each level of the tree that contains one of the cuts, in the tree's order.
// Recognises cuts by key: a host's database may return another object for the same cut. Reads no cut, so no
// host code runs. colMainCats may be null.
template <class Found>
void ForEachPlace(const CatCollection* colMainCats, const KeySet& colWanted, Found&& found)
{
    if (!colMainCats || colWanted.empty())
        return;
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
        for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
        {
            const CutCollection& colCuts = *cLevel->SchedCuts();
            if (colWanted.size() < colCuts.Count())
            {
                for (const TextKey& cKey : colWanted)
                    if (colCuts.Exists(cKey))
                        found(cLevel, cKey);
            }
            else
                for (std::size_t i = 0; i < colCuts.Count(); ++i)
                    if (const TextKey* pKey = colCuts.KeyAt(i); pKey && colWanted.contains(*pKey))
                        found(cLevel, *pKey);
        }
}

} // namespace ravlo
