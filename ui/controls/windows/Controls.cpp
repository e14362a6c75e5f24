// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Controls.h"

#include "base/RuntimeError.h"
#include "ui/controls/windows/Window.h"

#include <algorithm>
#include <cstddef>

namespace ravlo
{

HWND MakeControl(HWND hParent, const wchar_t* sClass, const std::wstring& sText, DWORD lStyle, int lId,
                 DWORD lExStyle)
{
    const HWND hControl =
        ::CreateWindowExW(lExStyle, sClass, sText.c_str(), lStyle | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0,
                          hParent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(lId)), ThisModule(), nullptr);
    if (!hControl)
        throw RuntimeError(error::Internal, L"A control could not be created");
    return hControl;
}

std::wstring WindowText(HWND hWindow)
{
    std::wstring sText(static_cast<std::size_t>(::GetWindowTextLengthW(hWindow)) + 1, L'\0');
    sText.resize(
        static_cast<std::size_t>(::GetWindowTextW(hWindow, sText.data(), static_cast<int>(sText.size()))));
    return sText;
}

SIZE TextSize(HDC hDC, const std::wstring& sText, int lWrapAt, UINT lFlags) noexcept
{
    RECT rect{0, 0, lWrapAt, 0};
    const UINT lWrap = lWrapAt > 0 ? DT_WORDBREAK : 0u;
    ::DrawTextW(hDC, sText.c_str(), static_cast<int>(sText.size()), &rect, DT_CALCRECT | lWrap | lFlags);
    return {rect.right, rect.bottom};
}

void SetFont(HWND hControl, HFONT hFont) noexcept
{
    ::SendMessageW(hControl, WM_SETFONT, reinterpret_cast<WPARAM>(hFont), TRUE);
}

void AskForPointer() noexcept
{
    POINT point{};
    ::GetCursorPos(&point);
    const HWND hWindow = ::WindowFromPoint(point);
    if (!hWindow || ::GetWindowThreadProcessId(hWindow, nullptr) != ::GetCurrentThreadId())
        return;
    const LRESULT lHit = ::SendMessageW(hWindow, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    ::SendMessageW(hWindow, WM_SETCURSOR, reinterpret_cast<WPARAM>(hWindow), MAKELPARAM(lHit, WM_MOUSEMOVE));
}

void Mover::Move(HWND hControl, int x, int y, int cx, int cy) noexcept
{
    // Copied bits could be those of a neighbour that overlapped the control.
    constexpr UINT lFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS;
    if (m_hMoves)
        m_hMoves =
            ::DeferWindowPos(m_hMoves, hControl, nullptr, x, y, std::max(0, cx), std::max(0, cy), lFlags);
    else // the moves gathered before are lost, but only when memory runs out
        ::SetWindowPos(hControl, nullptr, x, y, std::max(0, cx), std::max(0, cy), lFlags);
}

COLORREF UnfocusedSelection() noexcept
{
    constexpr int lShare = 30; // of the selection's colour, in hundredths
    const COLORREF lSelection = ::GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF lWindow = ::GetSysColor(COLOR_WINDOW);
    const auto Mix = [](int lLeft, int lRight) { return (lLeft * lShare + lRight * (100 - lShare)) / 100; };
    return RGB(Mix(GetRValue(lSelection), GetRValue(lWindow)), Mix(GetGValue(lSelection), GetGValue(lWindow)),
               Mix(GetBValue(lSelection), GetBValue(lWindow)));
}

} // namespace ravlo
