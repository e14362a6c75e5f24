// SPDX-License-Identifier: MIT
#include "ui/library/windows/DragLabel.h"

#include "ui/controls/windows/Dpi.h"

#include <commctrl.h>
#include <utility>

namespace ravlo
{

namespace
{

// At 96 dpi, from the pointer: clear of its arrow, and never below its tip, where drops are aimed at.
constexpr int lRight = 16;
constexpr int lBelow = 18;

TTTOOLINFOW Tool(HWND hOwner)
{
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE; // what every version of the control takes
    tool.uFlags = TTF_TRACK | TTF_ABSOLUTE | TTF_TRANSPARENT;
    tool.hwnd = hOwner;
    return tool;
}

LRESULT Send(HWND hTip, UINT lMessage, WPARAM wParam, const TTTOOLINFOW& tool)
{
    return ::SendMessageW(hTip, lMessage, wParam, reinterpret_cast<LPARAM>(&tool));
}

} // namespace

DragLabel::DragLabel(HWND hOwner, HFONT hFont, int lDpi, std::wstring sText)
    : m_sText(std::move(sText)), m_lDpi(lDpi),
      m_hTip(::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TRANSPARENT, TOOLTIPS_CLASSW, m_sText.c_str(),
                               WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP | TTS_NOANIMATE | TTS_NOFADE, 0, 0, 0,
                               0, hOwner, nullptr, nullptr, nullptr))
{
    if (!m_hTip)
        return;
    ::SendMessageW(m_hTip, WM_SETFONT, reinterpret_cast<WPARAM>(hFont), FALSE);
    TTTOOLINFOW tool = Tool(hOwner);
    tool.lpszText = m_sText.data();
    Send(m_hTip, TTM_ADDTOOLW, 0, tool);
    Follow();
    Send(m_hTip, TTM_TRACKACTIVATE, TRUE, tool);
}

DragLabel::~DragLabel()
{
    if (m_hTip)
        ::DestroyWindow(m_hTip);
}

void DragLabel::Follow() const noexcept
{
    POINT pointer{};
    if (!m_hTip || !::GetCursorPos(&pointer))
        return;
    ::SendMessageW(m_hTip, TTM_TRACKPOSITION, 0,
                   MAKELPARAM(pointer.x + Scaled(lRight, m_lDpi), pointer.y + Scaled(lBelow, m_lDpi)));
}

} // namespace ravlo
