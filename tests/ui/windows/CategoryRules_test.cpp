// SPDX-License-Identifier: MIT
// The category window's rules editor, by mouse and keyboard.
#include "ui/windows/CategoryFixture.h"

#include <iterator>
#include <set>
#include <utility>
#include <windows.h>

#include <commctrl.h>

namespace ravlo::test
{

using CategoryRules = CategoryWindowTest;

namespace
{

// Where a control shows anything but its background.
std::set<std::pair<int, int>> PixelsOf(HWND hControl)
{
    std::set<std::pair<int, int>> colPixels;
    RECT client{};
    ::GetClientRect(hControl, &client);
    const HDC hDC = ::GetDC(hControl);
    for (int x = 0; x < client.right; ++x)
        for (int y = 0; y < client.bottom; ++y)
            if (::GetPixel(hDC, x, y) != ::GetSysColor(COLOR_BTNFACE))
                colPixels.emplace(x, y);
    ::ReleaseDC(hControl, hDC);
    return colPixels;
}

std::wstring TabText(HWND hTabs, int lTab)
{
    wchar_t text[64] = L"";
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = static_cast<int>(std::size(text));
    ::SendMessageW(hTabs, TCM_GETITEMW, static_cast<WPARAM>(lTab), reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

} // namespace

TEST_F(CategoryRules, TheTextsAreAsTheUserKnowsThem)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(hWindow), L"Category");
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)),
                  L"Global Rules (for all categories where separations not explictly set).");
        EXPECT_EQ(TabText(At(eIdTabStrip1), 0), L"Global Rules");
        EXPECT_EQ(TabText(At(eIdTabStrip1), 1), L"Category Rules");
        EXPECT_EQ(user.Text(At(eIdcmdApply)), L"&Apply Changes");
        EXPECT_EQ(user.Text(At(IDOK)), L"OK");
        EXPECT_EQ(user.Text(At(IDCANCEL)), L"&Cancel");
        EXPECT_EQ(user.Text(At(eIdLabel2)), L"Show Rules");
        for (const int lPane : {0, 1})
        {
            EXPECT_EQ(user.Text(Box(lPane, eIdArtistLabel)), L"Artist Separation (Mins):");
            EXPECT_EQ(user.Text(Box(lPane, eIdTitleLabel)), L"Title Separation (Mins):");
            EXPECT_EQ(user.Text(Box(lPane, eIdAlbumLabel)), L"Album Separation (Mins):");
        }
        EXPECT_EQ(user.Text(Box(0, eIdNote)),
                  L"Setting a rule to zero means NO rule is set (no separation will be maintained)");
        EXPECT_EQ(user.Text(Box(1, eIdNote)),
                  L"Setting a rule to zero (or less) means NO rule is set (Global Rule will be applied).");
        EXPECT_EQ(user.Text(Box(1, eIdchkIgnore)), L"Category &Ignores Rules");
    });
}

TEST_F(CategoryRules, TabsSwitchThePanesByMouseAndByKeys)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        const auto shows = [&](int lPane) {
            EXPECT_EQ(::IsWindowVisible(At(eIdpicRules0)) != FALSE, lPane == 0);
            EXPECT_EQ(::IsWindowVisible(At(eIdpicRules1)) != FALSE, lPane == 1);
        };
        shows(0);
        user.ClickTab(At(eIdTabStrip1), 1);
        shows(1);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Rock 3");
        user.Key(VK_LEFT);
        shows(0);
        user.Key(VK_TAB, VK_CONTROL);
        shows(1);
        user.ClickEntry(At(eIdlstlvl), 2);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Rock [ALL LEVELS].");
        user.Shot(hWindow, L"category-rules-all-levels");
    });
}

TEST_F(CategoryRules, CategoryRulesNeedACategory)
{
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"ALL SONGS Is Not Valid For This!",
                                           L"First use the category selector to choose a category",
                                           {IDOK}}));
        user.Shot(user.Find(L"#32770"), L"box-all-songs");
        user.Answer(IDOK);
        EXPECT_TRUE(::IsWindowVisible(At(eIdpicRules0)));
        EXPECT_EQ(::SendMessageW(At(eIdTabStrip1), 0x130B /* TCM_GETCURSEL */, 0, 0), 0);
    });
}

TEST_F(CategoryRules, GlobalRulesAreTypedAndApplied)
{
    Open([&](const User& user) {
        EXPECT_FALSE(::IsWindowEnabled(At(eIdcmdApply)));
        user.Replace(Box(0, eIdtxtArtistSepMins), L"45");
        EXPECT_TRUE(::IsWindowEnabled(At(eIdcmdApply)));
        user.Replace(Box(0, eIdtxtTitleSepMins), L"-30");
        user.Replace(Box(0, eIdtxtAlbumSepMins), L"-5");
        user.Shot(hWindow, L"category-rules-edited");
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(user.Text(Box(0, eIdtxtTitleSepMins)), L"30");
        EXPECT_EQ(user.Text(Box(0, eIdtxtAlbumSepMins)), L"60");
        EXPECT_FALSE(::IsWindowEnabled(At(eIdcmdApply)));
        EXPECT_NE(user.FocusedWindow(), At(eIdcmdApply));
        EXPECT_TRUE(user.FocusedWindow());
    });
    EXPECT_EQ(cState.cMod.GlobalArtistSepMins(), 45);
    EXPECT_EQ(cState.cMod.GlobalTitleSepMins(), 30);
    EXPECT_EQ(cState.cMod.GlobalAlbumSepMins(), 60);
}

