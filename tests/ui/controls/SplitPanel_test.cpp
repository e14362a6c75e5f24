// SPDX-License-Identifier: MIT
#include "ui/controls/SplitPanelPresenter.h"

#include "base/RuntimeError.h"
#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace ravlo::test
{

namespace
{

constexpr const wchar_t* sApplication = L"uSplitPlayerLibrary";

// The panel on a fake screen, and how often it was laid out.
class ScreenPanel final : public SplitPanelView
{
public:
    void ShowPanes(bool bControl1, bool bControl2) override
    {
        bShown1 = bControl1;
        bShown2 = bControl2;
    }
    void PlaceAll(const SplitPlaces& placesIn) override
    {
        places = placesIn;
        bar = placesIn.bar;
        ++lLayouts;
    }
    void PlaceBar(const TwipsRect& barIn) override { bar = barIn; }
    void PaintBar(std::uint32_t lColor) override { lBarColor = lColor; }
    void ShowBar(bool bShow) override { bBarShown = bShow; }
    void EnableAll(bool bEnable) override { bEnabled = bEnable; }
    void Hourglass(bool bOn) override { bHourglass = bOn; }

    SplitPlaces places{};
    TwipsRect bar;
    int lLayouts = 0;
    std::uint32_t lBarColor = 0;
    bool bShown1 = true;
    bool bShown2 = true;
    bool bBarShown = true;
    bool bEnabled = true;
    bool bHourglass = false;
};

struct Panel : ::testing::Test
{
    Panel()
    {
        cPanel.Change = [this](std::int32_t lPosition) { colChanges.push_back(lPosition); };
    }
    void Remembers(const wchar_t* sPosition)
    {
        cPanel.SetRegistryID(L"Library");
        cSettings.Set(sApplication, L"Settings", L"Pos", sPosition);
    }
    std::wstring Remembered() const { return cSettings.Get(sApplication, L"Settings", L"Pos", L"none"); }
    void DragTo(std::int32_t lPointer)
    {
        cPanel.ButtonDown();
        cPanel.MouseMove(lPointer);
        cPanel.ButtonUp();
    }

    void ExpectBar(std::int32_t lPosition, std::int32_t lSnapped)
    {
        EXPECT_EQ(cPanel.Position(), lPosition);
        EXPECT_EQ(cPanel.Snapped(), lSnapped);
        EXPECT_EQ(cScreen.bShown1, lSnapped != 1);
        EXPECT_EQ(cScreen.bShown2, lSnapped != 2);
    }

    ScreenPanel cScreen;
    MemoryUserSettings cSettings;
    SplitPanelPresenter cPanel{cScreen, cSettings, L"Player"};
    std::vector<std::int32_t> colChanges;
};

constexpr std::uint32_t lFace = 0x8000000F;    // the system's colours of buttons
constexpr std::uint32_t lDragged = 0x80000012; // and of their text

// 10000 wide and with a place to remember its position in.
struct SizedPanel : Panel
{
    SizedPanel()
    {
        cPanel.SetRegistryID(L"Library");
        cPanel.Resize(10000, 4000);
    }
};

} // namespace

TEST_F(Panel, ShrinkingAndGrowingBringsTheBarBack)
{
    cPanel.Resize(12000, 5000);
    DragTo(9000);
    for (const std::int32_t lWidth : {8000, 3000, 5000})
    {
        cPanel.Resize(lWidth, 5000);
        EXPECT_LT(cPanel.Position(), lWidth);
    }
    cPanel.Resize(12000, 5000);
    EXPECT_EQ(cPanel.Position(), 9000);
    EXPECT_EQ(cScreen.places.control1.lWidth, 9000 - 37);
}

TEST_F(Panel, ARestartInASmallerWindowKeepsThePlaceForALargerOne)
{
    Remembers(L"20000"); // in a maximised window
    cPanel.Resize(12000, 5000);
    EXPECT_EQ(cPanel.Position(), 10000);
    cPanel.GoOutOfView();
    EXPECT_EQ(Remembered(), L"20000");
    cPanel.Resize(30000, 5000);
    EXPECT_EQ(cPanel.Position(), 20000);
}

TEST_F(Panel, ABarDroppedTooFarStaysWhereItSettled)
{
    cPanel.Resize(12000, 5000);
    DragTo(11500);
    EXPECT_EQ(cPanel.Position(), 10000);
    cPanel.Resize(20000, 5000);
    EXPECT_EQ(cPanel.Position(), 10000);
}

TEST_F(Panel, StartsWithTheDefaults)
{
    EXPECT_EQ(cPanel.MinPanelSize(), 2000);
    EXPECT_FALSE(cPanel.Horizontal());
    EXPECT_FALSE(cPanel.SnapToEdge());
    EXPECT_EQ(cPanel.SplitterWidth(), 75);
    EXPECT_EQ(cPanel.BackColor(), lFace);
    EXPECT_EQ(cPanel.DragColor(), lDragged);
    EXPECT_EQ(cPanel.Snapped(), 0);
    EXPECT_EQ(cPanel.RegistryID(), L"");
    EXPECT_TRUE(cPanel.SplitVisible());
    EXPECT_TRUE(cPanel.Enabled());
}

TEST_F(Panel, LaysOutWhenItIsSizedAndSaysWhereTheBarIs)
{
    cPanel.SetPosition(5000);
    EXPECT_TRUE(colChanges.empty());
    cPanel.Resize(10000, 4000);
    EXPECT_EQ(colChanges, (std::vector<std::int32_t>{5000}));
    EXPECT_EQ(cScreen.places.control1, (TwipsRect{0, 0, 4963, 4000}));
    cPanel.Resize(6000, 4000);
    EXPECT_EQ(colChanges, (std::vector<std::int32_t>{5000, 4000}));
    EXPECT_EQ(cPanel.Position(), 4000);
}

TEST_F(SizedPanel, LayoutPropertiesLayOutAgain)
{
    const std::function<void()> setters[] = {
        [&] { cPanel.SetMinPanelSize(1000); }, [&] { cPanel.SetHorizontal(true); },
        [&] { cPanel.SetSnapToEdge(true); },   [&] { cPanel.SetSplitterWidth(90); },
        [&] { cPanel.SetPosition(1500); },     [&] { cPanel.SetSnapped(1); },
    };
    for (const auto& set : setters)
    {
        const int lLayouts = cScreen.lLayouts;
        set();
        EXPECT_EQ(cScreen.lLayouts, lLayouts + 1);
    }
    EXPECT_EQ(cScreen.places.bar.lHeight, 90);
    EXPECT_EQ(cScreen.places.bar.lWidth, 10000);
    EXPECT_FALSE(cScreen.bShown1);
    EXPECT_TRUE(cScreen.bShown2);
}

TEST_F(Panel, IntegersOutOfRangeAreAnOverflow)
{
    for (const std::int32_t lValue : {-32769, 32768, 2000000})
    {
        for (const auto set : {&SplitPanelPresenter::SetMinPanelSize, &SplitPanelPresenter::SetSplitterWidth,
                               &SplitPanelPresenter::SetSnapped})
        {
            try
            {
                (cPanel.*set)(lValue);
                ADD_FAILURE() << lValue << " was accepted";
            }
            catch (const RuntimeError& cError)
            {
                EXPECT_EQ(cError.Number(), error::Overflow);
            }
        }
    }
    EXPECT_EQ(cPanel.MinPanelSize(), 2000);
    cPanel.SetMinPanelSize(32767);
    EXPECT_EQ(cPanel.MinPanelSize(), 32767);
}

TEST_F(SizedPanel, AMinimisedPanelKeepsItsPosition)
{
    cPanel.SetPosition(7000);
    colChanges.clear();
    cPanel.Resize(0, 0);
    EXPECT_TRUE(colChanges.empty());
    cPanel.Resize(10000, 4000);
    EXPECT_EQ(cPanel.Position(), 7000);
}

// ---- dragging ----

TEST_F(SizedPanel, TheBarFollowsThePointerWithItsCentreAndIsPaintedAsDragged)
{
    EXPECT_EQ(cPanel.Position(), 3333) << "a third, when nothing is known";
    cPanel.ButtonDown();
    EXPECT_EQ(cScreen.lBarColor, lDragged);
    for (const auto& [lPointer, lLeft] : {std::pair{-500, 0}, {50000, 10000 - 75}, {6000, 6000 - 37}})
    {
        cPanel.MouseMove(lPointer);
        EXPECT_EQ(cScreen.bar, (TwipsRect{lLeft, 0, 75, 4000})) << "always visible";
    }
    EXPECT_EQ(cPanel.Position(), 3333); // not before the drop
    cPanel.ButtonUp();
    EXPECT_EQ(cScreen.lBarColor, lFace);
    EXPECT_EQ(cPanel.Position(), 6000);
    EXPECT_EQ(colChanges.back(), 6000);
}

TEST_F(Panel, TheBarOfPanesAboveEachOtherFollowsVertically)
{
    cPanel.SetHorizontal(true);
    cPanel.Resize(4000, 10000);
    cPanel.ButtonDown();
    cPanel.MouseMove(6000);
    EXPECT_EQ(cScreen.bar, (TwipsRect{0, 6000 - 37, 4000, 75}));
}

TEST_F(SizedPanel, OnlyWithSnappingADropAtAnEdgeCollapsesAPane)
{
    DragTo(10);
    ExpectBar(2000, 0);
    DragTo(9990);
    ExpectBar(8000, 0);
    cPanel.SetSnapToEdge(true);
    DragTo(100);
    ExpectBar(0, 1);
    DragTo(5000);
    ExpectBar(5000, 0);
    DragTo(9900);
    ExpectBar(10000 - 37, 2);
}

TEST_F(SizedPanel, WithoutADropTheBarStaysAndNothingIsRemembered)
{
    cPanel.ButtonDown();
    cPanel.MouseMove(6000);
    cPanel.CancelDrag();
    EXPECT_EQ(cScreen.bar, cScreen.places.bar);
    EXPECT_EQ(cScreen.lBarColor, lFace);
    cPanel.ButtonUp();
    EXPECT_EQ(cPanel.Position(), 3333);
    EXPECT_EQ(Remembered(), L"none");
    cPanel.MouseMove(6000); // no drag
    EXPECT_EQ(cScreen.bar, cScreen.places.bar);
    EXPECT_FALSE(cPanel.Dragging());
    cPanel.SetPosition(4567);
    cPanel.ButtonDown(); // a click
    cPanel.ButtonUp();
    EXPECT_EQ(cPanel.Position(), 4567);
}

// ---- the keyboard ----

TEST_F(SizedPanel, KeysMoveTheBarWithinItsLimitsAndRememberIt)
{
    cPanel.MoveBy(150);
    EXPECT_EQ(cPanel.Position(), 3483);
    EXPECT_EQ(Remembered(), L"3483");
    cPanel.MoveBy(-9000);
    EXPECT_EQ(cPanel.Position(), 2000);
    cPanel.MoveBy(2147483647);
    EXPECT_EQ(cPanel.Position(), 8000);
}

// Steps are smaller than the distance within which a pane snaps shut.
TEST_F(SizedPanel, KeysMoveToAnEdgeAndBackFromACollapsedPane)
{
    cPanel.MoveToEdge(true);
    ExpectBar(8000, 0);
    cPanel.SetSnapToEdge(true);
    cPanel.MoveToEdge(false);
    cPanel.MoveBy(-150); // towards the edge
    EXPECT_EQ(cPanel.Snapped(), 1);
    cPanel.MoveBy(15);
    ExpectBar(2000, 0);
    EXPECT_EQ(Remembered(), L"2000");
    cPanel.MoveToEdge(true);
    cPanel.MoveBy(150);
    EXPECT_EQ(cPanel.Snapped(), 2);
    cPanel.MoveBy(-15);
    ExpectBar(8000, 0);
}

// ---- the remembered position ----

TEST_F(Panel, TheRememberedPositionIsReadAtTheFirstRealSize)
{
    Remembers(L"4321");
    cPanel.Resize(0, 4000);
    EXPECT_EQ(cPanel.Position(), 0);
    cPanel.Resize(10000, 4000);
    EXPECT_EQ(cPanel.Position(), 4321);
    cSettings.Set(sApplication, L"Settings", L"Pos", L"5555");
    cPanel.Resize(10001, 4000);
    EXPECT_EQ(cPanel.Position(), 4321);
}

TEST_F(Panel, AStoredZeroAndAnythingThatIsNoNumberMeansNothingIsStored)
{
    for (const wchar_t* sStored : {L"0", L"", L"wide", L"99999999999"})
    {
        ScreenPanel cOtherScreen;
        SplitPanelPresenter cOther(cOtherScreen, cSettings, L"Player");
        cOther.SetRegistryID(L"Library");
        cSettings.Set(sApplication, L"Settings", L"Pos", sStored);
        cOther.SetPosition(2500);
        cOther.Resize(10000, 4000);
        EXPECT_EQ(cOther.Position(), 2500)
            << "stored: " << cSettings.Get(sApplication, L"Settings", L"Pos", L"").size();
    }
}

TEST_F(SizedPanel, PositionIsRememberedAfterEachDragAndWhenHidden)
{
    DragTo(6000);
    EXPECT_EQ(Remembered(), L"6000");
    cPanel.SetPosition(4000);
    EXPECT_EQ(Remembered(), L"6000");
    cPanel.GoOutOfView();
    EXPECT_EQ(Remembered(), L"4000");
}

// What is remembered is where the bar was dropped, not where it settled.
TEST_F(SizedPanel, ADroppedPositionIsRememberedBeforeItIsLaidOut)
{
    std::wstring sAtLayout;
    cPanel.Change = [&](std::int32_t) { sAtLayout = Remembered(); };
    DragTo(100);
    EXPECT_EQ(sAtLayout, L"100");
    EXPECT_EQ(cPanel.Position(), 2000);
    EXPECT_EQ(Remembered(), L"100");
}

TEST_F(Panel, APanelThatWasNeverSeenRemembersNothing)
{
    Remembers(L"4321");
    cPanel.GoOutOfView();
    EXPECT_EQ(Remembered(), L"4321");
}

TEST_F(Panel, WithoutARegistryIDNothingIsReadOrRemembered)
{
    cSettings.Set(L"uSplitPlayer", L"Settings", L"Pos", L"4321");
    cPanel.Resize(9000, 4000);
    EXPECT_EQ(cPanel.Position(), 3000);
    DragTo(6000);
    cPanel.GoOutOfView();
    EXPECT_EQ(cSettings.Get(L"uSplitPlayer", L"Settings", L"Pos", L""), L"4321");
}

// ---- appearance ----

TEST_F(SizedPanel, ADisabledPanelShowsTheHourglassAndCannotBeMoved)
{
    cPanel.ButtonDown();
    cPanel.SetEnabled(false);
    EXPECT_FALSE(cScreen.bEnabled);
    EXPECT_TRUE(cScreen.bHourglass);
    EXPECT_FALSE(cPanel.Dragging());
    DragTo(6000);
    cPanel.MoveBy(150);
    cPanel.MoveToEdge(true);
    EXPECT_EQ(cPanel.Position(), 3333);
    cPanel.SetEnabled(true);
    EXPECT_TRUE(cScreen.bEnabled);
    EXPECT_FALSE(cScreen.bHourglass);
}

TEST_F(Panel, TheBarCanBeHiddenAndColoured)
{
    cPanel.SetSplitVisible(false);
    EXPECT_FALSE(cScreen.bBarShown);
    cPanel.SetBackColor(0x00112233);
    EXPECT_EQ(cScreen.lBarColor, 0x00112233u);
    cPanel.Resize(10000, 4000);
    cPanel.ButtonDown();
    cPanel.SetDragColor(0x00445566);
    EXPECT_EQ(cScreen.lBarColor, 0x00445566u);
    cPanel.SetBackColor(0x00778899);
    EXPECT_EQ(cScreen.lBarColor, 0x00445566u);
    cPanel.ButtonUp();
    EXPECT_EQ(cScreen.lBarColor, 0x00778899u);
}

} // namespace ravlo::test
