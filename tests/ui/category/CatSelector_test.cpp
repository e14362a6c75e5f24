// SPDX-License-Identifier: MIT
#include "ui/category/CategoryTest.h"

namespace ravlo::test
{

namespace
{

// A selector with the station's categories and a record of its events: "Rock 1", "Rock 0" for all levels,
// "openers" and "all cuts".
struct Selector : CategoryTest
{
    Selector()
    {
        cSelector.CatChanged = [this](std::shared_ptr<clsCat>& cCat) {
            colEvents.push_back(cCat ? cCat->CatName() + L" " + std::to_wstring(cCat->CatLevel())
                                     : L"a deleted level");
        };
        cSelector.OpenerChanged = [this](bool bOpener) {
            colEvents.push_back(bOpener ? L"openers" : L"all cuts");
        };
        cSelector.SetSchedMan(cSchedMan);
        cSelector.SetColMainCats(cSchedMan->colMainCats());
    }
    void AllowMulti() { cSelector.SetAllowMultiCatSelect(true); }
    void Choose(const std::wstring& sCat, const std::wstring& sLevel)
    {
        ClickCat(sCat);
        ClickLevel(sLevel);
    }
    void Refresh() { cSelector.RefreshLists(cSchedMan->colMainCats()); }
    void ExpectChosen(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<clsCat>& cSubCat) const
    {
        EXPECT_EQ(cSelector.SelectedMainCat(), cMainCat);
        EXPECT_EQ(cSelector.SelectedSubCat(), cSubCat);
    }
    void ExpectSongs(const Texts& colSongs) { EXPECT_EQ(cScreen.Entries(lstsongs1), colSongs); }
    void ExpectEvents(const Texts& colExpected) const { EXPECT_EQ(colEvents, colExpected); }
    void ExpectMarked(const Texts& colMarked, const std::wstring& sCurrent)
    {
        EXPECT_EQ(cScreen.Selected(lstCat), colMarked);
        EXPECT_EQ(cScreen.Current(lstCat), sCurrent);
    }
    void ExpectLevels(const Texts& colLevels, const std::wstring& sCurrent)
    {
        EXPECT_EQ(cScreen.Entries(lstlvl), colLevels);
        EXPECT_EQ(cScreen.Current(lstlvl), sCurrent);
    }
    void AddLevel(const std::wstring& sCat, int lLevel)
    {
        MainCat(sCat)->AddSubCat(std::make_shared<clsCat>(cMod, sCat, lLevel));
    }
    // Something that happens once, while the first cut is read.
    void WhileReading(const std::function<void()>& happens)
    {
        CutOf(0)->OnCall = [this, happens](std::string_view) {
            const auto now = happens; // outlives the hook
            CutOf(0)->OnCall = nullptr;
            now();
        };
    }
    // Of the songs' controls, and of the lists before them.
    void ExpectEnabled(bool bSongs, bool bLists)
    {
        for (const SelectorControl eControl : {lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
            EXPECT_EQ(cScreen.enabled[eControl], bSongs);
        for (const SelectorControl eControl : {lstCat, lstlvl})
            EXPECT_EQ(cScreen.enabled[eControl], bLists);
    }

    Texts colEvents;
    const Texts colRock1{L"Zebra - Stripes", L"Apple - Core"};
    const Texts colRock{L"Zebra - Stripes", L"Apple - Core", L"Mango - Stone"};
};

} // namespace

// ---- filling ----

TEST_F(Selector, TheFirstCategoryIsCurrentAtFirstButNotChosen)
{
    EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
    ExpectMarked({}, L"Rock");
    ExpectChosen(nullptr, nullptr);
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    ExpectEvents({});
}

TEST_F(Selector, SettingTheCategoriesClearsTheSelections)
{
    ClickCat(L"Jazz");
    cSelector.SetColMainCats(cSchedMan->colMainCats());
    ExpectMarked({}, L"Rock");
    cSelector.SetColMainCats(nullptr);
    EXPECT_EQ(cScreen.Entries(lstCat), Texts());
    EXPECT_EQ(cScreen.Current(lstCat), L"none");
    cSelector.CatClick();
    ExpectEvents({L"Jazz 2"});
}

TEST_F(Selector, AClickOnACategoryShowsItsLevelsAndChoosesTheFirst)
{
    ClickCat(L"Rock");
    ExpectLevels({L"1", L"3", L"ALL"}, L"1");
    ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 1));
    ExpectEvents({L"Rock 1"});
    ExpectSongs(colRock1);
    EXPECT_EQ(cScreen.lSongFillings, 1);
    EXPECT_EQ(cScreen.eFocus, std::nullopt); // the focus stays where the user clicked
}

TEST_F(Selector, AMainCategoryWithoutLevelsHasNoALLAndIsChosenItself)
{
    const auto cEmpty = std::make_shared<clsCat>(cMod, L"Empty", 0);
    cSchedMan->colMainCats()->Add(TextKey(CategoryKey(L"Empty", 0)), cEmpty);
    cSelector.SetColMainCats(cSchedMan->colMainCats());
    ClickCat(L"Empty");
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    ExpectEvents({L"Empty 0"});
    EXPECT_EQ(cScreen.sMatch, L"No items in this category");
}

// ---- levels ----

TEST_F(Selector, ALevelOrALLIsChosenOnceAndTheListTakesTheFocusUnlessHidden)
{
    const auto expectChosenOnce =
        [&](const wchar_t* sLevel, const std::shared_ptr<clsCat>& cSubCat, const Texts& colSongs) {
        colEvents.clear();
        ClickLevel(sLevel);
        ClickLevel(sLevel);
        ExpectEvents({L"Rock " + std::to_wstring(cSubCat->CatLevel())});
        ExpectChosen(MainCat(L"Rock"), cSubCat);
        ExpectSongs(colSongs);
    };
    ClickCat(L"Rock");
    cScreen.bLevelsHidden = true;
    expectChosenOnce(L"ALL", MainCat(L"Rock"), colRock);
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
    cScreen.bLevelsHidden = false;
    expectChosenOnce(L"3", Level(L"Rock", 3), {L"Mango - Stone"});
    EXPECT_EQ(cScreen.eFocus, lstlvl);
}

TEST_F(Selector, DeletedLevelIsNoneAndReportedOnce)
{
    ClickCat(L"Rock");
    MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
    ClickLevel(L"3");
    ClickLevel(L"3");
    ExpectChosen(MainCat(L"Rock"), nullptr);
    ExpectEvents({L"Rock 1", L"a deleted level"});
    EXPECT_EQ(cScreen.sMatch, L"No items in this category");
}

// ---- songs ----

TEST_F(Selector, TheMatchLineCountsTheListedCuts)
{
    EXPECT_EQ(cScreen.sMatch, L"Songs Matching Criteria:");
    ClickCat(L"Rock");
    EXPECT_EQ(cScreen.sMatch, L"Total matching criteria = 2");
    ClickOpener(true);
    EXPECT_EQ(cScreen.sMatch, L"Total matching criteria = 1");
    ClickLevel(L"3");
    EXPECT_EQ(cScreen.sMatch, L"No items in this category");
}

TEST_F(Selector, OneSongListIsVisibleAndHasTheSelectedCutsInItsOrder)
{
    const auto expectVisible = [&](bool bSorted) {
        EXPECT_EQ(cScreen.Visible(lstsongs0), bSorted);
        EXPECT_EQ(cScreen.Visible(lstsongs1), !bSorted);
    };
    expectVisible(false);
    ClickCat(L"Rock");
    cScreen.lists[lstsongs1].lSelected = {0, 1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(0), CutOf(1)}));
    ClickSorted(true);
    expectVisible(true);
    EXPECT_EQ(cScreen.Entries(lstsongs0), (Texts{L"Apple - Core", L"Zebra - Stripes"}));
    ExpectSongs({});
    EXPECT_EQ(cSelector.SelectedCuts(), Cuts());
    cScreen.lists[lstsongs0].lSelected = {0, 1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(1), CutOf(0)}));
    ClickSorted(false);
    expectVisible(false);
    ExpectSongs(colRock1);
}

