// SPDX-License-Identifier: MIT
#include "host/client/OpeningWindow.h"

#include <commctrl.h>

namespace ravlo
{

namespace
{

constexpr ULONGLONG leastOpeningTicks = 50;

INT_PTR CALLBACK OnOpeningMessage(HWND, UINT lMessage, WPARAM, LPARAM)
{
    return lMessage == WM_INITDIALOG ? TRUE : FALSE; // it has no button: the opening cannot be cancelled
}

} // namespace

OpeningWindow::OpeningWindow()
{
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_PROGRESS_CLASS};
    ::InitCommonControlsEx(&controls);
    m_hWindow = ::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(lOpeningDialog), nullptr,
                                     OnOpeningMessage, 0);
    ::ShowWindow(m_hWindow, SW_SHOW);
    ::UpdateWindow(m_hWindow);
}

OpeningWindow::~OpeningWindow() { ::DestroyWindow(m_hWindow); }

void OpeningWindow::Show(const std::wstring& sText, long lCount, long lMax)
{
    const ULONGLONG tick = ::GetTickCount64();
    if (tick - m_shown < leastOpeningTicks)
        return;
    m_shown = tick;
    ::SetDlgItemTextW(m_hWindow, lOpeningText, sText.c_str());
    const HWND hBar = ::GetDlgItem(m_hWindow, lOpeningBar);
    ::SendMessageW(hBar, PBM_SETRANGE32, 0, lMax);
    ::SendMessageW(hBar, PBM_SETPOS, static_cast<WPARAM>(lMax > 0 ? lCount : 0), 0);
    ::RedrawWindow(m_hWindow, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

} // namespace ravlo
