// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Window.h"

#include "base/RuntimeError.h"

#include <map>
#include <mutex>

extern "C" IMAGE_DOS_HEADER __ImageBase; // the linker puts it at the module's start

namespace ravlo
{

HINSTANCE ThisModule() noexcept { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

namespace
{

// How many live users each class has. Managers may live on several threads of one process.
std::mutex& UsersLock()
{
    static std::mutex lock;
    return lock;
}
std::map<std::wstring, int>& Users()
{
    static std::map<std::wstring, int> colUsers;
    return colUsers;
}

} // namespace

WindowClass::WindowClass(const wchar_t* sName, int lBackground, UINT lStyle) : m_sName(sName)
{
    const std::lock_guard cLock(UsersLock());
    if (++Users()[m_sName] > 1)
        return;
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof wndClass;
    wndClass.style = lStyle;
    wndClass.lpfnWndProc = &Window::Procedure;
    wndClass.hInstance = ThisModule();
    wndClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    wndClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(lBackground) + 1);
    wndClass.lpszClassName = m_sName.c_str();
    ::RegisterClassExW(&wndClass);
}

WindowClass::~WindowClass()
{
    const std::lock_guard cLock(UsersLock());
    if (--Users()[m_sName] > 0)
        return;
    Users().erase(m_sName);
    ::UnregisterClassW(m_sName.c_str(), ThisModule());
}

Window::Window(const wchar_t* sClass, int lBackground, UINT lClassStyle)
    : m_cClass(sClass, lBackground, lClassStyle)
{
}

Window::~Window() { Destroy(); }

void Window::Destroy() noexcept
{
    if (!m_hWindow)
        return;
    // The object ends: from here on the system alone handles the window.
    ::SetWindowLongPtrW(m_hWindow, GWLP_USERDATA, 0);
    ::DestroyWindow(m_hWindow);
    m_hWindow = nullptr;
}

void Window::Create(const WindowStart& start)
{
    const bool bChild = (start.lStyle & WS_CHILD) != 0;
    const HMENU hMenuOrId = bChild ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(start.lId)) : start.hMenu;
    const int lPlace = bChild ? 0 : CW_USEDEFAULT;
    ::CreateWindowExW(start.lExStyle, m_cClass.Name(), start.sTitle, start.lStyle, lPlace, lPlace, lPlace,
                      lPlace, start.hParent, hMenuOrId, ThisModule(), this);
    if (!m_hWindow)
        throw RuntimeError(error::Internal, L"A window could not be created");
}

LRESULT Window::Default(UINT lMessage, WPARAM wParam, LPARAM lParam) noexcept
{
    return ::DefWindowProcW(m_hWindow, lMessage, wParam, lParam);
}

LRESULT CALLBACK Window::Procedure(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (lMessage == WM_NCCREATE)
    {
        const auto* pStart = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* pCreated = static_cast<Window*>(pStart->lpCreateParams);
        pCreated->m_hWindow = hWindow;
        ::SetWindowLongPtrW(hWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pCreated));
    }
    auto* pWindow = reinterpret_cast<Window*>(::GetWindowLongPtrW(hWindow, GWLP_USERDATA));
    if (!pWindow)
        return ::DefWindowProcW(hWindow, lMessage, wParam, lParam);
    LRESULT lResult = 0;
    try
    {
        lResult = pWindow->OnMessage(lMessage, wParam, lParam);
    }
    catch (...)
    {
        pWindow->OnException();
    }
    if (lMessage == WM_NCDESTROY && ::GetWindowLongPtrW(hWindow, GWLP_USERDATA) != 0)
    {
        ::SetWindowLongPtrW(hWindow, GWLP_USERDATA, 0);
        pWindow->m_hWindow = nullptr;
        // Wakes a modal loop that waits for a posted message, in case the window was destroyed inside a sent
        // one.
        ::PostThreadMessageW(::GetCurrentThreadId(), WM_NULL, 0, 0);
    }
    return lResult;
}

} // namespace ravlo