TEST_F(Selector, CutsOfTheSameArtistAndTitleAreBothListedAndMeanTheFirst)
{
    bool bNew = false;
    const auto cTwin = Add(L"twin", L"Jazz", 2, L"COOL", L"cat");
    Level(L"Jazz", 2)->AddCut(cTwin, bNew);
    ClickCat(L"Jazz");
    ExpectSongs({L"Cool - Cat", L"COOL - cat"});
    cScreen.lists[lstsongs1].lSelected = {1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(3)}));
}

TEST_F(Selector, ACutThatCannotBeReadHidesNoOther)
{
    CutOf(0)->failing = {"Title"};
    ClickCat(L"Rock");
    ExpectSongs({L"Apple - Core"});
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ALLListsEachCutOfItsLevelsOnceAndAsksNoneForItsKey)
{
    bool bNew = false;
    Level(L"Rock", 3)->AddCut(CutOf(1), bNew); // in two levels
    for (std::size_t i = 0; i < 3; ++i)
        CutOf(i)->failing = {"Key"};
    CutOf(0)->failing.insert("Title");
    Choose(L"Rock", L"ALL");
    ExpectSongs({L"Apple - Core", L"Mango - Stone"});
    cScreen.lists[lstsongs1].lSelected = {1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(2)}));
}

