// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace ravlo
{

// What a station may choose besides the prescribed walk. Everything is off until it is asked for.
struct RotationOptions
{
    bool bFairRotation = false;    // a cut that is passed over keeps its place
    bool bFeaturedArtists = false; // a credit counts for every artist it names

    friend bool operator==(const RotationOptions&, const RotationOptions&) = default;
};

// Options that replace the station's for a while; nothing: as the station has it.
struct OptionOverrides
{
    std::optional<bool> bFairRotation;
    std::optional<bool> bFeaturedArtists;

    RotationOptions Over(const RotationOptions& options) const noexcept
    {
        return {bFairRotation.value_or(options.bFairRotation),
                bFeaturedArtists.value_or(options.bFeaturedArtists)};
    }
};

} // namespace ravlo
