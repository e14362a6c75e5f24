// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/SplitPanelPresenter.h"
#include "ui/controls/windows/Window.h"

#include <functional>
#include <string>
#include <windows.h>

namespace ravlo
{

// The split panel in a container window: it moves and shows or hides two other child windows of that
// container and is itself the bar between them, pbSplit. The bar can be dragged (Esc cancels it), and
// moved by keys when it has the focus: arrows, with Ctrl in small steps, Home and End to the edges.
class SplitPanelWindow final : public Window, private SplitPanelView
{
public:
    // OnTrouble is called inside the catch block when something fails in a message of the bar.
    SplitPanelWindow(HWND hContainer, int lId, UserSettings& cUserSettings, std::function<void()> OnTrouble);
    ~SplitPanelWindow() override;

    SplitPanelPresenter& Panel() noexcept { return m_cPanel; }

    // Children of the container; either may be null. Not owned.
    void SetControls(HWND hControl1, HWND hControl2);
    // Further children of the container, each of which lies along its control's upper edge and is shown and
    // hidden with it. Not owned. With a height of 0 it is hidden; heights count from the next Place on.
    void SetHeaders(HWND hHeader1, HWND hHeader2);
    void SetHeaderHeights(int lHeight1, int lHeight2);
    // The panel's area in the container, in pixels of that resolution. Call when the container is sized,
    // but not while it is minimised.
    void Place(const RECT& area, int lDpi);
    // For the container's WM_SETCURSOR: true when the panel is disabled and has set the hourglass over its
    // area.
    bool SetsCursor() const;

private:
    void ShowPanes(bool bControl1, bool bControl2) override;
    void PlaceAll(const SplitPlaces& places) override;
    void PlaceBar(const TwipsRect& bar) override;
    void PaintBar(std::uint32_t lColor) override;
    void ShowBar(bool bShow) override;
    void EnableAll(bool bEnable) override;
    void Hourglass(bool bOn) override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnPaint();
    void OnButtonDown();
    void OnCaptureLost();
    bool OnKey(WPARAM lKey);
    RECT InPixels(const TwipsRect& rect) const;
    std::int32_t PointerInTwips() const;

    struct Header
    {
        HWND hWindow = nullptr;
        int lHeight = 0; // in pixels
    };
    void ShowHeader(const Header& header, bool bPane) const;

    std::function<void()> m_OnTrouble;
    HWND m_hContainer;
    HWND m_hControl1 = nullptr;
    HWND m_hControl2 = nullptr;
    Header m_header1;
    Header m_header2;
    HWND m_hBefore = nullptr; // in the tab order, while a drag lifts the bar above all
    HWND m_hFocusBefore = nullptr;
    RECT m_area{};
    int m_lDpi = 96;
    std::uint32_t m_lColor;
    bool m_bHourglass = false;
    SplitPanelPresenter m_cPanel;
};

} // namespace ravlo
