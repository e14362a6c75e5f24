// SPDX-License-Identifier: MIT
#include "host/client/WindowActivation.h"

#include <utility>

namespace ravlo
{

WindowActivation* WindowActivation::m_pOnly = nullptr;

WindowActivation::WindowActivation(std::function<void()> onActive)
    : m_onActive(std::move(onActive)),
      m_hHook(::SetWindowsHookExW(WH_CALLWNDPROCRET, OnHook, nullptr, ::GetCurrentThreadId()))
{
    m_pOnly = this;
}

WindowActivation::~WindowActivation()
{
    m_pOnly = nullptr;
    ::UnhookWindowsHookEx(m_hHook);
    if (m_lTimer != 0)
        ::KillTimer(nullptr, m_lTimer);
}

LRESULT CALLBACK WindowActivation::OnHook(int lCode, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (lCode == HC_ACTION && m_pOnly && message.message == WM_ACTIVATEAPP && message.wParam != FALSE)
        m_pOnly->Plan();
    return ::CallNextHookEx(nullptr, lCode, wParam, lParam);
}

void WindowActivation::Plan() noexcept
{
    if (m_lTimer == 0)
        m_lTimer = ::SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &WindowActivation::OnTimer);
}

void CALLBACK WindowActivation::OnTimer(HWND, UINT, UINT_PTR lTimer, DWORD) noexcept
{
    ::KillTimer(nullptr, lTimer);
    if (!m_pOnly || m_pOnly->m_lTimer != lTimer)
        return;
    m_pOnly->m_lTimer = 0;
    try
    {
        m_pOnly->m_onActive();
    }
    catch (...)
    {
        // Nobody to report to; the next activation tries again.
    }
}

} // namespace ravlo
