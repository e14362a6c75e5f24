// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"

namespace ravlo
{

// What clsRotation needs of its manager's windows, which implement it.
class HealthWindows
{
public:
    virtual ~HealthWindows() = default;
    // Shows the rotation health window until it is closed; brings one that is showing to the front. plan:
    // what to ask first; without slots, what the window was last used with, or each level in turn.
    virtual void ShowHealth(const Plan& plan) = 0;
};

} // namespace ravlo
