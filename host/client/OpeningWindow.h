// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace ravlo
{

// The controls of its dialog.
inline constexpr int lOpeningDialog = 200;
inline constexpr int lOpeningText = 201;
inline constexpr int lOpeningBar = 202;

// A small window with the progress of opening a station, so that something is on the screen while a large one
// is read. Visible as long as it exists.
class OpeningWindow
{
public:
    OpeningWindow();
    OpeningWindow(const OpeningWindow&) = delete;
    OpeningWindow& operator=(const OpeningWindow&) = delete;
    ~OpeningWindow();

    // lMax 0: the total is not known.
    void Show(const std::wstring& sText, long lCount, long lMax);
    HWND Handle() const noexcept { return m_hWindow; }

private:
    HWND m_hWindow;
    ULONGLONG m_shown = 0; // the tick at which something was last shown
};

} // namespace ravlo
