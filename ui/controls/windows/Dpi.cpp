// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Dpi.h"

namespace ravlo
{

namespace
{

// A function of the system's user library that older systems lack; null there.
template <class Function> Function* UserFunction(const char* sName) noexcept
{
    const HMODULE hUser = ::GetModuleHandleW(L"user32.dll");
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(hUser, sName)));
}

using SetContext = HANDLE WINAPI(HANDLE hContext);
using GetDpi = UINT WINAPI(HWND hWindow);
using ParametersForDpi = BOOL WINAPI(UINT lAction, UINT lParam, PVOID pParam, UINT lFlags, UINT lDpi);
using AdjustForDpi = BOOL WINAPI(LPRECT pRect, DWORD lStyle, BOOL bMenu, DWORD lExStyle, UINT lDpi);

int SystemDpi() noexcept
{
    const HDC hDC = ::GetDC(nullptr);
    const int lDpi = ::GetDeviceCaps(hDC, LOGPIXELSX);
    ::ReleaseDC(nullptr, hDC);
    return lDpi;
}

LOGFONTW MessageLogFont(int lDpi) noexcept
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    static const auto ForDpi = UserFunction<ParametersForDpi>("SystemParametersInfoForDpi");
    if (ForDpi &&
        ForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(lDpi)) != FALSE)
        return metrics.lfMessageFont;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight =
        ::MulDiv(static_cast<int>(metrics.lfMessageFont.lfHeight), lDpi, SystemDpi());
    return metrics.lfMessageFont;
}

} // namespace

DpiAwareness::DpiAwareness() noexcept : m_hBefore(nullptr)
{
    static const auto Set = UserFunction<SetContext>("SetThreadDpiAwarenessContext");
    for (const INT_PTR lContext : {-4, -3}) // per monitor, second and first version
        if (Set && !m_hBefore)
            m_hBefore = Set(reinterpret_cast<HANDLE>(lContext));
}

DpiAwareness::~DpiAwareness()
{
    static const auto Set = UserFunction<SetContext>("SetThreadDpiAwarenessContext");
    if (m_hBefore)
        Set(m_hBefore);
}

int DpiOf(HWND hWindow) noexcept
{
    static const auto Get = UserFunction<GetDpi>("GetDpiForWindow");
    const int lDpi = Get && hWindow ? static_cast<int>(Get(hWindow)) : 0;
    return lDpi > 0 ? lDpi : SystemDpi();
}

UniqueFont MessageFont(int lDpi)
{
    const LOGFONTW font = MessageLogFont(lDpi);
    return UniqueFont(::CreateFontIndirectW(&font));
}

UniqueFont SymbolFont(int lDpi)
{
    LOGFONTW font{};
    font.lfHeight = MessageLogFont(lDpi).lfHeight;
    font.lfCharSet = SYMBOL_CHARSET;
    ::lstrcpynW(font.lfFaceName, L"Marlett", LF_FACESIZE);
    return UniqueFont(::CreateFontIndirectW(&font));
}

void TakeSuggestedPlace(HWND hWindow, LPARAM lParam) noexcept
{
    const auto& place = *reinterpret_cast<const RECT*>(lParam);
    ::SetWindowPos(hWindow, nullptr, static_cast<int>(place.left), static_cast<int>(place.top),
                   static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE WindowSizeFor(HWND hWindow, SIZE client, int lDpi) noexcept
{
    static const auto ForDpi = UserFunction<AdjustForDpi>("AdjustWindowRectExForDpi");
    RECT rect{0, 0, client.cx, client.cy};
    const auto lStyle = static_cast<DWORD>(::GetWindowLongPtrW(hWindow, GWL_STYLE));
    const auto lExStyle = static_cast<DWORD>(::GetWindowLongPtrW(hWindow, GWL_EXSTYLE));
    const BOOL bMenu = ::GetMenu(hWindow) != nullptr;
    if (!ForDpi || !ForDpi(&rect, lStyle, bMenu, lExStyle, static_cast<UINT>(lDpi)))
        ::AdjustWindowRectEx(&rect, lStyle, bMenu, lExStyle);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

} // namespace ravlo
