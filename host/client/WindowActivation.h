// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <functional>

namespace ravlo
{

// Calls a handler when the user returns to this thread's windows from another program. At most one may exist.
class WindowActivation
{
public:
    // The handler is called from the message loop, never from inside the activation, and once for several
    // activations before the call. Its exceptions are dropped.
    explicit WindowActivation(std::function<void()> onActive);
    WindowActivation(const WindowActivation&) = delete;
    WindowActivation& operator=(const WindowActivation&) = delete;
    ~WindowActivation();

private:
    static LRESULT CALLBACK OnHook(int lCode, WPARAM wParam, LPARAM lParam) noexcept;
    static void CALLBACK OnTimer(HWND hWindow, UINT lMessage, UINT_PTR lTimer, DWORD lTicks) noexcept;
    void Plan() noexcept;

    static WindowActivation* m_pOnly;
    std::function<void()> m_onActive;
    UINT_PTR m_lTimer = 0; // 0: no call is waiting
    HHOOK m_hHook;
};

} // namespace ravlo
