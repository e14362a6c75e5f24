// SPDX-License-Identifier: MIT
#include "ui/library/windows/StatusWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <commctrl.h>
#include <utility>

namespace ravlo
{

namespace
{

// The parts' shares of the width, in hundredths: first text, second text; the result or the progress bar
// takes the rest.
constexpr int lFirstShare = 35;
constexpr int lSecondShare = 20;
constexpr int lResultPart = 2;

} // namespace

StatusWindow::StatusWindow(HWND hParent, int lId, int lProgressId)
    : m_hStatus(MakeControl(hParent, STATUSCLASSNAMEW, L"Status", WS_CLIPCHILDREN | SBARS_SIZEGRIP, lId)),
      m_hProgress(MakeControl(m_hStatus, PROGRESS_CLASSW, L"Progress", PBS_SMOOTH, lProgressId))
{
    ::ShowWindow(m_hProgress, SW_HIDE);
    LayOut(); // texts may come before the first size
}

int StatusWindow::Height() const
{
    RECT window{};
    ::GetWindowRect(m_hStatus, &window);
    return static_cast<int>(window.bottom - window.top);
}

void StatusWindow::Enable(bool bEnable)
{
    ::EnableWindow(m_hStatus, bEnable);
    ::EnableWindow(m_hProgress, bEnable);
}

void StatusWindow::SetLook(HFONT hFont, int lDpi)
{
    m_lDpi = lDpi;
    SetFont(m_hStatus, hFont);
}

void StatusWindow::LayOut()
{
    ::SendMessageW(m_hStatus, WM_SIZE, 0, 0); // it finds its own place
    RECT client{};
    ::GetClientRect(m_hStatus, &client);
    const auto lWidth = static_cast<int>(client.right);
    const int lParts[] = {lWidth * lFirstShare / 100, lWidth * (lFirstShare + lSecondShare) / 100, -1};
    ::SendMessageW(m_hStatus, SB_SETPARTS, ARRAYSIZE(lParts), reinterpret_cast<LPARAM>(lParts));
    RECT part{};
    ::SendMessageW(m_hStatus, SB_GETRECT, lResultPart, reinterpret_cast<LPARAM>(&part));
    const int lEdge = Scaled(2, m_lDpi);
    const int lGrip = ::GetSystemMetrics(SM_CXVSCROLL);
    ::MoveWindow(m_hProgress, static_cast<int>(part.left) + lEdge, static_cast<int>(part.top) + lEdge,
                 static_cast<int>(part.right - part.left) - 2 * lEdge - lGrip,
                 static_cast<int>(part.bottom - part.top) - 2 * lEdge, TRUE);
}

void StatusWindow::SetTexts(const std::wstring& sFirst, const std::wstring& sSecond)
{
    ::SendMessageW(m_hStatus, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(sFirst.c_str()));
    ::SendMessageW(m_hStatus, SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(sSecond.c_str()));
    ::UpdateWindow(m_hStatus);
}

void StatusWindow::SetResult(const std::wstring& sResult)
{
    if (std::exchange(m_sResult, sResult) != sResult)
        ShowResult();
}

void StatusWindow::ShowResult()
{
    ::SendMessageW(m_hStatus, SB_SETTEXTW, lResultPart,
                   reinterpret_cast<LPARAM>(m_bProgress ? L"" : m_sResult.c_str()));
    ::UpdateWindow(m_hStatus);
}

void StatusWindow::ShowProgress(int lMax)
{
    m_bProgress = true;
    ShowResult();
    ::SendMessageW(m_hProgress, PBM_SETRANGE32, 0, lMax);
    ::SendMessageW(m_hProgress, PBM_SETPOS, 0, 0);
    ::ShowWindow(m_hProgress, SW_SHOWNA);
}

void StatusWindow::MoveProgress(int lValue)
{
    ::SendMessageW(m_hProgress, PBM_SETPOS, static_cast<WPARAM>(lValue), 0);
    ::UpdateWindow(m_hProgress);
}

void StatusWindow::HideProgress()
{
    ::ShowWindow(m_hProgress, SW_HIDE);
    m_bProgress = false;
    ShowResult();
}

} // namespace ravlo
