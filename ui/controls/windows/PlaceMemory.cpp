// SPDX-License-Identifier: MIT
#include "ui/controls/windows/PlaceMemory.h"

#include "platform/Messages.h"
#include "ui/controls/WindowPlace.h"
#include "ui/controls/windows/Dpi.h"

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";

ScreenBox BoxOf(const RECT& rect)
{
    return {static_cast<std::int32_t>(rect.left), static_cast<std::int32_t>(rect.top),
            static_cast<std::int32_t>(rect.right - rect.left),
            static_cast<std::int32_t>(rect.bottom - rect.top)};
}

ScreenBox WorkArea(HMONITOR hMonitor)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(hMonitor, &monitor);
    return BoxOf(monitor.rcWork);
}

void Place(HWND hWindow, const ScreenBox& box)
{
    ::SetWindowPos(hWindow, nullptr, box.lLeft, box.lTop, box.lWidth, box.lHeight,
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

void PlaceFirst(HWND hWindow, SIZE size)
{
    const HWND hOwner = ::GetWindow(hWindow, GW_OWNER);
    const ScreenBox work = WorkArea(::MonitorFromWindow(hOwner ? hOwner : hWindow, MONITOR_DEFAULTTONEAREST));
    ScreenBox around = work;
    if (hOwner && !::IsIconic(hOwner))
    {
        RECT rect{};
        ::GetWindowRect(hOwner, &rect);
        around = BoxOf(rect);
    }
    Place(hWindow, FittedInto(work, CentredOn(around, static_cast<int>(size.cx), static_cast<int>(size.cy))));
}

} // namespace

int RestorePlace(HWND hWindow, const UserSettings& cUserSettings, const std::wstring& sKey, SIZE size)
{
    const std::optional<WindowPlace> place =
        ParseWindowPlace(cUserSettings.Get(sProgramTitle, sSection, sKey, L""));
    if (!place)
    {
        PlaceFirst(hWindow, size);
        return SW_SHOWNORMAL;
    }
    // First onto its monitor, so that the resolution is that monitor's.
    const RECT corner{place->lLeft, place->lTop, place->lLeft + place->lWidth, place->lTop + place->lHeight};
    const ScreenBox work = WorkArea(::MonitorFromRect(&corner, MONITOR_DEFAULTTONEAREST));
    Place(hWindow, FittedInto(work, {place->lLeft, place->lTop, place->lWidth, place->lHeight}));
    const int lDpi = DpiOf(hWindow);
    Place(hWindow, FittedInto(work, {place->lLeft, place->lTop, Scaled(place->lWidth, lDpi),
                                     Scaled(place->lHeight, lDpi)}));
    return place->bMaximised ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
}

void ResizeOnScreen(HWND hWindow, SIZE size)
{
    RECT rect{};
    ::GetWindowRect(hWindow, &rect);
    const ScreenBox work = WorkArea(::MonitorFromWindow(hWindow, MONITOR_DEFAULTTONEAREST));
    Place(hWindow,
          FittedInto(work, {static_cast<std::int32_t>(rect.left), static_cast<std::int32_t>(rect.top),
                            static_cast<std::int32_t>(size.cx), static_cast<std::int32_t>(size.cy)}));
}

void RememberPlace(HWND hWindow, UserSettings& cUserSettings, const std::wstring& sKey)
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (!::GetWindowPlacement(hWindow, &placement))
        return;
    ScreenBox box = BoxOf(placement.rcNormalPosition);
    const bool bNormal = !::IsIconic(hWindow) && !::IsZoomed(hWindow);
    if (bNormal)
    {
        // Where a task bar is docked at the top or left, the placement is not in screen coordinates.
        RECT rect{};
        ::GetWindowRect(hWindow, &rect);
        box = BoxOf(rect);
    }
    const int lDpi = DpiOf(hWindow);
    const WindowPlace place{box.lLeft, box.lTop, Unscaled(box.lWidth, lDpi), Unscaled(box.lHeight, lDpi),
                            ::IsZoomed(hWindow) != FALSE};
    cUserSettings.Set(sProgramTitle, sSection, sKey, TextOf(place));
}

} // namespace ravlo
