// SPDX-License-Identifier: MIT
#pragma once

#include "plan/Slots.h"

#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace ravlo
{

// The category levels that contain a library's cuts. Names compare ignoring case.
class LevelsInUse
{
public:
    void Add(const std::wstring& sCategory, std::int32_t lLevel);
    bool Contains(const std::wstring& sCategory, std::int32_t lLevel) const;
    // One slot for each level, in the order of names and levels: the default clock.
    std::vector<Slot> RoundOfAll() const;

private:
    struct Level
    {
        std::wstring sFolded;
        std::int32_t lLevel;
        std::wstring sCategory; // as first seen
        bool operator<(const Level& other) const
        {
            return std::tie(sFolded, lLevel) < std::tie(other.sFolded, other.lLevel);
        }
    };
    std::set<Level> m_levels;
};

// Throws HostError, naming sName and the line, for the first slot whose level contains no cut.
void CheckLevels(const std::vector<Slot>& slots, const LevelsInUse& levels, const std::wstring& sName);

} // namespace ravlo
