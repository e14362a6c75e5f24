// SPDX-License-Identifier: MIT
// The category window's rules editor, by mouse and keyboard.
#include "ui/windows/CategoryFixture.h"
#include "ui/windows/Tidy.h"

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

// Where a control shows something other than its background.
std::set<std::pair<int, int>> PixelsOf(HWND hControl)
{
    std::set<std::pair<int, int>> colPixels;
    const RECT client = ClientOf(hControl);
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
    Send(hTabs, TCM_GETITEMW, lTab, &item);
    return item.pszText;
}

} // namespace

TEST_F(CategoryRules, TheTextsAreAsTheUserKnowsThem)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(hWindow), L"Category");
        EXPECT_EQ(TabText(At(eIdTabStrip1), 0), L"Global Rules");
        EXPECT_EQ(TabText(At(eIdTabStrip1), 1), L"Category Rules");
        const std::pair<int, const wchar_t*> texts[] = {
            {eIdlblRulesTitle, L"Global Rules (for all categories where separations not explictly set)."},
            {eIdcmdApply, L"&Apply Changes"},
            {IDOK, L"OK"},
            {IDCANCEL, L"&Cancel"},
            {eIdLabel2, L"Show Rules"}};
        for (const auto& [lId, sText] : texts)
            EXPECT_EQ(user.Text(At(lId)), sText);
        const std::pair<int, const wchar_t*> labels[] = {{eIdArtistLabel, L"Artist Separation (Mins):"},
                                                         {eIdTitleLabel, L"Title Separation (Mins):"},
                                                         {eIdAlbumLabel, L"Album Separation (Mins):"}};
        for (const int lPane : {0, 1})
            for (const auto& [lId, sText] : labels)
                EXPECT_EQ(user.Text(Box(lPane, lId)), sText);
        EXPECT_EQ(user.Text(Box(0, eIdNote)),
                  L"Setting a rule to zero means NO rule is set (no separation will be maintained)");
        EXPECT_EQ(user.Text(Box(1, eIdNote)),
                  L"Setting a rule to zero (or less) means NO rule is set (Global Rule will be applied).");
        EXPECT_EQ(user.Text(Box(1, eIdchkIgnore)), L"Category &Ignores Rules");
        EXPECT_EQ(user.Text(Box(1, eIdInheritArtist)), L"Inheri&t artist");
        EXPECT_EQ(user.Text(Box(1, eIdInheritTitle)), L"Inherit titl&e");
        EXPECT_EQ(user.Text(Box(1, eIdInheritAlbum)), L"No al&bum rule");
    });
}

TEST_F(CategoryRules, TabsSwitchThePanesByMouseAndByKeys)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        const auto expectPane = [&](int lPane) {
            EXPECT_EQ(Shown(At(eIdpicRules0)), lPane == 0);
            EXPECT_EQ(Shown(At(eIdpicRules1)), lPane == 1);
        };
        expectPane(0);
        ClickTab(user, 1);
        expectPane(1);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Rock 3");
        user.Key(VK_LEFT);
        expectPane(0);
        user.Key(VK_TAB, VK_CONTROL);
        expectPane(1);
        Pick(user, eIdlstlvl, 2);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Rock [ALL LEVELS].");
        user.Shot(hWindow, L"category-rules-all-levels");
    });
}

TEST_F(CategoryRules, GlobalRulesAreTypedAndApplied)
{
    Open([&](const User& user) {
        EXPECT_FALSE(Enabled(At(eIdcmdApply)));
        user.Replace(Box(0, eIdtxtArtistSepMins), L"45");
        EXPECT_TRUE(Enabled(At(eIdcmdApply)));
        user.Replace(Box(0, eIdtxtTitleSepMins), L"-30");
        user.Replace(Box(0, eIdtxtAlbumSepMins), L"-5");
        user.Shot(hWindow, L"category-rules-edited");
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(user.Text(Box(0, eIdtxtTitleSepMins)), L"30");
        EXPECT_EQ(user.Text(Box(0, eIdtxtAlbumSepMins)), L"60");
        EXPECT_FALSE(Enabled(At(eIdcmdApply)));
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
        for (int i = 0; i < 9; ++i) // Cancel, OK, the check box, each tick and its box
            user.Key(VK_TAB, VK_SHIFT);
        EXPECT_EQ(user.FocusedWindow(), Box(1, eIdtxtArtistSepMins));
        for (const wchar_t* sMins : {L"25", L"26", L"27"})
        {
            user.Type(sMins);
            user.Keys({VK_TAB, VK_TAB});
        }
        user.Key('I', VK_MENU);
        EXPECT_FALSE(Enabled(Box(1, eIdtxtArtistSepMins)));
        EXPECT_FALSE(Enabled(Box(1, eIdtxtTitleSepMins)));
        EXPECT_TRUE(Enabled(Box(1, eIdtxtAlbumSepMins)));
        user.Shot(hWindow, L"category-rules-ignored");
        user.Key('A', VK_MENU);
    });
    const auto cRules = cState.Level(L"Rock", 3)->Rules();
    EXPECT_EQ(cRules->ArtistSepMins(), 25);
    EXPECT_EQ(cRules->TitleSepMins(), 26);
    EXPECT_EQ(cRules->AlbumSepMins(), 27);
    EXPECT_TRUE(cRules->IgnoreRules());
}

