// SPDX-License-Identifier: MIT
#include "ui/windows/Tidy.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Handles.h"
#include "ui/windows/User.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace ravlo::test
{

namespace
{

std::string Name(HWND hWindow)
{
    const std::wstring sText = WindowText(hWindow);
    return "control " + std::to_string(::GetDlgCtrlID(hWindow)) + " '" +
           std::string(sText.begin(), sText.end()) + "'";
}

bool IsShown(HWND hWindow) { return (::GetWindowLongPtrW(hWindow, GWL_STYLE) & WS_VISIBLE) != 0; }

// In the parent's client coordinates, without what a window region leaves out.
HRGN ShapeOf(HWND hWindow)
{
    const RECT place = PlaceInParent(hWindow);
    const HRGN hShape = ::CreateRectRgn(0, 0, 0, 0);
    if (::GetWindowRgn(hWindow, hShape) == ERROR)
        ::SetRectRgn(hShape, 0, 0, static_cast<int>(place.right - place.left),
                     static_cast<int>(place.bottom - place.top));
    ::OffsetRgn(hShape, static_cast<int>(place.left), static_cast<int>(place.top));
    return hShape;
}

bool Overlap(HWND hA, HWND hB)
{
    const HRGN hShapeA = ShapeOf(hA);
    const HRGN hShapeB = ShapeOf(hB);
    const bool bOverlap = ::CombineRgn(hShapeA, hShapeA, hShapeB, RGN_AND) != NULLREGION;
    ::DeleteObject(hShapeA);
    ::DeleteObject(hShapeB);
    return bOverlap;
}

// Labels may wrap; buttons and check boxes may not.
bool TextFits(HWND hWindow)
{
    const std::wstring sClass = ClassOf(hWindow);
    if (sClass != L"Static" && sClass != L"Button")
        return true;
    const RECT client = ClientOf(hWindow);
    const LONG_PTR lStyle = ::GetWindowLongPtrW(hWindow, GWL_STYLE);
    if ((lStyle & SS_TYPEMASK) == (sClass == L"Static" ? SS_OWNERDRAW : BS_OWNERDRAW))
        return true; // its text is its name and not drawn
    const bool bWraps = sClass == L"Static" && (lStyle & SS_TYPEMASK) == SS_LEFT;
    const UINT lFlags = bWraps && (lStyle & SS_EDITCONTROL) != 0 ? DT_EDITCONTROL : 0u;
    const FontContext cContext(hWindow, reinterpret_cast<HFONT>(::SendMessageW(hWindow, WM_GETFONT, 0, 0)));
    const SIZE text =
        TextSize(cContext.Get(), WindowText(hWindow), bWraps ? static_cast<int>(client.right) : 0, lFlags);
    return text.cx <= client.right && text.cy <= client.bottom;
}

void Look(HWND hParent, Faults& sFaults)
{
    const RECT client = ClientOf(hParent);
    for (HWND hChild = ::GetWindow(hParent, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
    {
        if (!IsShown(hChild))
            continue;
        const RECT place = PlaceInParent(hChild);
        if (place.left < 0 || place.top < 0 || place.right > client.right || place.bottom > client.bottom)
            sFaults.push_back(Name(hChild) + " reaches out of its parent");
        if (!TextFits(hChild))
            sFaults.push_back(Name(hChild) + " is too small for its text");
        for (HWND hOther = ::GetWindow(hChild, GW_HWNDNEXT); hOther;
             hOther = ::GetWindow(hOther, GW_HWNDNEXT))
            if (IsShown(hOther) && Overlap(hChild, hOther))
                sFaults.push_back(Name(hChild) + " and " + Name(hOther) + " cover each other");
        Look(hChild, sFaults);
    }
}

void Ask(HWND hParent, Faults& sFaults)
{
    std::wstring sLabel;
    for (HWND hChild = ::GetWindow(hParent, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
    {
        const bool bTabStop = (::GetWindowLongPtrW(hChild, GWL_STYLE) & WS_TABSTOP) != 0;
        const std::wstring sClass = ClassOf(hChild);
        // What an edit field or a list holds is not its name.
        const bool bNamesItself = sClass != L"Edit" && sClass != L"ListBox" && !WindowText(hChild).empty();
        if (bTabStop && !bNamesItself && sLabel.empty())
            sFaults.push_back(Name(hChild) + " has no name");
        if (sClass == L"Static")
            sLabel = WindowText(hChild);
        else if (::GetDlgCtrlID(hChild) != 0)
            sLabel.clear();
        Ask(hChild, sFaults);
    }
}

struct HandleCounts
{
    DWORD lGdi = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
    DWORD lUser = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
    DWORD lHandles = [] {
        DWORD lCount = 0;
        ::GetProcessHandleCount(::GetCurrentProcess(), &lCount);
        return lCount;
    }();
};

} // namespace

RECT PlaceInParent(HWND hWindow)
{
    RECT place = PlaceOf(hWindow);
    ::MapWindowPoints(nullptr, ::GetParent(hWindow), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void ExpectNoHandlesLeft(const std::function<void()>& open, TIMERPROC useAndClose)
{
    const auto openAndUse = [&](int lTimes) {
        for (int i = 0; i < lTimes; ++i)
        {
            const UINT_PTR lTimer = ::SetTimer(nullptr, 0, 1, useAndClose);
            open();
            ::KillTimer(nullptr, lTimer);
        }
    };
    openAndUse(5); // what is made once stays
    const HandleCounts before;
    openAndUse(std::getenv("RAVLO_LONG") ? 50 : 15);
    const HandleCounts after;
    EXPECT_LE(after.lGdi, before.lGdi + 2);
    EXPECT_LE(after.lUser, before.lUser + 2);
    EXPECT_LE(after.lHandles, before.lHandles + 10);
}

Faults Untidiness(HWND hWindow)
{
    Faults sFaults;
    Look(hWindow, sFaults);
    return sFaults;
}

Faults Nameless(HWND hWindow)
{
    Faults sFaults;
    Ask(hWindow, sFaults);
    return sFaults;
}

} // namespace ravlo::test