TEST_F(Selector, ALevelThatShrinksWhileItIsReadIsReadToItsNewEndButALLWhole)
{
    WhileReading([&] { Level(L"Rock", 1)->RemoveCut(CutOf(1)); });
    ClickCat(L"Rock");
    ExpectSongs({L"Zebra - Stripes"});
    WhileReading([&] { MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 1)); });
    ClickLevel(L"ALL");
    ExpectSongs({L"Zebra - Stripes", L"Mango - Stone"});
}

// ---- the opener filter ----

TEST_F(Selector, TheOpenerFilterListsOnlyOpenersAndReportsItself)
{
    ClickCat(L"Rock");
    ClickOpener(true);
    EXPECT_TRUE(cSelector.Opener());
    ExpectSongs({L"Apple - Core"});
    ClickOpener(false);
    EXPECT_FALSE(cSelector.Opener());
    cSelector.SetOpener(true); // runs its click, once
    cSelector.SetOpener(true);
    EXPECT_TRUE(cScreen.Checked(chkOpener));
    ExpectSongs({L"Apple - Core"});
    ExpectEvents({L"Rock 1", L"openers", L"all cuts", L"openers"});
}

TEST_F(Selector, AClickDuringItsOwnEventIsIgnored)
{
    int lEvents = 0;
    cSelector.OpenerChanged = [&](bool) {
        ++lEvents;
        ClickOpener(false);
    };
    cSelector.CatChanged = [&](std::shared_ptr<clsCat>&) {
        ++lEvents;
        ClickCat(L"Jazz");
    };
    ClickOpener(true);
    EXPECT_EQ(lEvents, 1);
    EXPECT_TRUE(cSelector.Opener());
    ClickCat(L"Rock");
    EXPECT_EQ(lEvents, 2);
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Rock"));
}

// ---- choosing in code ----

TEST_F(Selector, SettingTheMainCategoryRunsItsClick)
{
    cSelector.SetSelectedMainCat(std::make_shared<clsCat>(cMod, L"jAZZ", 0)); // found by its name in any case
    ExpectMarked({L"Jazz"}, L"Jazz");
    EXPECT_EQ(cScreen.Current(lstlvl), L"2");
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
    cSelector.SetSelectedMainCat(nullptr);
    cSelector.SetSelectedMainCat(std::make_shared<clsCat>(cMod, L"Polka", 0));
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz")) << "none and an unknown one change nothing";
    ExpectEvents({L"Jazz 2"});
}

TEST_F(Selector, SettingTheLevelChoosesItAndNoneChoosesALL)
{
    const auto expectLevel = [&](const std::shared_ptr<clsCat>& cSet, const wchar_t* sCurrent,
                                 const std::shared_ptr<clsCat>& cChosen) {
        cSelector.SetSelectedSubCat(cSet);
        EXPECT_EQ(cScreen.Current(lstlvl), sCurrent);
        EXPECT_EQ(cSelector.SelectedSubCat(), cChosen);
    };
    cSelector.SetSelectedSubCat(nullptr);
    ExpectEvents({}); // nothing to choose from
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    expectLevel(Level(L"Rock", 3), L"3", Level(L"Rock", 3));
    expectLevel(nullptr, L"ALL", MainCat(L"Rock"));
    expectLevel(std::make_shared<clsCat>(cMod, L"Rock", 99), L"ALL", MainCat(L"Rock"));
    ExpectEvents({L"Rock 1", L"Rock 3", L"Rock 0"});
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
}

TEST_F(Selector, RefillingTheListsChangesNoChoice)
{
    ClickCat(L"Jazz");
    cSelector.PopulateLists();
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"2", L"ALL"}));
    ExpectEvents({L"Jazz 2"});
}

