// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/health/HealthTexts.h"
#include "ui/health/windows/frmHealthWindow.h"

#include <algorithm>
#include <commctrl.h>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lMargin = 8;
constexpr int lGap = 6;
constexpr int lFieldHeight = 24;
constexpr int lButtonHeight = 26;
constexpr int lButtonMargins = 26;
constexpr int lLeastButton = 86;
constexpr int lStartWidth = 124;
constexpr int lDaysWidth = 48;
constexpr int lLeastClock = 120;
constexpr int lProgressWidth = 220;
constexpr int lSmallLight = 16;
constexpr int lDropHeight = 200;
// Pixels at every resolution: an edit field puts its text at its upper edge, and the labels next to it are
// centred.
constexpr int lFieldPadding = 3;

constexpr std::size_t blockedByColumn = 5; // of the seldom played
constexpr int lPictureShare = 54;          // of a page's width, in hundredths

} // namespace

int frmHealthWindow::px(int lAt96) const { return Scaled(lAt96, m_lDpi); }

void frmHealthWindow::SetLook(int lDpi)
{
    m_lDpi = lDpi;
    // Swapped in at the end: the controls use the old font and symbols until then.
    UniqueFont hFont = MessageFont(lDpi);
    UniqueImageList hLights = LightImages(px(lSmallLight));
    for (const HWND hControl :
         {m_hLabels[0], m_hLabels[1], m_hLabels[2], m_hClock, m_hBrowse, m_hStart, m_hDays, m_hSimulate,
          m_hReport, m_hSummary, m_hTabs, m_hReasons, m_hCarryOut, m_hGoTo, m_hStatus, m_hCancel})
        SetFont(hControl, hFont.get());
    for (const std::unique_ptr<TableWindow>& cList : m_cLists)
        cList->SetLook(hFont.get(), lDpi);
    for (const std::unique_ptr<PictureWindow>& cPicture : m_cPictures)
        cPicture->SetLook(hFont.get(), lDpi);
    List(HealthTable::Levels).SetSymbols(hLights.get(), [this](std::size_t item) {
        const LevelHealth& level = m_cForm->Station()->levels[item];
        return StateOf(level) == LevelState::Asked ? static_cast<int>(level.eLight) : eLightNone;
    });
    UniqueHandle<HICON, &::DestroyIcon> hIcon(::ImageList_GetIcon(hLights.get(), eLightGreen, ILD_NORMAL));
    ::SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(hIcon.get()));
    m_hIcon.swap(hIcon);
    m_hFont.swap(hFont);
    m_hLights.swap(hLights);
    LayOut();
    LayOutPane();
    // Controls that have moved leave traces of themselves.
    ::RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE frmHealthWindow::ButtonSize(HWND hButton) const
{
    const FontContext cContext(Handle(), m_hFont.get());
    const auto lText = static_cast<int>(TextSize(cContext.Get(), WindowText(hButton)).cx);
    return {std::max(px(lLeastButton), lText + px(lButtonMargins)), px(lButtonHeight)};
}

void frmHealthWindow::LayOut()
{
    if (!m_bPlaced || !m_hFont || ::IsIconic(Handle()))
        return;
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const int lEdge = px(lMargin);
    const int lRight = static_cast<int>(client.right) - lEdge;
    int lTop = LayOutPlan(lRight);
    const int lSummary = SummaryHeight(lRight - lEdge);
    ::MoveWindow(m_hSummary, lEdge, lTop, lRight - lEdge, lSummary, TRUE);
    lTop += lSummary + px(lGap);
    const int lStatusTop = static_cast<int>(client.bottom) - px(lButtonHeight) - px(lGap);
    LayOutStatus(client, lStatusTop);
    m_cSplit->Place({lEdge, lTop, lRight, std::max(lTop, lStatusTop - px(lGap))}, m_lDpi);
}

// The plan in one row; the clock takes what room the others leave. Returns where the next row begins.
int frmHealthWindow::LayOutPlan(int lRight)
{
    constexpr int lControls = 9;
    Mover mover(lControls);
    const FontContext cContext(Handle(), m_hFont.get());
    const int lTop = px(lMargin);
    const int lHeight = px(lButtonHeight);
    int lEnd = lRight;
    const auto fromRight = [&](HWND hControl, int lWidth, int lControlHeight, int lSpace) {
        lEnd -= lWidth;
        mover.Move(hControl, lEnd, lTop + (lHeight - lControlHeight) / 2, lWidth, lControlHeight);
        lEnd -= px(lSpace);
    };
    const auto label = [&](HWND hLabel, int lSpace) {
        const auto lWidth = static_cast<int>(TextSize(cContext.Get(), WindowText(hLabel)).cx) + px(2);
        fromRight(hLabel, lWidth, lHeight, lSpace);
    };
    const auto button = [&](HWND hButton, int lSpace) {
        fromRight(hButton, static_cast<int>(ButtonSize(hButton).cx), lHeight, lSpace);
    };
    button(m_hReport, lGap);
    button(m_hSimulate, 2 * lMargin);
    const int lField = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy) +
                       2 * ::GetSystemMetrics(SM_CYEDGE) + lFieldPadding;
    fromRight(m_hDays, px(lDaysWidth), lField, lGap);
    label(m_hLabels[2], 2 * lMargin);
    fromRight(m_hStart, px(lStartWidth), lField, lGap);
    label(m_hLabels[1], 2 * lMargin);
    button(m_hBrowse, lGap);
    const auto lLabel = static_cast<int>(TextSize(cContext.Get(), WindowText(m_hLabels[0])).cx) + px(lGap);
    const int lLeft = px(lMargin) + lLabel;
    mover.Move(m_hLabels[0], px(lMargin), lTop, lLabel, lHeight);
    // A combo box's height is that of its list; the field finds its own.
    mover.Move(m_hClock, lLeft, lTop + (lHeight - lField) / 2, std::max(px(lLeastClock), lEnd - lLeft),
               px(lDropHeight));
    return lTop + lHeight + px(lGap);
}

