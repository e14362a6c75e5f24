// SPDX-License-Identifier: MIT
// close_window CLASS: waits for a visible window of that class in any program, closes it as a user does, and
// waits until it is gone. Exit status 0 when it was there and went.
#include <windows.h>

#include <cstdio>

namespace
{

constexpr int lTries = 1200;
constexpr DWORD lPause = 50; // ms

HWND Visible(const wchar_t* sClass)
{
    const HWND hWindow = ::FindWindowW(sClass, nullptr);
    return hWindow && ::IsWindowVisible(hWindow) != FALSE && ::IsWindowEnabled(hWindow) != FALSE ? hWindow
                                                                                                 : nullptr;
}

} // namespace

int wmain(int lCount, wchar_t** arguments)
{
    if (lCount != 2)
        return 2;
    HWND hWindow = nullptr;
    for (int i = 0; i < lTries && !hWindow; ++i, ::Sleep(lPause))
        hWindow = Visible(arguments[1]);
    if (!hWindow)
    {
        std::puts("no such window came");
        return 1;
    }
    for (int i = 0; i < lTries && ::IsWindow(hWindow) != FALSE; ++i, ::Sleep(lPause))
        ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
    return ::IsWindow(hWindow) != FALSE ? 1 : 0;
}
