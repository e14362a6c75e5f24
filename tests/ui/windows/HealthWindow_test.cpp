// SPDX-License-Identifier: MIT
#include "ui/library/windows/ControlIds.h"
#include "ui/windows/HealthFixture.h"
#include "ui/windows/Tidy.h"

#include <utility>

namespace ravlo::test
{

namespace
{

enum Tab
{
    eWhatHelps,
    eNeverPlayed,
    ePlays,
    eGaps,
    eHours,
};

using Texts = std::vector<std::wstring>;

// Esc or a click on a control, in the middle of some work: on the windows' own thread, whose next messages
// bring it.
void SendNow(HWND hClicked)
{
    INPUT inputs[2]{};
    if (hClicked)
    {
        const RECT place = PlaceOf(hClicked);
        ::SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        inputs[0].type = inputs[1].type = INPUT_MOUSE;
        inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    }
    else
    {
        inputs[0].type = inputs[1].type = INPUT_KEYBOARD;
        inputs[0].ki.wVk = inputs[1].ki.wVk = VK_ESCAPE;
        inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    }
    ::SendInput(ARRAYSIZE(inputs), inputs, sizeof inputs[0]);
    constexpr DWORD lDeadline = 15'000; // milliseconds
    ::MsgWaitForMultipleObjectsEx(0, nullptr, lDeadline, hClicked ? QS_MOUSEBUTTON : QS_KEY,
                                  MWMO_INPUTAVAILABLE);
}

} // namespace

TEST_F(HealthWindowTest, LooksTidyOnEveryTabAndResolution)
{
    Open([&](const User& user) {
        for (const int lDpi : {96, 144, 192})
        {
            if (lDpi != 96)
                user.ChangeResolution(hWindow, lDpi, 860, 560);
            for (const int lTab : {eWhatHelps, eNeverPlayed, ePlays, eGaps, eHours})
            {
                user.ClickTab(At(eIdHealthTabs), lTab);
                EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi << " dpi, tab " << lTab;
                EXPECT_EQ(Nameless(hWindow), Faults());
                user.Shot(hWindow,
                          L"health-" + std::to_wstring(lDpi * 100 / 96) + L"-" + std::to_wstring(lTab));
            }
        }
    });
}

TEST_F(HealthWindowTest, ClickOnAHeadingSorts)
{
    Open([&](const User& user) {
        EXPECT_EQ(Column(eIdlstLevels, 0).front(), L"red");
        EXPECT_EQ(Column(eIdlstLevels, 0).back(), L"green");
        const auto hHeader = reinterpret_cast<HWND>(Send(At(eIdlstLevels), LVM_GETHEADER));
        RECT rect{};
        Send(hHeader, HDM_GETITEMRECT, 1, &rect);
        user.ClickAt(hHeader, {rect.left + 20, rect.bottom / 2});
        EXPECT_EQ(Column(eIdlstLevels, 1),
                  (Texts{L"Gold 1", L"Pop 1", L"Pop 2", L"Rock 1", L"Rock 2", L"Soul 1"}));
    });
}

TEST_F(HealthWindowTest, KeysReachEverything)
{
    Open([&](const User& user) {
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstLevels));
        user.Key(VK_DOWN);
        WaitForFigures(user);
        EXPECT_EQ(SelectedRow(eIdlstLevels), 1);
        user.Key(VK_F6);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstAdvice));
        user.Key(VK_TAB, VK_CONTROL);
        EXPECT_TRUE(Shown(At(eIdlstSeldom)));
        EXPECT_FALSE(Shown(At(eIdlstAdvice)));
        EXPECT_EQ(user.FocusedWindow(), At(eIdHealthTabs)) << "what had it is hidden";
        user.Key(VK_F6);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstLevels));
        user.Replace(At(eIdtxtDays), L"3");
        user.Key(VK_RETURN);
        user.Until([&] { return User::Text(At(eIdlblSummary)).starts_with(L"3 days"); }, "other figures");
        WaitForFigures(user);
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hWindow);
    });
}

TEST_F(HealthWindowTest, EscAndCancelEndASimulation)
{
    Open([&](const User& user) {
        const std::wstring sBefore = User::Text(At(eIdlblSummary));
        for (const bool bByKey : {true, false})
        {
            bool bSent = false;
            cState.cWatchedLoop.OnPump = [&] { // the user acts while it runs
                if (std::exchange(bSent, true))
                    return;
                EXPECT_TRUE(Shown(At(eIdcmdCancelRun)));
                SendNow(bByKey ? nullptr : At(eIdcmdCancelRun));
            };
            user.Key(VK_F5);
            user.Until([&] { return User::Text(At(eIdHealthStatus)) == L"Cancelled."; }, "the end");
            user.Idle();
            EXPECT_EQ(User::Text(At(eIdlblSummary)), sBefore);
            EXPECT_FALSE(Shown(At(eIdcmdCancelRun)));
            cHost.Run(user, [&] { cState.cWatchedLoop.OnPump = nullptr; });
            user.Key(VK_F5);
            WaitForFigures(user);
            EXPECT_EQ(User::Text(At(eIdHealthStatus)), L"");
        }
    });
}

