// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// Status: the bar along the lower edge, with two texts and a third one, in whose place ProgressBar1 is while
// something runs.
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
    void SetResult(const std::wstring& sResult);
    void ShowProgress(int lMax);
    void MoveProgress(int lValue);
    void HideProgress();

private:
    void ShowResult();

    HWND m_hStatus;
    HWND m_hProgress;
    int m_lDpi = 96;
    std::wstring m_sResult;
    bool m_bProgress = false;
};

} // namespace ravlo
