// SPDX-License-Identifier: MIT
#include "ui/health/HealthForecast.h"

#include "base/CaseFolding.h"

#include <algorithm>

namespace ravlo
{

std::optional<std::size_t> HealthForecast::LevelOf(const std::wstring& sKey) const
{
    const auto found =
        std::find_if(health.levels.begin(), health.levels.end(),
                     [&](const LevelHealth& level) { return EqualIgnoringCase(level.sKey, sKey); });
    if (found == health.levels.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - health.levels.begin());
}

} // namespace ravlo