// ---- refreshing ----

TEST_F(Selector, ARefreshKeepsTheChoiceAndReportsNothing)
{
    Choose(L"Rock", L"3");
    Refresh();
    ExpectMarked({L"Rock"}, L"Rock");
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    ExpectSongs({L"Mango - Stone"});
    ClickLevel(L"ALL");
    AddLevel(L"Rock", 2);
    Refresh();
    ExpectLevels({L"1", L"2", L"3", L"ALL"}, L"ALL");
    ExpectEvents({L"Rock 1", L"Rock 3", L"Rock 0"});
}

TEST_F(Selector, ARefreshWithoutTheLevelChoosesTheFirst)
{
    Choose(L"Rock", L"3");
    MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
    Refresh();
    ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 1));
    ExpectEvents({L"Rock 1", L"Rock 3", L"Rock 1"});
}

TEST_F(Selector, ARefreshWithoutTheCategoryChoosesNothing)
{
    ClickCat(L"Jazz");
    cSchedMan->colMainCats()->Remove(CategoryKey(L"Jazz", 0));
    Refresh();
    ExpectChosen(nullptr, nullptr);
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    ExpectSongs({});
    ExpectEvents({L"Jazz 2"});
}

TEST_F(Selector, ARefreshFindsTheChoiceInANewTree)
{
    Choose(L"Rock", L"3");
    cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
    Refresh();
    ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 3));
    EXPECT_EQ(colEvents.back(), L"Rock 3"); // another object
}

// ---- one category or several ----

TEST_F(Selector, OnlyWithMultiSelectSeveralCategoriesStaySelected)
{
    ClickCat(L"Rock");
    ClickCat(L"Jazz", true);
    ExpectMarked({L"Jazz"}, L"Jazz");
    AllowMulti();
    ClickCat(L"Rock", true);
    ExpectMarked({L"Rock", L"Jazz"}, L"Rock");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Rock"));
}

TEST_F(Selector, NOCATCannotBeSelectedWithARealCategory)
{
    const auto expectSelected = [&](const wchar_t* sClicked, const wchar_t* sSelected) {
        ClickCat(sClicked, true);
        EXPECT_EQ(cScreen.Selected(lstCat), (Texts{sSelected}));
    };
    AllowMulti();
    expectSelected(L"NOCAT", L"NOCAT");
    expectSelected(L"Rock", L"Rock");
    expectSelected(L"NOCAT", L"Rock");
}

TEST_F(Selector, WithMultiSelectTheCutsCannotBePicked)
{
    ClickCat(L"Rock");
    cSelector.EnableUI(true);
    AllowMulti();
    ExpectEnabled(false, true);
    ClickCat(L"Jazz");
    ExpectSongs(colRock1); // not filled any more
    cSelector.EnableUI(false);
    cSelector.EnableUI(true);
    ExpectEnabled(false, true);
    cSelector.SetAllowMultiCatSelect(false);
    ExpectEnabled(true, true);
}

TEST_F(Selector, DisablingTheControlsShowsTheHourglass)
{
    for (const bool bEnabled : {false, true})
    {
        cSelector.EnableUI(bEnabled);
        EXPECT_EQ(cScreen.bHourglass, !bEnabled);
        ExpectEnabled(bEnabled, bEnabled);
    }
}

TEST_F(Selector, TabFromTheLastControlWrapsToTheFirst)
{
    cSelector.SortedSongsTab();
    EXPECT_EQ(cScreen.eFocus, lstCat);
}

// ---- the selected names ----

TEST_F(Selector, TheNamesOfSeveralSelectedCategoriesAreInTheListsOrder)
{
    ClickCat(L"Jazz");
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), Texts()) << "none without multi-select";
    AllowMulti();
    ClickCat(L"Rock", true);
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), (Texts{L"Rock", L"Jazz"}));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ALLIsRefusedWhenSeveralCategoriesMayBeSelected)
{
    const auto expectRefused = [&] {
        Shown().clear();
        EXPECT_EQ(cSelector.colSelectedSubCatNames(), Texts());
        EXPECT_EQ(Shown(),
                  (Boxes{OkBox(BoxIcon::Exclamation, L"'ALL' is Not Valid",
                               L"Choose a level other than 'ALL' to be able to multi-select categories")}));
    };
    AllowMulti();
    expectRefused(); // no level is chosen
    Choose(L"Rock", L"ALL");
    expectRefused();
}

