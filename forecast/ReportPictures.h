// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"

#include <string>

namespace ravlo
{

// The pictures of a level in a report, as SVG elements. Their colours come from the page's style sheet, by
// class. sId names the picture for the page's links and must differ from picture to picture.

// The plays of every cut, fewest first, against their mean.
std::string PlaysPicture(const LevelHealth& level, const std::string& sId);

// The smallest, median and largest distance of the artists that come back soonest, against the separation
// that is set and the one that is attainable.
std::string DistancesPicture(const LevelHealth& level, const std::string& sId);

// In which hours of the day each cut played; several cuts share a row where there are too many.
std::string HoursPicture(const LevelHealth& level, const std::string& sId);

} // namespace ravlo
