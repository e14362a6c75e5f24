// SPDX-License-Identifier: MIT
#include "platform/windows/CentredDialog.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace ravlo
{

namespace
{

thread_local CentredOnOwner* pInnermost = nullptr;

bool IsDialog(HWND hWindow) noexcept
{
    wchar_t sClass[16] = L"";
    ::GetClassNameW(hWindow, sClass, ARRAYSIZE(sClass));
    return std::wcscmp(sClass, L"#32770") == 0;
}

} // namespace

void CentreDialog(HWND hDialog, HWND hOwner) noexcept
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(hOwner ? hOwner : hDialog, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT around = monitor.rcWork;
    if (hOwner && !::IsIconic(hOwner))
        ::GetWindowRect(hOwner, &around);
    RECT window{};
    ::GetWindowRect(hDialog, &window);
    const LONG cx = window.right - window.left;
    const LONG cy = window.bottom - window.top;
    const auto settled = [](LONG lWanted, LONG lLowest, LONG lHighest)
    { return static_cast<int>(std::max(lLowest, std::min(lWanted, lHighest))); };
    const RECT& work = monitor.rcWork;
    ::SetWindowPos(hDialog, nullptr,
                   settled((around.left + around.right - cx) / 2, work.left, work.right - cx),
                   settled((around.top + around.bottom - cy) / 2, work.top, work.bottom - cy), 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

CentredOnOwner::CentredOnOwner(HWND hOwner) noexcept
    : m_hOwner(hOwner), m_pBefore(std::exchange(pInnermost, this))
{
    if (hOwner)
        m_hHook = ::SetWindowsHookExW(WH_CBT, &CentredOnOwner::OnHook, nullptr, ::GetCurrentThreadId());
}

CentredOnOwner::~CentredOnOwner()
{
    if (m_hHook)
        ::UnhookWindowsHookEx(m_hHook);
    pInnermost = m_pBefore;
}

LRESULT CALLBACK CentredOnOwner::OnHook(int lCode, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto hWindow = reinterpret_cast<HWND>(wParam);
    if (lCode == HCBT_ACTIVATE && pInnermost && pInnermost->m_hOwner && IsDialog(hWindow) &&
        ::GetWindow(hWindow, GW_OWNER) == pInnermost->m_hOwner)
        CentreDialog(hWindow, std::exchange(pInnermost->m_hOwner, nullptr));
    return ::CallNextHookEx(nullptr, lCode, wParam, lParam);
}

} // namespace ravlo
