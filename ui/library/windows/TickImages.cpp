// SPDX-License-Identifier: MIT
#include "ui/library/windows/TickImages.h"

#include "ui/controls/windows/Dpi.h"

#include <uxtheme.h>
#include <vssym32.h>

namespace ravlo
{

namespace
{

constexpr int lBoxSize = 13; // at 96 dpi
constexpr int lImageSize = 16;

struct BoxLook
{
    int lThemeState;
    UINT lFrameState; // without themes
};
constexpr BoxLook boxLooks[] = {
    {CBS_UNCHECKEDNORMAL, DFCS_BUTTONCHECK},
    {CBS_CHECKEDNORMAL, DFCS_BUTTONCHECK | DFCS_CHECKED},
    {CBS_MIXEDNORMAL, DFCS_BUTTON3STATE | DFCS_CHECKED},
};

void DrawBox(HDC hDC, HTHEME hTheme, const BoxLook& look, const RECT& box)
{
    if (!hTheme || FAILED(::DrawThemeBackground(hTheme, hDC, BP_CHECKBOX, look.lThemeState, &box, nullptr)))
    {
        RECT frame = box;
        ::DrawFrameControl(hDC, &frame, DFC_BUTTON, look.lFrameState | DFCS_FLAT);
    }
}

} // namespace

UniqueImageList TickImages(HWND hTree, int lDpi)
{
    const int lSize = Scaled(lImageSize, lDpi);
    const int lBox = Scaled(lBoxSize, lDpi);
    const int lEdge = (lSize - lBox) / 2;
    const RECT image = {0, 0, lSize, lSize};
    const RECT box = {lEdge, lEdge, lEdge + lBox, lEdge + lBox};
    UniqueImageList hImages(::ImageList_Create(lSize, lSize, ILC_COLOR24, 4, 0));
    const HDC hScreen = ::GetDC(hTree);
    const HDC hDC = ::CreateCompatibleDC(hScreen);
    // Of no window: the tree would paint itself with this theme from then on.
    const HTHEME hTheme = ::OpenThemeData(nullptr, L"BUTTON");
    const auto Add = [&](const BoxLook* pLook) {
        const HBITMAP hBitmap = ::CreateCompatibleBitmap(hScreen, lSize, lSize);
        const HGDIOBJ hBefore = ::SelectObject(hDC, hBitmap);
        ::FillRect(hDC, &image, ::GetSysColorBrush(COLOR_WINDOW));
        if (pLook)
            DrawBox(hDC, hTheme, *pLook, box);
        ::SelectObject(hDC, hBefore);
        ::ImageList_Add(hImages.get(), hBitmap, nullptr);
        ::DeleteObject(hBitmap);
    };
    Add(nullptr);
    for (const BoxLook& look : boxLooks)
        Add(&look);
    if (hTheme)
        ::CloseThemeData(hTheme);
    ::DeleteDC(hDC);
    ::ReleaseDC(hTree, hScreen);
    return hImages;
}

} // namespace ravlo
