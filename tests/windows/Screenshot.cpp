// SPDX-License-Identifier: MIT
#include "windows/Screenshot.h"

#include <objidl.h>

// The headers below want them.
using std::max;
using std::min;
#include <gdiplus.h>

namespace ravlo::test
{

namespace
{

// The encoder of PNG files.
constexpr CLSID encoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

std::wstring FileNamed(const std::wstring& sName)
{
    const std::wstring sFolder = RAVLO_SCREENSHOTS;
    ::CreateDirectoryW(sFolder.c_str(), nullptr);
    return sFolder + L"/" + sName + L".png";
}

HBITMAP PictureOf(HWND hWindow)
{
    RECT rect{};
    ::GetWindowRect(hWindow, &rect);
    const int cx = static_cast<int>(rect.right - rect.left);
    const int cy = static_cast<int>(rect.bottom - rect.top);
    const HDC hWindowDC = ::GetWindowDC(hWindow);
    const HDC hDC = ::CreateCompatibleDC(hWindowDC);
    const HBITMAP hBitmap = ::CreateCompatibleBitmap(hWindowDC, cx, cy);
    const HGDIOBJ hBefore = ::SelectObject(hDC, hBitmap);
    ::BitBlt(hDC, 0, 0, cx, cy, hWindowDC, 0, 0, SRCCOPY);
    ::SelectObject(hDC, hBefore);
    ::DeleteDC(hDC);
    ::ReleaseDC(hWindow, hWindowDC);
    return hBitmap;
}

} // namespace

bool TakeScreenshot(HWND hWindow, const std::wstring& sName)
{
    ULONG_PTR lToken = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&lToken, &input, nullptr) != Gdiplus::Ok)
        return false;
    const HBITMAP hBitmap = PictureOf(hWindow);
    Gdiplus::Status eStatus = Gdiplus::Ok;
    {
        Gdiplus::Bitmap bitmap(hBitmap, nullptr);
        eStatus = bitmap.Save(FileNamed(sName).c_str(), &encoder, nullptr);
    }
    ::DeleteObject(hBitmap);
    Gdiplus::GdiplusShutdown(lToken);
    return eStatus == Gdiplus::Ok;
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