// ---- the categories of a cut ----

TEST_F(Selector, TheCategoriesAndTheLevelOfACutAreMarked)
{
    const auto cBoth = Add(L"both", L"Jazz/Rock", 1, L"A", L"B");
    AddLevel(L"Jazz", 1);
    AllowMulti();
    cSelector.ShowCutCatsAsSelected(cBoth);
    ExpectMarked({L"Rock", L"Jazz"}, L"Jazz"); // the first of the cut's own
    EXPECT_EQ(cScreen.Current(lstlvl), L"1");
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Jazz", 1));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ChosenCategoryStaysCurrentIfItContainsTheCut)
{
    AllowMulti();
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    cSelector.ShowCutCatsAsSelected(CutOf(2));
    ExpectMarked({L"Rock"}, L"Rock");
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    ExpectEvents({L"Rock 1", L"Rock 3"});
    cSelector.ShowCutCatsAsSelected(CutOf(3));
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
}

TEST_F(Selector, NOCATIsNotMarkedWithARealCategory)
{
    const auto expectMarked = [&](const std::wstring& sCategories, const std::wstring& sMarked) {
        cSelector.ShowCutCatsAsSelected(Add(sCategories, sCategories, 1, L"A", L"B"));
        ExpectMarked({sMarked}, sMarked);
    };
    AllowMulti();
    expectMarked(L"NOCAT/Rock", L"Rock");
    expectMarked(L"Rock/NOCAT", L"Rock");
    expectMarked(L"NOCAT", L"NOCAT");
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, WithMultiSelectACurrentCategoryNeedNotBeSelected)
{
    AllowMulti();
    ClickCat(L"Rock");
    cSelector.MakeMainCatCurrent(MainCat(L"Jazz"));
    ExpectMarked({L"Rock"}, L"Jazz");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"2", L"ALL"}));
    cSelector.MakeMainCatCurrent(nullptr);
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
}

TEST_F(Selector, NoCutChangesNoMarkAndOneWithoutCategoriesClearsThem)
{
    AllowMulti();
    ClickCat(L"Rock");
    cSelector.ShowCutCatsAsSelected(nullptr);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    EXPECT_EQ(Shown(), Boxes());
    cSelector.ShowCutCatsAsSelected(Add(L"x", L"", 1, L"A", L"B"));
    EXPECT_EQ(cScreen.Selected(lstCat), Texts());
}

TEST_F(Selector, CategoriesAndLevelsOfTheCutThatAreMissingAreReportedEach)
{
    const auto cCut = Add(L"x", L"Polka/Jazz/Rock", 3, L"A", L"B");
    AllowMulti();
    cSelector.ShowCutCatsAsSelected(cCut);
    EXPECT_EQ(Shown(), (Boxes{CriticalBox(L"Error!", L"Unexpected!- main cat Polka\t0\r\n"
                                                     L"Doesn't exist in ShowCutCatsAsSelected!"),
                              CriticalBox(L"Error!", L"Unexpected!- sub cat 3\r\n"
                                                     L"Doesn't exist in ShowCutCatsAsSelected!")}));
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
}

TEST_F(Selector, ClicksWhileACutIsLookedUpAreIgnoredAndWorkAgainAfterwards)
{
    AllowMulti();
    ClickCat(L"Rock");
    cPorts.cMessages.OnShown = [&] {
        cSelector.CatClick();
        cScreen.eFocus.reset();
        cScreen.SetCurrentEntry(lstlvl, 1);
        cSelector.LevelClick();
        EXPECT_EQ(cScreen.eFocus, std::nullopt);
    };
    cSelector.ShowCutCatsAsSelected(Add(L"x", L"Polka", 1, L"A", L"B"));
    ExpectEvents({L"Rock 1"});
    cSelector.LevelClick();
    ExpectEvents({L"Rock 1", L"Rock 3"});
}

TEST_F(Selector, ACutThatCannotBeReadIsSkippedAndLeavesNothingBusy)
{
    CutOf(0)->failing = {"CategoryNames"};
    cSelector.ShowCutCatsAsSelected(CutOf(0));
    EXPECT_EQ(Shown(), Boxes());
    ClickCat(L"Rock");
    ExpectEvents({L"Rock 1"});
}

} // namespace ravlo::test