TEST_F(HealthWindowTest, CtrlSSavesTheReport)
{
    Open([&](const User& user) {
        user.Key('S', VK_CONTROL);
        EXPECT_EQ(User::Text(user.BoxWindow()), L"Save Report");
        user.AnswerInput(L"C:\\health.html");
        user.Until([&] { return User::Text(At(eIdHealthStatus)) == L"Saved in C:\\health.html."; },
                   "the report");
        EXPECT_NE(cState.cPorts.cFiles.ReadAll(L"C:\\health.html").find("Gold 1"), std::string::npos);
    });
}

TEST_F(HealthWindowTest, BrowseSimulatesTheClockFileThatIsChosen)
{
    // The system's box wants a file of the disk; the station's files are in memory.
    const std::wstring sClock = L"C:\\ravlo-test-clock.txt";
    ::CloseHandle(::CreateFileW(sClock.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    cState.cPorts.cFiles.Put(sClock, "Soul,1\n");
    Open([&](const User& user) {
        EXPECT_NE(Cell(eIdlstLevels, RowOfLevel(L"Pop 1"), 0), L"not asked");
        user.Click(At(eIdcmdBrowse));
        EXPECT_EQ(User::Text(user.BoxWindow()), L"Clock File");
        user.AnswerInput(sClock);
        WaitForFigures(user);
        EXPECT_EQ(User::Text(At(eIdcboClock)), sClock);
        EXPECT_EQ(Cell(eIdlstLevels, RowOfLevel(L"Pop 1"), 0), L"not asked");
    });
    ::DeleteFileW(sClock.c_str());
}

TEST_F(HealthWindowTest, RemedyIsCarriedOutByItsButton)
{
    Open([&](const User& user) {
        ClickRow(user, eIdlstLevels, RowOfLevel(L"Pop 1"));
        WaitForFigures(user);
        const Texts colRemedies = Column(eIdlstAdvice, 0);
        const auto spread = std::find(colRemedies.begin(), colRemedies.end(), L"Spread");
        ASSERT_NE(spread, colRemedies.end());
        ClickRow(user, eIdlstAdvice, static_cast<int>(spread - colRemedies.begin()));
        user.Click(At(eIdcmdCarryOut));
        WaitForFigures(user);
        EXPECT_EQ(Cell(eIdlstLevels, RowOfLevel(L"Pop 1"), 8), L"0");
    });
}

TEST_F(HealthWindowTest, DoubleClickGoesToTheCutInTheLibraryWindow)
{
    HWND hLibrary = nullptr;
    WhileShowing([&] { cState.cWindows->ShowHealth({}); },
                 [&](const User& user) {
        ClickRow(user, eIdlstLevels, RowOfLevel(L"Pop 1"));
        WaitForFigures(user);
        user.ClickTab(At(eIdHealthTabs), eNeverPlayed);
        const std::wstring sTitle = Cell(eIdlstSeldom, 0, 1);
        user.DoubleClickAt(At(eIdlstSeldom), PointOf(eIdlstSeldom, 0));
        user.WaitUntilGone(hWindow);
        hLibrary = user.WaitFor(sfrmUILibClass);
        user.Idle();
        EXPECT_EQ(cState.cSchedMan->UIShowing(), true);
        EXPECT_EQ(user.FocusedWindow(), User::Control(hLibrary, eIdiGridLib));
        user.Shot(hLibrary, L"health-goes-to-the-library");
        ::PostMessageW(hLibrary, WM_CLOSE, 0, 0);
        user.WaitUntilGone(hLibrary);
    });
}

TEST_F(HealthWindowTest, ChangeOfTheDataBaseMarksTheFigures)
{
    Open([&](const User& user) {
        cHost.Run(user, [&] {
            cState.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cState.cDataBase->colCuts[0]});
        });
        EXPECT_EQ(User::Text(At(eIdlblSummary)).find(L"These figures are of before the last change"), 0u);
        user.Key(VK_F5);
        WaitForFigures(user);
        EXPECT_EQ(User::Text(At(eIdlblSummary)).find(L"28 days"), 0u);
    });
}

TEST_F(HealthWindowTest, SizeAndPlaceAreRemembered)
{
    Open([&](const User& user) { user.Place(hWindow, 60, 50, 900, 600); });
    EXPECT_EQ(cState.cPorts.cUserSettings.Get(L"RavloScheduler", L"Settings", L"frmHealthPlace", L""),
              L"60,50,900,600");
}

} // namespace ravlo::test
