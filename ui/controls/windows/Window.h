// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// The DLL or program this code was linked into: window classes and resources are its own, not the host's.
HINSTANCE ThisModule() noexcept;

// Registers a window class of this module with the first of these that lives, and unregisters it with the
// last, so that the module can be unloaded and loaded again.
class WindowClass
{
public:
    // What differs between classes; the rest is common.
    explicit WindowClass(const wchar_t* sName, int lBackground = COLOR_BTNFACE, UINT lStyle = 0);
    ~WindowClass();
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;

    const wchar_t* Name() const noexcept { return m_sName.c_str(); }

private:
    std::wstring m_sName;
};

struct WindowStart
{
    const wchar_t* sTitle = L"";
    DWORD lStyle = 0;
    DWORD lExStyle = 0;
    HWND hParent = nullptr; // the owner of a top-level window
    int lId = 0;            // of a child window
    HMENU hMenu = nullptr;  // of a top-level window, which then owns it
};

// A window of our own. The object outlives the window: when the system destroys the window first, Handle() is
// null from then on.
class Window
{
public:
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    HWND Handle() const noexcept { return m_hWindow; }
    void Destroy() noexcept;

protected:
    // lBackground: a COLOR_ number.
    explicit Window(const wchar_t* sClass, int lBackground = COLOR_BTNFACE, UINT lClassStyle = 0);
    // Throws RuntimeError when the window cannot be made.
    void Create(const WindowStart& start);

    // Pass to Default what is not handled. An exception ends the message with 0 after OnException.
    virtual LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) = 0;
    LRESULT Default(UINT lMessage, WPARAM wParam, LPARAM lParam) noexcept;
    // Called inside a catch block.
    virtual void OnException() noexcept = 0;

private:
    friend class WindowClass;
    static LRESULT CALLBACK Procedure(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam);

    WindowClass m_cClass;
    HWND m_hWindow = nullptr;
};

} // namespace ravlo
