// SPDX-License-Identifier: MIT
#include "media/DataBase.h"

namespace ravlo
{

std::shared_ptr<Cut> DataBaseCutOf(const Cut& cCut, const TextKey& cKey, const DataBase& cDataBase)
{
    if (std::shared_ptr<Cut> cOwn = cDataBase.CutByKey(cKey))
        return cOwn;
    return cDataBase.CutByArtistTitle(cCut.Artist(), cCut.Title());
}

} // namespace ravlo
