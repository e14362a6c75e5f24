// SPDX-License-Identifier: MIT
// Each state of the category window, as a music director sees it: screenshots/guide-category-*.png, which are
// copied to docs/pictures/category-*.png for the guide.
#include "ui/windows/CategoryFixture.h"
#include "ui/windows/Tidy.h"

namespace ravlo::test
{

namespace
{

struct CategoryPictures : CategoryWindowTest
{
    CategoryPictures()
    {
        cState.cDataBase->colCuts.clear();
        const wchar_t* const sArtists[] = {L"Amber Road",    L"The Lanterns",  L"Nora Vale",
                                           L"Quiet Harbour", L"Blue Meridian", L"Ida & Sons",
                                           L"Kites",         L"Paper Moons",   L"Silver Orchard",
                                           L"Tom Hollis",    L"Velvet Sky",    L"Zora Lind"};
        const wchar_t* const sTitles[] = {L"Morning Train", L"Long Way Down",  L"Half a Smile",
                                          L"Northern Line", L"Paper Crowns",   L"Slow Dancer",
                                          L"Rain on Glass", L"Out of Season",  L"The Last Ferry",
                                          L"Hold the Tide", L"Second Sunrise", L"Letters Home"};
        const struct
        {
            const wchar_t* sName;
            int lLevels;
        } cats[] = {{L"Rock", 3}, {L"Pop", 2}, {L"Soul", 2}, {L"r&b", 1}, {L"Jazz", 2}, {L"NOCAT", 1}};
        int lCut = 0;
        for (const auto& cat : cats)
            for (int lLevel = 1; lLevel <= cat.lLevels; ++lLevel)
                for (int i = 0; i < 9 + lLevel; ++i, ++lCut)
                    Add(L"cut" + std::to_wstring(lCut), cat.sName, lLevel, sArtists[(lCut * 5) % 12],
                        sTitles[(lCut * 7 + lLevel) % 12])
                        ->SetOpener(lCut % 4 == 0);
        cState.Populate();
        StartOn(L"Rock", 2);
    }
    void Picture(const User& user, const std::wstring& sName) const
    {
        EXPECT_EQ(Untidiness(hWindow), Faults());
        user.Shot(hWindow, L"guide-category-" + sName);
    }
};

} // namespace

TEST_F(CategoryPictures, OfChoosingCuts)
{
    Open([&](const User& user) {
        Pick(user, eIdlstsongs1, 2);
        Pick(user, eIdlstsongs1, 4, VK_CONTROL);
        EXPECT_EQ(Selected(eIdlstsongs1).size(), 2u);
        Picture(user, L"choice");
        user.Click(At(eIdchkOpener));
        user.Click(At(eIdchkSortedSongs));
        Picture(user, L"openers-sorted");
    });
}

TEST_F(CategoryPictures, OfACutOfSeveralCategories)
{
    request.cCut = Add(L"several", L"Pop/Soul", 2, L"Nora Vale", L"Second Sunrise");
    request.bAllowMultiSelect = true;
    request.sCaption = L"Nora Vale - Second Sunrise";
    cState.Populate();
    request.cMainCatChosen = nullptr;
    request.cSubCatChosen = nullptr;
    Open([&](const User& user) {
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Pop", L"Soul"}));
        EXPECT_EQ(Selected(eIdlstlvl), (Texts{L"2"}));
        Picture(user, L"multi-select");
    });
}

TEST_F(CategoryPictures, OfTheRules)
{
    Open([&](const User& user) {
        user.Click(At(eIdLabel2));
        EXPECT_FALSE(RulesShown());
        Picture(user, L"rules-hidden");
        user.Click(At(eIdLabel2));
        ClickTab(user, 1);
        user.Replace(Box(1, eIdtxtArtistSepMins), L"90");
        Picture(user, L"rules");
        Pick(user, eIdlstCat, 1);
        EXPECT_EQ(user.Box(), Question(L"Rock"));
        EXPECT_TRUE(TakeScreenshot({hWindow, user.BoxWindow()}, L"guide-category-pending-question"));
        user.Answer(IDNO);
    });
}

TEST_F(CategoryPictures, OfWhatALevelCanKeep)
{
    for (int i = 0; i < 12; ++i)
        Add(L"abba" + std::to_wstring(i), L"Gold", 1, L"Nora Vale", L"Song " + std::to_wstring(i));
    for (int i = 0; i < 72; ++i)
        Add(L"gold" + std::to_wstring(i), L"Gold", 1, L"Artist " + std::to_wstring(i),
            L"Hit " + std::to_wstring(i));
    for (std::size_t i = 0; i < 40; ++i)
        cState.cDataBase->colCuts[cState.cDataBase->colCuts.size() - 1 - i]->SetLastPlayed(
            cState.cPorts.cClock.Now() - static_cast<double>(i) * 3 / 1440);
    cState.Populate();
    StartOn(L"Gold", 1);
    Open([&](const User& user) {
        ClickTab(user, 1);
        user.Click(Box(1, eIdInheritTitle));
        user.Replace(Box(1, eIdtxtTitleSepMins), L"240");
        Picture(user, L"attainable");
        user.Click(At(eIdcmdApply));
    });
}

TEST_F(CategoryPictures, OfMakingACategory)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNew));
        EXPECT_EQ(user.Box().sTitle, L"New Category Creation");
        user.Type(L"Evening Jazz");
        EXPECT_TRUE(TakeScreenshot({hWindow, user.BoxWindow()}, L"guide-category-new"));
        user.Key(VK_ESCAPE);
    });
}

TEST_F(CategoryPictures, OfOtherResolutions)
{
    Open([&](const User& user) {
        for (const int lDpi : {144, 192})
        {
            user.ChangeResolution(hWindow, lDpi, 790, 440);
            ClickTab(user, 1);
            Picture(user, std::to_wstring(lDpi * 100 / 96));
        }
    });
}

} // namespace ravlo::test
