// SPDX-License-Identifier: MIT
#include "ui/health/windows/HealthWindowLifetime.h"

#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/VisualStyles.h"
#include "ui/health/windows/frmHealthWindow.h"

#include <utility>

namespace ravlo
{

HealthWindowLifetime::HealthWindowLifetime(std::weak_ptr<clsSchedMan> cSchedMan)
    : m_cSchedMan(std::move(cSchedMan))
{
}
HealthWindowLifetime::~HealthWindowLifetime() = default;

std::optional<HealthTarget> HealthWindowLifetime::Show(std::optional<Plan> hostPlan)
{
    if (const std::shared_ptr<frmHealthWindow> cShowing = m_cWindow.lock())
        return cShowing->Form().ShowModalUI(std::nullopt); // to the front
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
        return std::nullopt;
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const std::shared_ptr<HealthMemory> cMemory = m_cMemory;
    const HWND hFocus = ::GetFocus();
    auto cWindow =
        std::make_shared<frmHealthWindow>(::GetActiveWindow(), cSchedMan->Mod(), cSchedMan, *cMemory);
    m_cWindow = cWindow;
    std::optional<HealthTarget> target = cWindow->Form().ShowModalUI(std::move(hostPlan));
    cWindow.reset();
    if (::IsWindow(hFocus))
        ::SetFocus(hFocus);
    return target;
}

void HealthWindowLifetime::NoteChange()
{
    if (const std::shared_ptr<frmHealthWindow> cShowing = m_cWindow.lock())
        cShowing->Form().NoteChange();
}

} // namespace ravlo
