// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "ui/health/Picture.h"

#include <cstddef>
#include <optional>

namespace ravlo
{

// The pictures of a level in the rotation health window. chosen is the cut or artist, as a position in the
// level's, that is selected in the table next to the picture. A room too small for a picture gives an empty
// one.

// The plays of every cut, the fewest first, with their mean. Those below half the mean are marked.
Picture PlaysPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen);

// For each artist that comes back soonest, as many as there is room for: the smallest, median and largest
// gap, against the separation that is set and the one that is attainable.
Picture GapsPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen);

// In which hours of the day each cut played, in rotation order; neighbouring cuts share a row where there are
// too many.
Picture HoursPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen);

} // namespace ravlo