TEST_F(CategoryRules, TicksInheritByMouseAndByKey)
{
    StartOn(L"Rock", 3);
    cState.Level(L"Rock", 3)->Rules()->Apply({10, 20, 30, {}});
    Open([&](const User& user) {
        const auto ticked = [&](int lId) { return Send(Box(1, lId), BM_GETCHECK) == BST_CHECKED; };
        user.Key(VK_TAB, VK_CONTROL);
        EXPECT_FALSE(ticked(eIdInheritArtist));
        user.Click(Box(1, eIdInheritArtist));
        user.Key('E', VK_MENU);
        user.Key('B', VK_MENU);
        EXPECT_TRUE(ticked(eIdInheritTitle));
        EXPECT_EQ(user.Text(Box(1, eIdtxtArtistSepMins)), L"60");
        EXPECT_EQ(user.Text(Box(1, eIdtxtTitleSepMins)), L"60");
        EXPECT_EQ(user.Text(Box(1, eIdtxtAlbumSepMins)), L"-1");
        user.Shot(hWindow, L"category-rules-inherited");
        user.Replace(Box(1, eIdtxtTitleSepMins), L"21");
        EXPECT_FALSE(ticked(eIdInheritTitle));
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(Nameless(hWindow), Faults());
    });
    const auto cRules = cState.Level(L"Rock", 3)->Rules();
    EXPECT_TRUE(cRules->InheritsArtist());
    EXPECT_EQ(cRules->TitleSepMins(), 21);
    EXPECT_EQ(cRules->AlbumSepMins(), -1);
}

TEST_F(CategoryRules, SaysWhatTheLevelCanKeep)
{
    for (std::size_t i = 0; i < 4; ++i)
        Add(L"p" + std::to_wstring(i), L"Rock", 3, L"R&B Band", L"T" + std::to_wstring(i))
            ->SetLastPlayed(cState.cPorts.cClock.Now() - static_cast<double>(i) * 10 / 1440);
    cState.Populate();
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        ClickTab(user, 1);
        EXPECT_EQ(user.Text(Box(1, eIdOutlook)),
                  L"Attainable for this level: artist 10 min, title 50 min. Artist 60 and title 60 cannot be "
                  L"kept. By its last plays it is asked about every 10 min. R&B Band has 4 of its 5 cuts.");
        EXPECT_EQ(Untidiness(hWindow), Faults());
        user.Shot(hWindow, L"category-rules-outlook");
    });
}

TEST_F(CategoryRules, TheStripHidesAndShowsTheRulesByEachOfItsPartsAndByKey)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        const RECT before = PlaceOf(hWindow);
        const std::set<std::pair<int, int>> arrow = PixelsOf(At(eIdLabel1));
        EXPECT_FALSE(arrow.empty());
        bool bShown = true;
        const auto flips = [&] {
            bShown = !bShown;
            for (const int lId : {eIdTabStrip1, eIdpicRules0, eIdcmdApply})
                EXPECT_EQ(Shown(At(lId)), bShown);
            for (const int lId : {eIdLabel1, eIdLabel3})
                EXPECT_EQ(user.Text(At(lId)), bShown ? L"Hide Rules" : L"Show Rules");
            EXPECT_EQ(PixelsOf(At(eIdLabel1)) == arrow, bShown);
            const RECT now = PlaceOf(hWindow);
            EXPECT_EQ(WidthOf(now) == WidthOf(before), bShown);
            EXPECT_EQ(now.left, before.left);
        };
        user.Click(At(eIdLabel1));
        flips();
        user.Shot(hWindow, L"category-rules-hidden");
        for (const int lId : {eIdLabel2, eIdLabel3})
        {
            user.Click(At(lId));
            flips();
        }
        user.Key(VK_SPACE); // the strip has the focus
        flips();
        user.Click(At(eIdLabel2));
        flips();
    });
    Open([&](const User&) { EXPECT_FALSE(RulesShown()); });
}

TEST_F(CategoryRules, IgnoredBoxesStayDisabledWhenThePaneIsEnabledAgain)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        ClickTab(user, 1);
        user.Click(Box(1, eIdchkIgnore));
        cHost.Run(user, [&] {
            ::EnableWindow(At(eIdpicRules1), FALSE);
            EXPECT_FALSE(Enabled(Box(1, eIdchkIgnore)));
            ::EnableWindow(At(eIdpicRules1), TRUE);
        });
        EXPECT_TRUE(Enabled(Box(1, eIdchkIgnore)));
        EXPECT_FALSE(Enabled(Box(1, eIdtxtArtistSepMins)));
        user.Click(Box(1, eIdchkIgnore));
        EXPECT_TRUE(Enabled(Box(1, eIdtxtArtistSepMins)));
        ::PostMessageW(hWindow, WM_COMMAND, IDCANCEL, 0);
        user.Answer(IDNO);
    });
}

} // namespace ravlo::test
