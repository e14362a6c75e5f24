// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Something that keeps a level from being green, as a sentence without a full stop.
struct Finding
{
    Light eLight = Light::Yellow;
    std::wstring sText;
};

// What a level's figures show, the red findings first. The separations are those that are measured, 0 for
// none. Nothing for a level that is never asked.
std::vector<Finding> FindingsOf(const LevelHealth& level);

// Sets the light and its reasons by the level's other figures: green without findings.
void SetLight(LevelHealth& level);

// What so many picks that break a rule mean for a level: red when they are more than one in a hundred.
Light BrokenRulesLight(std::uint64_t broken, std::uint64_t picks) noexcept;

// What a separation means next to the attainable one: red above it, yellow when it leaves little room.
Light RoomLight(std::int32_t lSetMins, std::int32_t lAttainableMins) noexcept;

// "7 of 144 slots stay empty: no cut is an opener"; empty when all are filled.
std::wstring UnfilledText(const LevelHealth& level);

} // namespace ravlo
