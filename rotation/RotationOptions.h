// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

// What a station may choose besides the prescribed walk. Everything is off until it is asked for.
struct RotationOptions
{
    bool bFairRotation = false;    // a cut that is passed over keeps its place
    bool bFeaturedArtists = false; // a credit counts for every artist it names

    friend bool operator==(const RotationOptions&, const RotationOptions&) = default;
};

} // namespace ravlo
