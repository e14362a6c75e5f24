// SPDX-License-Identifier: MIT
#include "ui/controls/windows/WindowSubclass.h"

#include <commctrl.h>
#include <utility>

namespace ravlo
{

WindowSubclass::WindowSubclass(HWND hWindow, Handler handler)
    : m_hWindow(hWindow), m_control(reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hWindow, GWLP_WNDPROC))),
      m_handler(std::move(handler))
{
    ::SetWindowSubclass(m_hWindow, &WindowSubclass::OnMessage, reinterpret_cast<UINT_PTR>(this),
                        reinterpret_cast<DWORD_PTR>(this));
}

WindowSubclass::~WindowSubclass()
{
    ::RemoveWindowSubclass(m_hWindow, &WindowSubclass::OnMessage, reinterpret_cast<UINT_PTR>(this));
}

LRESULT CALLBACK WindowSubclass::OnMessage(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR lId, DWORD_PTR pSubclass) noexcept
{
    if (lMessage != WM_NCDESTROY)
        return reinterpret_cast<const WindowSubclass*>(pSubclass)->m_handler(lMessage, wParam, lParam);
    ::RemoveWindowSubclass(hWindow, &WindowSubclass::OnMessage, lId);
    return ::DefSubclassProc(hWindow, lMessage, wParam, lParam);
}

} // namespace ravlo
