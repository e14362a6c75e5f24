// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/MakeUp.h"
#include "model/clsCat.h"
#include "rotation/PlayHistory.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// The separations that one level can keep, without a plan: from its cuts, and from how often it was asked
// lately.
struct LevelOutlook
{
    MakeUp makeUp;
    AskingRate rate; // asked is 0 when the last plays do not show it

    // At best, one of so many plays in a row is of the commonest artist or title; 0 for an empty level.
    std::size_t ArtistPlaces() const noexcept { return Places(makeUp.mostOfArtist); }
    std::size_t TitlePlaces() const noexcept { return Places(makeUp.mostOfTitle); }
    // In minutes; 0 when the rate is not known.
    std::int32_t AttainableArtistMins() const noexcept
    {
        return rate.AttainableMins(makeUp.cuts, makeUp.mostOfArtist);
    }
    std::int32_t AttainableTitleMins() const noexcept
    {
        return rate.AttainableMins(makeUp.cuts, makeUp.mostOfTitle);
    }

private:
    std::size_t Places(std::size_t most) const noexcept { return most == 0 ? 0 : makeUp.cuts / most; }
};

// Reads a level once; a cut that cannot be read counts as one without artist, title and play.
//
// A rotation plays its cuts in turn, except those that break a rule, so the latest plays of different cuts
// followed each other. The rate is taken from the quarter of the played cuts that played last. It is unknown
// with fewer than four plays, or when the latest is more than a week old.
LevelOutlook OutlookOf(const clsCat& cSubCat, const PlayHistory& cHistory, const ArtistNames& names,
                       DateTime dtNow);

// "3.4 min": from one slot to the next. To the minute; below ten minutes to the tenth.
std::wstring SlotText(const AskingRate& rate);

} // namespace ravlo
