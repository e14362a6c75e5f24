// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/Snapshot.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ravlo
{

// What a level consists of, which limits the separations that any order can keep. A cut without an artist, or
// without a title, limits none: nothing is measured for it.
struct MakeUp
{
    struct Artist
    {
        TextKey cName; // spelled as in its first cut
        std::size_t cuts = 0;
    };

    std::size_t cuts = 0;
    std::vector<Artist> artists; // in rotation order
    Artist commonest; // with the most cuts, of several the first; no name when no cut has an artist
    std::size_t mostOfArtist = 0; // 0 when no cut has one
    std::size_t mostOfTitle = 0;
};
MakeUp MakeUpOf(const StationSnapshot& station, const std::vector<CutNumber>& order, const ArtistNames& names,
                const LetHostRun& letHostRun = {});

// How often a level is asked.
struct AskingRate
{
    double dDays = 0;
    std::uint32_t asked = 0;

    // Minutes from one slot to the next; 0 when it is never asked. Here and below the days count in whole
    // milliseconds: the difference of two dates is not exact, and 30 minutes must not become 29.
    double SlotMins() const noexcept;
    // The longest separation, in whole minutes, that a level of so many cuts can keep when most of them are
    // of one artist or title; lAnyMins when most is 0. Returns 0 without cuts, and when the level is never
    // asked.
    std::int32_t AttainableMins(std::size_t cuts, std::size_t most) const noexcept;
};

// A separation leaves enough room for chance up to 85 % of what is attainable.
inline constexpr std::int32_t Comfortable(std::int32_t lAttainableMins) noexcept
{
    return static_cast<std::int32_t>(std::int64_t{lAttainableMins} * 85 / 100);
}

// The artist and title separations that are measured; 0: none is set.
std::int32_t ArtistSeparation(const SeparationRules& rules) noexcept;
std::int32_t TitleSeparation(const SeparationRules& rules) noexcept;

} // namespace ravlo
