// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserSettings.h"
#include "ui/controls/SplitLayout.h"

#include <cstdint>
#include <functional>
#include <string>

namespace ravlo
{

// What the split panel does to the screen. A missing pane is skipped.
class SplitPanelView
{
public:
    virtual ~SplitPanelView() = default;
    virtual void ShowPanes(bool bControl1, bool bControl2) = 0;
    virtual void PlaceAll(const SplitPlaces& places) = 0;
    virtual void PlaceBar(const TwipsRect& bar) = 0; // while it is dragged
    virtual void PaintBar(std::uint32_t lColor) = 0; // an OLE colour: 0x80000000 + index, or 0x00BBGGRR
    virtual void ShowBar(bool bShow) = 0;
    virtual void EnableAll(bool bEnable) = 0; // both panes and the bar
    virtual void Hourglass(bool bOn) = 0;     // the panel's mouse pointer; false is the default one
};

// Divides an area between two panes, above each other or side by side, by a bar that can be dragged, moved by
// keys and dropped near an edge to collapse a pane. Remembers its position in the user's settings.
// Lengths and positions are in twips.
class SplitPanelPresenter
{
public:
    // sHost: the host application's name, part of the settings' name. Owns neither view nor settings.
    SplitPanelPresenter(SplitPanelView& cView, UserSettings& cUserSettings, std::wstring sHost);

    // 16-bit properties: error 6 when a value is out of range. Layout properties lay out again.
    std::int16_t MinPanelSize() const noexcept { return m_settings.iMinPanelSize; }
    void SetMinPanelSize(std::int32_t lSize);
    bool Horizontal() const noexcept { return m_settings.bHorizontal; }
    void SetHorizontal(bool bHorizontal);
    bool SnapToEdge() const noexcept { return m_settings.bSnapToEdge; }
    void SetSnapToEdge(bool bSnap);
    std::int16_t SplitterWidth() const noexcept { return m_settings.iSplitterWidth; }
    void SetSplitterWidth(std::int32_t lWidth);
    // The bar's position. A position that was set, dropped or recalled is limited to the panel's size, and
    // returns when the panel has the room again.
    std::int32_t Position() const noexcept { return m_state.lPosition; }
    void SetPosition(std::int32_t lPosition);
    std::int16_t Snapped() const noexcept { return m_state.iSnapped; }
    void SetSnapped(std::int32_t lSnapped);
    std::uint32_t BackColor() const noexcept { return m_lBackColor; }
    void SetBackColor(std::uint32_t lColor);
    std::uint32_t DragColor() const noexcept { return m_lDragColor; }
    void SetDragColor(std::uint32_t lColor);
    const std::wstring& RegistryID() const noexcept { return m_sRegistryID; }
    void SetRegistryID(std::wstring sRegistryID) { m_sRegistryID = std::move(sRegistryID); }
    bool SplitVisible() const noexcept { return m_bSplitVisible; }
    void SetSplitVisible(bool bVisible);
    bool Enabled() const noexcept { return m_bEnabled; }
    void SetEnabled(bool bEnabled);

    // Raised at the end of every layout with the settled position.
    std::function<void(std::int32_t lPosition)> Change;

    // The view reports these. Nothing is laid out before the first size with an extent; at that size the
    // remembered position is read; without one the first pane gets a third.
    void Resize(std::int32_t lWidth, std::int32_t lHeight);
    void GoOutOfView();

    // Dragging: the pointer's distance from the panel's top or left edge.
    void ButtonDown();
    void MouseMove(std::int32_t lPointer);
    void ButtonUp();
    void CancelDrag();
    bool Dragging() const noexcept { return m_bDragging; }

    // The keyboard: moves the bar by a distance, or to an edge as if it had been dropped there. The first
    // move away from its edge shows a collapsed pane again, at its smallest size.
    void MoveBy(std::int32_t lDistance);
    void MoveToEdge(bool bFar);

private:
    void LayOut();
    std::int32_t Extent() const { return SplitExtent(m_settings, m_lWidth, m_lHeight); }
    void Drop(std::int32_t lPosition);
    void Settle(const SplitState& state);
    bool Reopens(std::int32_t lDistance);
    void EndDrag();
    std::wstring Application() const { return L"uSplit" + m_sHost + m_sRegistryID; }
    void Remember() const;
    void Recall();

    SplitPanelView& m_cView;
    UserSettings& m_cUserSettings;
    std::wstring m_sHost;
    std::wstring m_sRegistryID;
    SplitSettings m_settings;
    SplitState m_state;
    // The wanted position: a panel that shrinks moves the bar, one that grows again moves it back to here.
    std::int32_t m_lWanted = 0;
    std::uint32_t m_lBackColor = 0x8000000F; // the system's button face
    std::uint32_t m_lDragColor = 0x80000012; // the system's button text
    std::int32_t m_lWidth = 0;
    std::int32_t m_lHeight = 0;
    std::int32_t m_lDragCentre = 0;
    bool m_bPositioned = false; // a position was set or recalled
    bool m_bSized = false;
    bool m_bSplitVisible = true;
    bool m_bEnabled = true;
    bool m_bDragging = false;
};

} // namespace ravlo
