// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserSettings.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ravlo
{

// The categories and levels that cuts were last moved or copied into, for the next time; remembered per user.
class RecentTargets
{
public:
    static constexpr std::size_t mostRemembered = 5;

    // Does not own the settings.
    explicit RecentTargets(UserSettings& cSettings) : m_cSettings(cSettings) {}

    // Their node keys, the last one first. Some may not exist in this station.
    std::vector<std::wstring> Keys() const;
    // Does not remember a name with a character that no category of this library can have.
    void Add(const std::wstring& sNodeKey);

private:
    UserSettings& m_cSettings;
};

} // namespace ravlo
