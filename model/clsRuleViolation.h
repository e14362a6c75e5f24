// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>

namespace ravlo
{

enum eRuleViolation : std::int32_t
{
    eNone = 0,
    eGlobalArtist = 1,
    eGlobalTitle = 2,
    eGlobalAlbum = 3,
};

// Why one candidate cut breaks a separation rule, and by how much. Values only; nothing is checked.
struct clsRuleViolation
{
    float TitleMinsAgo = 0;          // minutes since a cut with the same title last played
    float ArtistMinsAgo = 0;         // ... by the same artist
    float AlbumMinsAgo = 0;          // ... from the same album
    std::int32_t ViolationIndex = 0; // for the host; the selection never sets it
    std::shared_ptr<ravlo::Cut> Cut;
    std::int32_t Violation = eNone; // an eRuleViolation; any value a host sets is kept
    float MinsAgo = 0;              // of the rule that is broken
};

} // namespace ravlo
