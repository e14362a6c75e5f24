// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// Status: the bar along the lower edge, with two texts and, while something runs, ProgressBar1.
class StatusWindow
{
public:
    StatusWindow(HWND hParent, int lId, int lProgressId);

    HWND Handle() const noexcept { return m_hStatus; }
    int Height() const;
    void Enable(bool bEnable);
    void SetLook(HFONT hFont, int lDpi);
    // Call when the parent was sized.
    void LayOut();

    void SetTexts(const std::wstring& sFirst, const std::wstring& sSecond);
    void ShowProgress(int lMax);
    void MoveProgress(int lValue);
    void HideProgress();

private:
    HWND m_hStatus;
    HWND m_hProgress;
    int m_lDpi = 96;
};

} // namespace ravlo
