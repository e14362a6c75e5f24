// SPDX-License-Identifier: MIT
#include "ui/rotation/windows/RotationWindows.h"

#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/VisualStyles.h"
#include "ui/rotation/ListSources.h"
#include "ui/rotation/windows/RotationListWindow.h"

#include <utility>

namespace ravlo
{

namespace
{

void Show(ModScheduler& cMod, ListSource source, const wchar_t* sPlaceKey)
{
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const HWND hFocus = ::GetFocus();
    {
        RotationListWindow cWindow(::GetActiveWindow(), cMod, std::move(source));
        cWindow.ShowModal(sPlaceKey);
    }
    if (::IsWindow(hFocus))
        ::SetFocus(hFocus);
}

} // namespace

void ShowExplanationWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, const std::wstring& sLevelKey,
                           const TextKey& cKey)
{
    Show(cSchedMan->Mod(), ExplanationSource(cSchedMan, sLevelKey, cKey), L"ExplanationPlace");
}

void ShowNextCutsWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, const std::wstring& sLevelKey)
{
    Show(cSchedMan->Mod(), NextCutsSource(cSchedMan, sLevelKey), L"NextCutsPlace");
}

} // namespace ravlo
