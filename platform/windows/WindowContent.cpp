// SPDX-License-Identifier: MIT
#include "platform/windows/WindowContent.h"

#include <objidl.h>

#include <algorithm>

// The headers below want them.
using std::max;
using std::min;
#include <gdiplus.h>

namespace ravlo
{

namespace
{

// The encoder of PNG files.
constexpr CLSID pngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

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

HBITMAP PictureOf(const std::vector<HWND>& windows)
{
    RECT all{};
    for (const HWND hWindow : windows)
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
    for (const HWND hWindow : windows)
        Paint(hDC, {all.left, all.top}, hWindow);
    ::SelectObject(hDC, hBefore);
    ::DeleteDC(hDC);
    ::ReleaseDC(nullptr, hScreenDC);
    return hBitmap;
}

} // namespace

std::wstring TextIn(HWND hWindow)
{
    std::wstring sText(static_cast<std::size_t>(::GetWindowTextLengthW(hWindow)) + 1, L'\0');
    sText.resize(
        static_cast<std::size_t>(::GetWindowTextW(hWindow, sText.data(), static_cast<int>(sText.size()))));
    return sText;
}

bool WritePng(const std::vector<HWND>& windows, const std::wstring& sFile)
{
    ULONG_PTR lToken = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&lToken, &input, nullptr) != Gdiplus::Ok)
        return false;
    const HBITMAP hBitmap = PictureOf(windows);
    Gdiplus::Status eStatus = Gdiplus::Ok;
    {
        Gdiplus::Bitmap bitmap(hBitmap, nullptr);
        eStatus = bitmap.Save(sFile.c_str(), &pngEncoder, nullptr);
    }
    ::DeleteObject(hBitmap);
    Gdiplus::GdiplusShutdown(lToken);
    return eStatus == Gdiplus::Ok;
}

} // namespace ravlo