int frmHealthWindow::SummaryHeight(int lWidth) const
{
    const FontContext cContext(Handle(), m_hFont.get());
    std::wstring sText = WindowText(m_hSummary);
    if (sText.empty())
        sText = L"Ag";
    return static_cast<int>(TextSize(cContext.Get(), sText, lWidth, DT_NOPREFIX | DT_EDITCONTROL).cy);
}

void frmHealthWindow::LayOutStatus(const RECT& client, int lTop)
{
    const bool bRunning = (::GetWindowLongPtrW(m_hCancel, GWL_STYLE) & WS_VISIBLE) != 0;
    const int lEdge = px(lMargin);
    const auto lCancel = static_cast<int>(ButtonSize(m_hCancel).cx);
    const int lRight = static_cast<int>(client.right) - lEdge;
    const int lHeight = px(lButtonHeight);
    const int lBar = px(lFieldHeight) * 2 / 3;
    const int lTextRight = bRunning ? lRight - lCancel - px(lProgressWidth) - 2 * px(lGap) : lRight;
    Mover mover(3);
    mover.Move(m_hStatus, lEdge, lTop, lTextRight - lEdge, lHeight);
    mover.Move(m_hProgress, lRight - lCancel - px(lGap) - px(lProgressWidth), lTop + (lHeight - lBar) / 2,
               px(lProgressWidth), lBar);
    mover.Move(m_hCancel, lRight - lCancel, lTop, lCancel, lHeight);
}

void frmHealthWindow::LayOutPane()
{
    if (!m_hFont || !m_hCancel)
        return;
    MoveInPane();
    // Sentences are cut off otherwise.
    List(HealthTable::Advice).FillRoom(0);
    List(HealthTable::Seldom).FillRoom(blockedByColumn);
}

void frmHealthWindow::MoveInPane()
{
    RECT client{};
    ::GetClientRect(m_cPane->Handle(), &client);
    const auto lWidth = static_cast<int>(client.right);
    const auto lBottom = static_cast<int>(client.bottom);
    RECT strip{0, 0, client.right, client.bottom};
    ::SendMessageW(m_hTabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&strip));
    const int lTop = static_cast<int>(strip.top) + px(2);
    const int lPicture = lWidth * lPictureShare / 100;
    const auto lCarryOut = static_cast<int>(ButtonSize(m_hCarryOut).cx);
    const auto lGoTo = static_cast<int>(ButtonSize(m_hGoTo).cx);
    const int lButtonTop = lBottom - px(lButtonHeight);
    const int lListBottom = lButtonTop - px(lGap);
    const FontContext cContext(Handle(), m_hFont.get());
    const auto lReasons = static_cast<int>(
        TextSize(cContext.Get(), WindowText(m_hReasons) + L" ", lWidth - px(4), DT_NOPREFIX | DT_EDITCONTROL)
            .cy);
    const int lAdviceTop = lTop + lReasons + px(2 * lGap);
    constexpr int lControls = 12;
    Mover mover(lControls);
    mover.Move(m_hTabs, 0, 0, lWidth, lTop);
    mover.Move(m_hReasons, px(2), lTop + px(lGap), lWidth - px(4), lReasons);
    mover.Move(List(HealthTable::Advice).Handle(), 0, lAdviceTop, lWidth, lListBottom - lAdviceTop);
    mover.Move(m_hCarryOut, lWidth - lCarryOut, lButtonTop, lCarryOut, px(lButtonHeight));
    mover.Move(List(HealthTable::Seldom).Handle(), 0, lTop, lWidth, lListBottom - lTop);
    mover.Move(m_hGoTo, lWidth - lGoTo, lButtonTop, lGoTo, px(lButtonHeight));
    for (std::size_t picture = 0; picture < pictures; ++picture)
    {
        mover.Move(m_cPictures[picture]->Handle(), 0, lTop, lPicture, lBottom - lTop);
        const int lLeft = lPicture + px(lGap);
        mover.Move(m_cLists[healthTables - pictures + picture]->Handle(), lLeft, lTop, lWidth - lLeft,
                   lBottom - lTop);
    }
}

} // namespace ravlo
