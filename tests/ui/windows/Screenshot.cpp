// SPDX-License-Identifier: MIT
#include "ui/windows/Screenshot.h"

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

RECT PlaceOf(HWND hWindow)
{
    RECT place{};
    ::GetWindowRect(hWindow, &place);
    return place;
}

void Paint(HDC hDC, POINT at, HWND hWindow)
{
    const RECT place = PlaceOf(hWindow);
    const HDC hWindowDC = ::GetWindowDC(hWindow);
    ::BitBlt(hDC, static_cast<int>(place.left - at.x), static_cast<int>(place.top - at.y),
             static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
             hWindowDC, 0, 0, SRCCOPY);
    ::ReleaseDC(hWindow, hWindowDC);
}

HBITMAP PictureOf(const std::vector<HWND>& hWindows)
{
    RECT all{};
    for (const HWND hWindow : hWindows)
    {
        const RECT place = PlaceOf(hWindow);
        ::UnionRect(&all, &all, &place);
    }
    const HDC hScreenDC = ::GetDC(nullptr);
    const HDC hDC = ::CreateCompatibleDC(hScreenDC);
    const HBITMAP hBitmap = ::CreateCompatibleBitmap(hScreenDC, static_cast<int>(all.right - all.left),
                                                     static_cast<int>(all.bottom - all.top));
    const HGDIOBJ hBefore = ::SelectObject(hDC, hBitmap);
    const RECT background{0, 0, all.right - all.left, all.bottom - all.top};
    ::FillRect(hDC, &background, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
    for (const HWND hWindow : hWindows)
        Paint(hDC, {all.left, all.top}, hWindow);
    ::SelectObject(hDC, hBefore);
    ::DeleteDC(hDC);
    ::ReleaseDC(nullptr, hScreenDC);
    return hBitmap;
}

} // namespace

bool TakeScreenshot(HWND hWindow, const std::wstring& sName)
{
    return TakeScreenshot(std::vector<HWND>{hWindow}, sName);
}

bool TakeScreenshot(const std::vector<HWND>& hWindows, const std::wstring& sName)
{
    ULONG_PTR lToken = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&lToken, &input, nullptr) != Gdiplus::Ok)
        return false;
    const HBITMAP hBitmap = PictureOf(hWindows);
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
