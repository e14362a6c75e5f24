// SPDX-License-Identifier: MIT
#include "ravlobase/PlayRecord.h"

namespace ravlo
{

bool IsPlay(const CutValues& old, const CutValues& next) noexcept
{
    return next.dtLastPlayed > 0 && next.dtLastPlayed != old.dtLastPlayed;
}

PlayRecord PlayOf(const CutValues& values)
{
    return {values.dtLastPlayed, values.cKey,          values.cArtist,     values.cTitle,
            values.cAlbum,       values.colCategories, values.lDurationmS, values.lCatLevel};
}

} // namespace ravlo