TEST_F(CategoryRules, CategoryRulesAreTypedAndAppliedByKeysAlone)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.Key(VK_TAB, VK_CONTROL);
        for (int i = 0; i < 6; ++i) // Cancel, OK, the check box, album, title, artist
            user.Key(VK_TAB, VK_SHIFT);
        EXPECT_EQ(user.FocusedWindow(), Box(1, eIdtxtArtistSepMins));
        user.Type(L"25");
        user.Key(VK_TAB);
        user.Type(L"26");
        user.Key(VK_TAB);
        user.Type(L"27");
        user.Key('I', VK_MENU);
        EXPECT_FALSE(::IsWindowEnabled(Box(1, eIdtxtArtistSepMins)));
        EXPECT_FALSE(::IsWindowEnabled(Box(1, eIdtxtTitleSepMins)));
        EXPECT_TRUE(::IsWindowEnabled(Box(1, eIdtxtAlbumSepMins)));
        user.Shot(hWindow, L"category-rules-ignored");
        user.Key('A', VK_MENU);
    });
    const auto cRules = cState.Level(L"Rock", 3)->Rules();
    EXPECT_EQ(cRules->ArtistSepMins(), 25);
    EXPECT_EQ(cRules->TitleSepMins(), 26);
    EXPECT_EQ(cRules->AlbumSepMins(), 27);
    EXPECT_TRUE(cRules->IgnoreRules());
}

TEST_F(CategoryRules, AnotherCategoryAsksAboutPendingChangesOnce)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
        user.ClickEntry(At(eIdlstCat), 1);
        EXPECT_EQ(user.Box(), Question(L"Rock"));
        user.Shot(user.Find(L"#32770"), L"box-pending-changes");
        user.Answer(IDYES);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Jazz 2");
        user.ClickEntry(At(eIdlstlvl), 1);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
    });
    EXPECT_EQ(cState.Level(L"Rock", 3)->Rules()->ArtistSepMins(), 25);
}

TEST_F(CategoryRules, ClosingAsksAboutPendingChangesAndNoDiscardsThem)
{
    StartOn(L"Rock", 3);
    const auto lAnswer = Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Box(), Question(L"Rock"));
        user.Answer(IDNO);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(cState.Level(L"Rock", 3)->Rules()->ArtistSepMins(), 60);
}

TEST_F(CategoryRules, RulesThatCannotBeSavedAreReported)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
        cState.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\Rules");
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(user.Box().sTitle, L"SaveRules");
        user.Answer(IDOK);
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"RavloScheduler", L"Cant save rules for: Rock\u00AC\u00AC\u00AC3", {IDOK}}));
        user.Answer(IDOK);
    });
}

TEST_F(CategoryRules, TheStripHidesAndShowsTheRulesByEachOfItsPartsAndByKey)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        RECT wide{};
        ::GetWindowRect(hWindow, &wide);
        const std::set<std::pair<int, int>> arrow = PixelsOf(At(eIdLabel1));
        EXPECT_FALSE(arrow.empty());
        bool bShown = true;
        const auto flips = [&] {
            bShown = !bShown;
            EXPECT_EQ(::IsWindowVisible(At(eIdTabStrip1)) != FALSE, bShown);
            EXPECT_EQ(::IsWindowVisible(At(eIdpicRules0)) != FALSE, bShown);
            EXPECT_EQ(::IsWindowVisible(At(eIdcmdApply)) != FALSE, bShown);
            EXPECT_EQ(user.Text(At(eIdLabel1)), bShown ? L"Hide Rules" : L"Show Rules");
            EXPECT_EQ(PixelsOf(At(eIdLabel1)) == arrow, bShown);
            EXPECT_EQ(user.Text(At(eIdLabel3)), user.Text(At(eIdLabel1)));
            RECT now{};
            ::GetWindowRect(hWindow, &now);
            EXPECT_EQ(now.right - now.left == wide.right - wide.left, bShown);
            EXPECT_EQ(now.left, wide.left);
        };
        user.Click(At(eIdLabel1));
        flips();
        user.Shot(hWindow, L"category-rules-hidden");
        user.Click(At(eIdLabel2));
        flips();
        user.Click(At(eIdLabel3));
        flips();
        user.Key(VK_SPACE); // the strip has the focus
        flips();
        user.Click(At(eIdLabel2));
        flips();
    });
    Open([&](const User&) { EXPECT_FALSE(::IsWindowVisible(At(eIdTabStrip1))); });
}

TEST_F(CategoryRules, IgnoredBoxesStayDisabledWhenThePaneIsEnabledAgain)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        user.Click(Box(1, eIdchkIgnore));
        cHost.Run(user, [&] {
            ::EnableWindow(At(eIdpicRules1), FALSE);
            EXPECT_FALSE(::IsWindowEnabled(Box(1, eIdchkIgnore)));
            ::EnableWindow(At(eIdpicRules1), TRUE);
        });
        EXPECT_TRUE(::IsWindowEnabled(Box(1, eIdchkIgnore)));
        EXPECT_FALSE(::IsWindowEnabled(Box(1, eIdtxtArtistSepMins)));
        user.Click(Box(1, eIdchkIgnore));
        EXPECT_TRUE(::IsWindowEnabled(Box(1, eIdtxtArtistSepMins)));
        ::PostMessageW(hWindow, WM_COMMAND, IDCANCEL, 0);
        user.Answer(IDNO);
    });
}

} // namespace ravlo::test
