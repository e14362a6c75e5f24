// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"

#include <string>

namespace ravlo
{

// A report for people: one HTML file, UTF-8, that needs no other file, script or font. Each picture is SVG
// and has its figures in a table below it.
std::string HtmlReport(const StationHealth& health);

// The same figures for programs: one JSON object, UTF-8.
std::string JsonReport(const StationHealth& health);

} // namespace ravlo
