// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <windows.h>

namespace ravlo
{

// Gives the messages of a control to a handler first, until this or the control is destroyed. For the thread
// of the control.
class WindowSubclass
{
public:
    // Returns the result of a message. Passes on what it does not answer itself, with DefSubclassProc. Must
    // not throw.
    using Handler = std::function<LRESULT(UINT lMessage, WPARAM wParam, LPARAM lParam)>;

    WindowSubclass(HWND hWindow, Handler handler);
    ~WindowSubclass();
    WindowSubclass(const WindowSubclass&) = delete;
    WindowSubclass& operator=(const WindowSubclass&) = delete;

private:
    static LRESULT CALLBACK OnMessage(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam, UINT_PTR lId,
                                      DWORD_PTR pSubclass) noexcept;

    HWND m_hWindow;
    Handler m_handler;
};

} // namespace ravlo
