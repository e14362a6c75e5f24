// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "scheduler/clsSchedMan.h"
#include "ui/health/frmHealthPresenter.h"

#include <memory>
#include <optional>

namespace ravlo
{

class frmHealthWindow;

// Makes, shows and destroys the one rotation health window of a manager, which it holds weakly, and remembers
// its last figures.
class HealthWindowLifetime
{
public:
    explicit HealthWindowLifetime(std::weak_ptr<clsSchedMan> cSchedMan);
    ~HealthWindowLifetime();
    HealthWindowLifetime(const HealthWindowLifetime&) = delete;
    HealthWindowLifetime& operator=(const HealthWindowLifetime&) = delete;

    // Shows the window until it is closed; brings one that is showing to the front. hostPlan: the plan to ask
    // first, nothing for none. Returns the cut to go to in the library window, if any.
    std::optional<HealthTarget> Show(std::optional<Plan> hostPlan);
    // The station has changed: the figures on the screen are out of date.
    void NoteChange();

private:
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    // A running Show holds references too: the host, called in between, may release everything.
    std::shared_ptr<HealthMemory> m_cMemory = std::make_shared<HealthMemory>();
    std::weak_ptr<frmHealthWindow> m_cWindow;
};

} // namespace ravlo
