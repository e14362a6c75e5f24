// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <type_traits>
#include <windows.h>

namespace ravlo
{

// Handles that are released when their owner ends.
template <auto Release> struct HandleRelease
{
    template <class Handle> void operator()(Handle hHandle) const noexcept { Release(hHandle); }
};
template <class Handle, auto Release>
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<Handle>, HandleRelease<Release>>;

using UniqueFont = UniqueHandle<HFONT, &::DeleteObject>;
using UniqueMenu = UniqueHandle<HMENU, &::DestroyMenu>;
using UniqueAccelerators = UniqueHandle<HACCEL, &::DestroyAcceleratorTable>;
using UniqueHook = UniqueHandle<HHOOK, &::UnhookWindowsHookEx>;

// A device context of a window with a font selected into it, for measuring text.
class FontContext
{
public:
    FontContext(HWND hWindow, HFONT hFont) noexcept
        : m_hWindow(hWindow), m_hDC(::GetDC(hWindow)), m_hBefore(::SelectObject(m_hDC, hFont))
    {
    }
    ~FontContext()
    {
        ::SelectObject(m_hDC, m_hBefore);
        ::ReleaseDC(m_hWindow, m_hDC);
    }
    FontContext(const FontContext&) = delete;
    FontContext& operator=(const FontContext&) = delete;

    HDC Get() const noexcept { return m_hDC; }

private:
    HWND m_hWindow;
    HDC m_hDC;
    HGDIOBJ m_hBefore;
};

} // namespace ravlo
