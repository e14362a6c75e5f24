// SPDX-License-Identifier: MIT
// The windows that explain the next cut and forecast the next 20, from the library window's menu.
#include "ui/rotation/windows/ControlIds.h"
#include "ui/windows/LibraryFixture.h"
#include "ui/windows/Tidy.h"

namespace ravlo::test
{

namespace
{

constexpr int lRotation = 3; // places in the menu bar and below
constexpr int lExplain = 6;
constexpr int lNextCuts = 7;

std::wstring ClipboardText()
{
    std::wstring sText;
    if (!::OpenClipboard(nullptr))
        return sText;
    if (const HANDLE hText = ::GetClipboardData(CF_UNICODETEXT))
    {
        sText = static_cast<const wchar_t*>(::GlobalLock(hText));
        ::GlobalUnlock(hText);
    }
    ::CloseClipboard();
    return sText;
}

} // namespace

// Rock 1, of which Abba and Blur have just played.
struct RotationListWindows : FilledLibrary
{
    void OpenList(const std::function<void(const User&)>& drive)
    {
        OpenOnRock([&](const User& user) {
            Run(user, [&] {
                for (const std::size_t cut : {0u, 1u})
                {
                    const auto& cCut = cState.cDataBase->colCuts[cut];
                    cCut->SetLastPlayed(cState.cPorts.cClock.Now() - 10 / 1440.0);
                    cState.cSchedMan->UpdateArtistTitleHistory(cCut);
                }
            });
            drive(user);
        });
    }
    void TakeList(const User& user)
    {
        hOpened = user.WaitFor(sRotationListClass);
        hList = User::Control(hOpened, eIdRotationList);
    }
    std::wstring TextAt(int lId) const { return User::Text(User::Control(hOpened, lId)); }
    int ListRows() const { return static_cast<int>(Send(hList, LVM_GETITEMCOUNT)); }
    std::wstring ListCell(int lRow, int lListColumn) const
    {
        wchar_t sText[300] = L"";
        LVITEMW item{};
        item.iSubItem = lListColumn;
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        Send(hList, LVM_GETITEMTEXTW, lRow, &item);
        return sText;
    }
    void CloseList(const User& user) const
    {
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hOpened);
    }

    HWND hOpened = nullptr;
    HWND hList = nullptr;
};

TEST_F(RotationListWindows, ExplainsTheShownLevelByMouseAndByKeys)
{
    for (const auto choose : {&RotationListWindows::ChooseByMouse, &RotationListWindows::ChooseByKeys})
        OpenList([&](const User& user) {
            user.Click(hGrid);
            (this->*choose)(user, {lRotation, lExplain});
            TakeList(user);
            EXPECT_EQ(User::Text(hOpened), L"Explain Next Cut: Rock 1");
            EXPECT_EQ(
                TextAt(eIdListHeading),
                L"Asked now (12:00), Rock 1 gives: Cream - Song 3\r\nIt breaks no rule.\r\nPassed over: 2 "
                L"cuts (title 2).");
            EXPECT_EQ(ListRows(), 3);
            EXPECT_EQ(ListCell(2, 0), L"Cream") << "by which screen readers name the row";
            EXPECT_EQ(ListCell(2, 1), L"Chosen");
            EXPECT_EQ(user.FocusedWindow(), hList);
            EXPECT_EQ(TextAt(eIdListSentence), L"Chosen: Cream - Song 3; it breaks no rule.");
            user.Key(VK_UP);
            EXPECT_EQ(TextAt(eIdListSentence).substr(0, 26), L"Passed over: Blur - Song 2");
            CloseList(user);
            EXPECT_EQ(user.FocusedWindow(), hGrid);
            EXPECT_EQ(Order(L"Rock", 1), colRockArtists) << "nothing has moved";
        });
}

TEST_F(RotationListWindows, TheCutsMenuExplainsTheSelectedCut)
{
    OpenList([&](const User& user) {
        user.RightClickAt(hGrid, RowAt(1));
        user.WaitFor(L"#32768");
        EXPECT_EQ(Status(2), L"1 cut selected, 2:44");
        user.Key('X');
        TakeList(user);
        EXPECT_EQ(User::Text(hOpened), L"Explain Next Cut: Rock 1");
        EXPECT_EQ(TextAt(eIdListSentence).substr(0, 26), L"Passed over: Blur - Song 2");
        CloseList(user);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

TEST_F(RotationListWindows, ForecastsTwentyCuts)
{
    OpenList([&](const User& user) {
        ChooseByKeys(user, {lRotation, lNextCuts});
        TakeList(user);
        EXPECT_EQ(User::Text(hOpened), L"Next 20 Cuts: Rock 1");
        EXPECT_EQ(ListRows(), 20);
        EXPECT_EQ(ListCell(0, 0), L"Cream");
        EXPECT_EQ(ListCell(0, 1), L"12:00");
        CloseList(user);
        EXPECT_EQ(Order(L"Rock", 1), colRockArtists);
    });
}

TEST_F(RotationListWindows, CopiesByKeyAndReadsAgainByKey)
{
    OpenList([&](const User& user) {
        ChooseByKeys(user, {lRotation, lExplain});
        TakeList(user);
        user.Key('C', VK_CONTROL);
        const std::wstring sText = ClipboardText();
        EXPECT_EQ(sText.substr(0, sText.find(L'\r')), L"Asked now (12:00), Rock 1 gives: Cream - Song 3");
        EXPECT_NE(sText.find(L"3\tChosen\tCream\tSong 3\t\t\t\r\n"), std::wstring::npos);
        Run(user, [&] { cState.Level(L"Rock", 1)->Rules()->SetIgnoreRules(true); });
        user.Key(VK_F5);
        EXPECT_EQ(ListRows(), 1);
        EXPECT_EQ(ListCell(0, 0), L"Abba");
        user.Click(User::Control(hOpened, eIdListCopy));
        EXPECT_NE(ClipboardText(), sText);
        user.Click(User::Control(hOpened, IDCANCEL));
        user.WaitUntilGone(hOpened);
    });
}

TEST_F(RotationListWindows, AreTidyAndNamedAtEveryResolution)
{
    OpenList([&](const User& user) {
        for (const auto& [lItem, sName] : {std::pair{lExplain, L"explain"}, {lNextCuts, L"next-cuts"}})
        {
            ChooseByKeys(user, {lRotation, lItem});
            TakeList(user);
            EXPECT_EQ(Nameless(hOpened), Faults());
            for (const int lDpi : {96, 144, 192})
            {
                user.ChangeResolution(hOpened, lDpi, 800, 400);
                EXPECT_EQ(Untidiness(hOpened), Faults());
                user.Shot(hOpened,
                          std::wstring(L"rotation-") + sName + L"-" + std::to_wstring(lDpi * 100 / 96));
            }
            user.Resize(hOpened, 10, 10);
            EXPECT_EQ(Untidiness(hOpened), Faults());
            CloseList(user);
        }
    });
}

TEST_F(RotationListWindows, OpenWhereTheyWereClosed)
{
    OpenList([&](const User& user) {
        ChooseByKeys(user, {lRotation, lExplain});
        TakeList(user);
        user.Place(hOpened, 60, 70, 700, 420);
        CloseList(user);
        ChooseByKeys(user, {lRotation, lExplain});
        TakeList(user);
        const RECT place = PlaceOf(hOpened);
        EXPECT_EQ(place.left, 60);
        EXPECT_EQ(place.top, 70);
        EXPECT_EQ(WidthOf(place), 700);
        CloseList(user);
    });
}

} // namespace ravlo::test
