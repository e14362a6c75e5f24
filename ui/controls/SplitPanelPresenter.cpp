// SPDX-License-Identifier: MIT
#include "ui/controls/SplitPanelPresenter.h"

#include "base/RuntimeError.h"
#include "base/Text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sPositionKey = L"Pos";

std::int16_t Integer(std::int32_t lValue)
{
    if (lValue < std::numeric_limits<std::int16_t>::min() ||
        lValue > std::numeric_limits<std::int16_t>::max())
        throw RuntimeError(error::Overflow);
    return static_cast<std::int16_t>(lValue);
}

} // namespace

SplitPanelPresenter::SplitPanelPresenter(SplitPanelView& cView, UserSettings& cUserSettings,
                                         std::wstring sHost)
    : m_cView(cView), m_cUserSettings(cUserSettings), m_sHost(std::move(sHost))
{
}

void SplitPanelPresenter::SetMinPanelSize(std::int32_t lSize)
{
    m_settings.iMinPanelSize = Integer(lSize);
    LayOut();
}

void SplitPanelPresenter::SetHorizontal(bool bHorizontal)
{
    m_settings.bHorizontal = bHorizontal;
    LayOut();
}

void SplitPanelPresenter::SetSnapToEdge(bool bSnap)
{
    m_settings.bSnapToEdge = bSnap;
    LayOut();
}

void SplitPanelPresenter::SetSplitterWidth(std::int32_t lWidth)
{
    m_settings.iSplitterWidth = Integer(lWidth);
    LayOut();
}

void SplitPanelPresenter::SetPosition(std::int32_t lPosition)
{
    m_state.lPosition = m_lWanted = lPosition;
    m_bPositioned = true;
    LayOut();
}

void SplitPanelPresenter::SetSnapped(std::int32_t lSnapped)
{
    m_state.iSnapped = Integer(lSnapped);
    LayOut();
}

void SplitPanelPresenter::SetBackColor(std::uint32_t lColor)
{
    m_lBackColor = lColor;
    if (!m_bDragging)
        m_cView.PaintBar(lColor);
}

void SplitPanelPresenter::SetDragColor(std::uint32_t lColor)
{
    m_lDragColor = lColor;
    if (m_bDragging)
        m_cView.PaintBar(lColor);
}

void SplitPanelPresenter::SetSplitVisible(bool bVisible)
{
    m_bSplitVisible = bVisible;
    m_cView.ShowBar(bVisible);
}

void SplitPanelPresenter::SetEnabled(bool bEnabled)
{
    m_bEnabled = bEnabled;
    if (!bEnabled)
        CancelDrag();
    m_cView.EnableAll(bEnabled);
    m_cView.Hourglass(!bEnabled);
}

void SplitPanelPresenter::Resize(std::int32_t lWidth, std::int32_t lHeight)
{
    m_lWidth = lWidth;
    m_lHeight = lHeight;
    if (!m_bSized && Extent() > 0)
    {
        m_bSized = true;
        Recall();
    }
    LayOut();
}

void SplitPanelPresenter::GoOutOfView()
{
    CancelDrag();
    Remember();
}

void SplitPanelPresenter::LayOut()
{
    if (!m_bSized)
        return;
    const std::optional<SplitPlaces> places =
        LayOutSplit(m_settings, {m_lWanted, m_state.iSnapped}, m_lWidth, m_lHeight);
    if (!places)
        return;
    m_state.lPosition = places->lPosition;
    if (m_state.iSnapped == eControl1Collapsed || m_state.iSnapped == eControl2Collapsed)
        m_lWanted = m_state.lPosition; // at that edge
    m_cView.ShowPanes(places->bShowControl1, places->bShowControl2);
    m_cView.PlaceAll(*places);
    if (Change)
        Change(m_state.lPosition);
}

void SplitPanelPresenter::ButtonDown()
{
    if (!m_bEnabled || !m_bSized)
        return;
    m_bDragging = true;
    m_lDragCentre = m_state.lPosition;
    m_cView.PaintBar(m_lDragColor);
}

void SplitPanelPresenter::MouseMove(std::int32_t lPointer)
{
    if (!m_bDragging)
        return;
    m_lDragCentre = lPointer;
    // The bar stays visible when the pointer leaves the panel; the pointer's position still counts for the
    // drop.
    const std::int32_t lLast = std::max(0, Extent() - m_settings.iSplitterWidth);
    const std::int32_t lStart = std::clamp(BarStart(m_settings, lPointer), 0, lLast);
    m_cView.PlaceBar(m_settings.bHorizontal ? TwipsRect{0, lStart, m_lWidth, m_settings.iSplitterWidth}
                                            : TwipsRect{lStart, 0, m_settings.iSplitterWidth, m_lHeight});
}

void SplitPanelPresenter::ButtonUp()
{
    if (!m_bDragging)
        return;
    EndDrag();
    Drop(m_lDragCentre);
}

void SplitPanelPresenter::CancelDrag()
{
    if (!m_bDragging)
        return;
    EndDrag();
    LayOut();
}

void SplitPanelPresenter::EndDrag()
{
    m_bDragging = false;
    m_cView.PaintBar(m_lBackColor);
}

void SplitPanelPresenter::MoveBy(std::int32_t lDistance)
{
    if (!m_bEnabled || !m_bSized || m_bDragging)
        return;
    if (Reopens(lDistance))
        return;
    const std::int64_t position = std::int64_t{m_state.lPosition} + lDistance;
    Drop(static_cast<std::int32_t>(std::clamp<std::int64_t>(position, 0, std::max(0, Extent()))));
}

// Whether this move reopens a collapsed pane. A single step would end within the snapping distance and
// collapse it again.
bool SplitPanelPresenter::Reopens(std::int32_t lDistance)
{
    const bool bNear = m_state.iSnapped == eControl1Collapsed && lDistance > 0;
    const bool bFar = m_state.iSnapped == eControl2Collapsed && lDistance < 0;
    if (!m_settings.bSnapToEdge || (!bNear && !bFar))
        return false;
    Settle({bNear ? m_settings.iMinPanelSize : Extent() - m_settings.iMinPanelSize, eBothShown});
    return true;
}

void SplitPanelPresenter::MoveToEdge(bool bFar)
{
    if (!m_bEnabled || !m_bSized || m_bDragging)
        return;
    Drop(bFar ? Extent() : 0);
}

void SplitPanelPresenter::Drop(std::int32_t lPosition)
{
    Settle(DropSplit(m_settings, m_state, lPosition, Extent()));
}

void SplitPanelPresenter::Settle(const SplitState& state)
{
    m_state = state;
    m_lWanted = state.lPosition;
    m_bPositioned = true;
    Remember();
    LayOut();
    m_lWanted = m_state.lPosition; // where the user sees it
}

void SplitPanelPresenter::Remember() const
{
    if (!m_sRegistryID.empty() && m_bSized)
        m_cUserSettings.Set(Application(), sSection, sPositionKey, DecimalText(m_lWanted));
}

void SplitPanelPresenter::Recall()
{
    if (!m_sRegistryID.empty())
    {
        const std::optional<double> dStored =
            NumericValue(m_cUserSettings.Get(Application(), sSection, sPositionKey, L"0"));
        const std::optional<std::int32_t> lStored = dStored ? ToLong(*dStored) : std::nullopt;
        if (lStored.value_or(0) != 0)
        {
            m_lWanted = *lStored;
            m_bPositioned = true;
        }
    }
    if (!m_bPositioned)
        m_lWanted = Extent() / 3;
}

} // namespace ravlo
