// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsHostLoop.h"

#include <windows.h>

namespace ravlo
{

void WindowsHostLoop::PumpMessages()
{
    constexpr DWORD lLongest = 250; // milliseconds
    const DWORD lStart = ::GetTickCount();
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    {
        if (message.message == WM_QUIT)
        {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (!::CallMsgFilterW(&message, MSGF_USER))
        {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
        if (::GetTickCount() - lStart >= lLongest)
            return;
    }
}

void WindowsHostLoop::Sleep(std::uint32_t lMilliseconds) { ::Sleep(lMilliseconds); }

} // namespace ravlo
