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

    // The control's own result of a message, which passes by every handler: for what is asked or set for each
    // of thousands of items, where finding the handlers costs more than the message.
    LRESULT Direct(UINT lMessage, WPARAM wParam, LPARAM lParam) const
    {
        return ::CallWindowProcW(m_control, m_hWindow, lMessage, wParam, lParam);
    }

private:
    static LRESULT CALLBACK OnMessage(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam, UINT_PTR lId,
                                      DWORD_PTR pSubclass) noexcept;

    HWND m_hWindow;
    WNDPROC m_control;
    Handler m_handler;
};

} // namespace ravlo
