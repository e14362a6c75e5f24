// SPDX-License-Identifier: MIT
#include "ui/windows/Screenshot.h"

#include "platform/windows/WindowContent.h"

namespace ravlo::test
{

namespace
{

std::wstring FileNamed(const std::wstring& sName)
{
    const std::wstring sFolder = RAVLO_SCREENSHOTS;
    ::CreateDirectoryW(sFolder.c_str(), nullptr);
    return sFolder + L"/" + sName + L".png";
}

} // namespace

bool TakeScreenshot(HWND hWindow, const std::wstring& sName)
{
    return TakeScreenshot(std::vector<HWND>{hWindow}, sName);
}

bool TakeScreenshot(const std::vector<HWND>& hWindows, const std::wstring& sName)
{
    return WritePng(hWindows, FileNamed(sName));
}

void LookLikeACurrentDesktop()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    for (LOGFONTW* font : {&metrics.lfCaptionFont, &metrics.lfSmCaptionFont, &metrics.lfMenuFont,
                           &metrics.lfStatusFont, &metrics.lfMessageFont})
    {
        font->lfHeight = -12; // 9 points at 96 dpi
        font->lfWeight = FW_NORMAL;
        ::lstrcpynW(font->lfFaceName, L"Segoe UI", LF_FACESIZE);
    }
    ::SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
}

} // namespace ravlo::test
