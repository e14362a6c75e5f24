// SPDX-License-Identifier: MIT
#include "platform/windows/CentredDialog.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <utility>

namespace ravlo
{

namespace
{

thread_local CentredOnOwner* pInnermost = nullptr;

bool IsDialog(HWND hWindow) noexcept
{
    wchar_t sClass[16] = L"";
    ::GetClassNameW(hWindow, sClass, ARRAYSIZE(sClass));
    return std::wcscmp(sClass, L"#32770") == 0;
}

} // namespace

void CentreDialog(HWND hDialog, HWND hOwner) noexcept
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(hOwner ? hOwner : hDialog, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT around = monitor.rcWork;
    if (hOwner && !::IsIconic(hOwner))
        ::GetWindowRect(hOwner, &around);
    RECT window{};
    ::GetWindowRect(hDialog, &window);
    const LONG cx = window.right - window.left;
    const LONG cy = window.bottom - window.top;
    const auto settled = [](LONG lWanted, LONG lLowest, LONG lHighest) {
        return static_cast<int>(std::max(lLowest, std::min(lWanted, lHighest)));
    };
    const RECT& work = monitor.rcWork;
    ::SetWindowPos(hDialog, nullptr,
                   settled((around.left + around.right - cx) / 2, work.left, work.right - cx),
                   settled((around.top + around.bottom - cy) / 2, work.top, work.bottom - cy), 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

namespace
{

// The width of the title and everything next to it in the title bar.
LONG WidthForTitle(HWND hBox) noexcept
{
    wchar_t sTitle[512] = L"";
    const int lLength = ::GetWindowTextW(hBox, sTitle, ARRAYSIZE(sTitle));
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HFONT hFont = ::CreateFontIndirectW(&metrics.lfCaptionFont);
    const HDC hDC = ::GetDC(hBox);
    const HGDIOBJ hBefore = ::SelectObject(hDC, hFont);
    SIZE size{};
    ::GetTextExtentPoint32W(hDC, sTitle, lLength, &size);
    ::SelectObject(hDC, hBefore);
    ::ReleaseDC(hBox, hDC);
    ::DeleteObject(hFont);
    // The close button, which may be half as wide again as its metric, and the frame.
    return size.cx + 2 * ::GetSystemMetrics(SM_CXSIZE) + 2 * ::GetSystemMetrics(SM_CXFRAME) +
           2 * ::GetSystemMetrics(SM_CXPADDEDBORDER);
}

// Where the buttons lie, in client coordinates.
struct ButtonRow
{
    LONG lLeft = 0x7FFFFFFF;
    LONG lRight = 0;
    std::array<HWND, 8> hButtons{};
    std::size_t count = 0;
};
ButtonRow ButtonsOf(HWND hBox) noexcept
{
    ButtonRow row;
    HWND hButton = nullptr;
    while (row.count < row.hButtons.size() && (hButton = ::FindWindowExW(hBox, hButton, L"Button", nullptr)))
    {
        if (!::IsWindowVisible(hButton))
            continue;
        RECT place{};
        ::GetWindowRect(hButton, &place);
        ::MapWindowPoints(nullptr, hBox, reinterpret_cast<POINT*>(&place), 2);
        row.lLeft = std::min(row.lLeft, place.left);
        row.lRight = std::max(row.lRight, place.right);
        row.hButtons[row.count++] = hButton;
    }
    return row;
}

// Of a box that was widened: by how much, and the timer that moves its buttons.
constexpr const wchar_t* sGrownBy = L"RavloGrownBy";
constexpr UINT_PTR lPlaceButtons = 0x5242;

void CALLBACK PlaceButtons(HWND hBox, UINT, UINT_PTR lTimer, DWORD) noexcept
{
    ::KillTimer(hBox, lTimer);
    const auto lGrow = static_cast<LONG>(reinterpret_cast<INT_PTR>(::RemovePropW(hBox, sGrownBy)));
    RECT client{};
    ::GetClientRect(hBox, &client);
    const ButtonRow row = ButtonsOf(hBox);
    const LONG lAside = row.lLeft - (client.right - lGrow - row.lRight); // 0 for buttons in the middle
    const int lShift = static_cast<int>(lAside > row.lLeft / 2 ? lGrow : lGrow / 2);
    for (std::size_t i = 0; i < row.count; ++i)
    {
        RECT place{};
        ::GetWindowRect(row.hButtons[i], &place);
        ::MapWindowPoints(nullptr, hBox, reinterpret_cast<POINT*>(&place), 2);
        ::SetWindowPos(row.hButtons[i], nullptr, static_cast<int>(place.left) + lShift,
                       static_cast<int>(place.top), 0, 0, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSIZE);
    }
}

} // namespace

void FitToTitle(HWND hBox) noexcept
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(hBox, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT window{};
    ::GetWindowRect(hBox, &window);
    const LONG lNeeded = std::min(WidthForTitle(hBox), monitor.rcWork.right - monitor.rcWork.left);
    const LONG lGrow = lNeeded - (window.right - window.left);
    if (lGrow <= 0)
        return;
    ::SetWindowPos(hBox, nullptr, 0, 0, static_cast<int>(lNeeded),
                   static_cast<int>(window.bottom - window.top), SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE);
    // The buttons may get their places only after the box has been activated.
    ::SetPropW(hBox, sGrownBy, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(lGrow)));
    ::SetTimer(hBox, lPlaceButtons, 0, &PlaceButtons);
}

CentredOnOwner::CentredOnOwner(HWND hOwner) noexcept
    : m_hOwner(hOwner), m_pBefore(std::exchange(pInnermost, this))
{
    m_hHook = ::SetWindowsHookExW(WH_CBT, &CentredOnOwner::OnHook, nullptr, ::GetCurrentThreadId());
}

CentredOnOwner::~CentredOnOwner()
{
    if (m_hHook)
        ::UnhookWindowsHookEx(m_hHook);
    pInnermost = m_pBefore;
}

LRESULT CALLBACK CentredOnOwner::OnHook(int lCode, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto hWindow = reinterpret_cast<HWND>(wParam);
    if (lCode == HCBT_ACTIVATE && pInnermost && pInnermost->m_bPending && IsDialog(hWindow) &&
        ::GetWindow(hWindow, GW_OWNER) == pInnermost->m_hOwner)
    {
        pInnermost->m_bPending = false;
        FitToTitle(hWindow);
        CentreDialog(hWindow, pInnermost->m_hOwner);
    }
    return ::CallNextHookEx(nullptr, lCode, wParam, lParam);
}

} // namespace ravlo
