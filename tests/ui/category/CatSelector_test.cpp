// SPDX-License-Identifier: MIT
#include "ui/category/CategoryTest.h"

namespace ravlo::test
{

namespace
{

// A selector with the station's categories, whose events are written down: "Rock 1", "Rock 0" for all levels,
// "openers" and "all cuts".
struct Selector : CategoryTest
{
    Selector()
    {
        cSelector.CatChanged = [this](std::shared_ptr<clsCat>& cCat) {
            colEvents.push_back(cCat ? cCat->CatName() + L" " + std::to_wstring(cCat->CatLevel())
                                     : L"a level that is gone");
        };
        cSelector.OpenerChanged = [this](bool bOpener) {
            colEvents.push_back(bOpener ? L"openers" : L"all cuts");
        };
        cSelector.SetSchedMan(cSchedMan);
        cSelector.SetColMainCats(cSchedMan->colMainCats());
    }
    void AllowMulti() { cSelector.SetAllowMultiCatSelect(true); }

    Texts colEvents;
};

} // namespace

// ---- filling ----

TEST_F(Selector, ListsTheMainCategoriesInTheirOrder)
{
    EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
}

TEST_F(Selector, TheFirstCategoryIsCurrentAtFirstButNotChosen)
{
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_EQ(cScreen.Selected(lstCat), Texts());
    EXPECT_EQ(cSelector.SelectedMainCat(), nullptr);
    EXPECT_EQ(cSelector.SelectedSubCat(), nullptr);
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    EXPECT_EQ(colEvents, Texts());
}

TEST_F(Selector, WithoutCategoriesAllListsAreEmpty)
{
    cSelector.SetColMainCats(nullptr);
    EXPECT_EQ(cScreen.Entries(lstCat), Texts());
    EXPECT_EQ(cScreen.Current(lstCat), L"none");
    cSelector.CatClick();
    EXPECT_EQ(colEvents, Texts());
}

TEST_F(Selector, SettingTheCategoriesClearsTheSelections)
{
    ClickCat(L"Jazz");
    cSelector.SetColMainCats(cSchedMan->colMainCats());
    EXPECT_EQ(cScreen.Selected(lstCat), Texts());
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
}

TEST_F(Selector, AClickOnACategoryShowsItsLevelsAndChoosesTheFirst)
{
    ClickCat(L"Rock");
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"3", L"ALL"}));
    EXPECT_EQ(cScreen.Current(lstlvl), L"1");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Rock"));
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 1));
    EXPECT_EQ(colEvents, (Texts{L"Rock 1"}));
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core"}));
    EXPECT_EQ(cScreen.eFocus, std::nullopt); // the focus stays where the user clicked
}

TEST_F(Selector, OneClickFillsTheSongsOnce)
{
    ClickCat(L"Rock");
    EXPECT_EQ(cScreen.lSongFillings, 1);
}

TEST_F(Selector, AMainCategoryWithoutLevelsHasNoALLAndIsChosenItself)
{
    const auto cEmpty = std::make_shared<clsCat>(cMod, L"Empty", 0);
    cSchedMan->colMainCats()->Add(TextKey(CategoryKey(L"Empty", 0)), cEmpty);
    cSelector.SetColMainCats(cSchedMan->colMainCats());
    ClickCat(L"Empty");
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    EXPECT_EQ(colEvents, (Texts{L"Empty 0"}));
    EXPECT_EQ(cScreen.sMatch, L"No items in this category");
}

// ---- levels ----

TEST_F(Selector, ALevelIsChosenOnceAndTakesTheFocus)
{
    ClickCat(L"Rock");
    ClickLevel(L"3");
    ClickLevel(L"3");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3"}));
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 3));
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Mango - Stone"}));
    EXPECT_EQ(cScreen.eFocus, lstlvl);
}

TEST_F(Selector, AHiddenLevelListDoesNotTakeTheFocus)
{
    ClickCat(L"Rock");
    cScreen.bLevelsHidden = true;
    ClickLevel(L"3");
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
}

TEST_F(Selector, ALLChoosesTheMainCategoryItselfOnce)
{
    ClickCat(L"Rock");
    ClickLevel(L"ALL");
    ClickLevel(L"ALL");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 0"}));
    EXPECT_EQ(cSelector.SelectedSubCat(), MainCat(L"Rock"));
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core", L"Mango - Stone"}));
}

TEST_F(Selector, LevelThatIsGoneIsNoneAndReportedOnce)
{
    ClickCat(L"Rock");
    MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
    ClickLevel(L"3");
    ClickLevel(L"3");
    EXPECT_EQ(cSelector.SelectedSubCat(), nullptr);
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"a level that is gone"}));
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

TEST_F(Selector, OnlyOneSongListIsVisible)
{
    EXPECT_FALSE(cScreen.Visible(lstsongs0));
    EXPECT_TRUE(cScreen.Visible(lstsongs1));
    ClickCat(L"Rock");
    ClickSorted(true);
    EXPECT_TRUE(cScreen.Visible(lstsongs0));
    EXPECT_FALSE(cScreen.Visible(lstsongs1));
    EXPECT_EQ(cScreen.Entries(lstsongs0), (Texts{L"Apple - Core", L"Zebra - Stripes"}));
    EXPECT_EQ(cScreen.Entries(lstsongs1), Texts());
    ClickSorted(false);
    EXPECT_FALSE(cScreen.Visible(lstsongs0));
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core"}));
}

TEST_F(Selector, SelectedCutsComeInTheVisibleListsOrder)
{
    ClickCat(L"Rock");
    cScreen.lists[lstsongs1].lSelected = {0, 1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(0), CutOf(1)}));
    ClickSorted(true);
    EXPECT_EQ(cSelector.SelectedCuts(), Cuts());
    cScreen.lists[lstsongs0].lSelected = {0, 1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(1), CutOf(0)}));
}

TEST_F(Selector, CutsOfTheSameArtistAndTitleAreBothListedAndMeanTheFirst)
{
    bool bNew = false;
    const auto cTwin = Add(L"twin", L"Jazz", 2, L"COOL", L"cat");
    Level(L"Jazz", 2)->AddCut(cTwin, bNew);
    ClickCat(L"Jazz");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Cool - Cat", L"COOL - cat"}));
    cScreen.lists[lstsongs1].lSelected = {1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(3)}));
}

TEST_F(Selector, ACutThatCannotBeReadHidesNoOther)
{
    CutOf(0)->failing = {"Title"};
    ClickCat(L"Rock");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Apple - Core"}));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ALLListsEachCutOfItsLevelsOnceAndAsksNoneForItsKey)
{
    bool bNew = false;
    Level(L"Rock", 3)->AddCut(CutOf(1), bNew); // in two levels
    for (std::size_t i = 0; i < 3; ++i)
        CutOf(i)->failing = {"Key"};
    CutOf(0)->failing.insert("Title");
    ClickCat(L"Rock");
    ClickLevel(L"ALL");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Apple - Core", L"Mango - Stone"}));
    cScreen.lists[lstsongs1].lSelected = {1};
    EXPECT_EQ(cSelector.SelectedCuts(), (Cuts{CutOf(2)}));
}

TEST_F(Selector, ALLIsListedWholeWhenItsLevelsChangeWhileItIsRead)
{
    ClickCat(L"Rock");
    CutOf(0)->OnCall = [&](const std::string&) {
        CutOf(0)->OnCall = nullptr;
        MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 1));
    };
    ClickLevel(L"ALL");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core", L"Mango - Stone"}));
}

TEST_F(Selector, ALevelThatShrinksWhileItIsReadIsReadToItsNewEnd)
{
    CutOf(0)->OnCall = [&](const std::string&) {
        CutOf(0)->OnCall = nullptr;
        Level(L"Rock", 1)->RemoveCut(CutOf(1));
    };
    ClickCat(L"Rock");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Zebra - Stripes"}));
}

// ---- the opener filter ----

TEST_F(Selector, TheOpenerFilterListsOpenersOnlyAndSaysSo)
{
    ClickCat(L"Rock");
    ClickOpener(true);
    EXPECT_TRUE(cSelector.Opener());
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Apple - Core"}));
    ClickOpener(false);
    EXPECT_FALSE(cSelector.Opener());
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"openers", L"all cuts"}));
}

TEST_F(Selector, SettingTheOpenerFilterInCodeRunsItsClick)
{
    ClickCat(L"Rock");
    cSelector.SetOpener(true);
    EXPECT_TRUE(cScreen.Checked(chkOpener));
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Apple - Core"}));
    cSelector.SetOpener(true);
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"openers"}));
}

TEST_F(Selector, AnOpenerClickDuringItsOwnEventIsIgnored)
{
    int lEvents = 0;
    cSelector.OpenerChanged = [&](bool) {
        ++lEvents;
        ClickOpener(false);
    };
    ClickOpener(true);
    EXPECT_EQ(lEvents, 1);
    EXPECT_TRUE(cSelector.Opener());
}

// ---- choosing in code ----

TEST_F(Selector, SettingTheMainCategoryRunsItsClick)
{
    cSelector.SetSelectedMainCat(MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
    EXPECT_EQ(cScreen.Current(lstlvl), L"2");
    EXPECT_EQ(colEvents, (Texts{L"Jazz 2"}));
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
}

TEST_F(Selector, TheMainCategoryIsFoundByItsNameWithoutRegardToCase)
{
    cSelector.SetSelectedMainCat(std::make_shared<clsCat>(cMod, L"jAZZ", 0));
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
}

TEST_F(Selector, NoMainCategoryAndAnUnknownOneLeaveTheOldChoice)
{
    cSelector.SetSelectedMainCat(MainCat(L"Jazz"));
    cSelector.SetSelectedMainCat(nullptr);
    cSelector.SetSelectedMainCat(std::make_shared<clsCat>(cMod, L"Polka", 0));
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(colEvents, (Texts{L"Jazz 2"}));
}

TEST_F(Selector, SettingTheLevelChoosesItAndNoneChoosesALL)
{
    cSelector.SetSelectedSubCat(nullptr);
    EXPECT_EQ(colEvents, Texts()); // nothing to choose from
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    cSelector.SetSelectedSubCat(Level(L"Rock", 3));
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 3));
    cSelector.SetSelectedSubCat(nullptr);
    EXPECT_EQ(cScreen.Current(lstlvl), L"ALL");
    EXPECT_EQ(cSelector.SelectedSubCat(), MainCat(L"Rock"));
    cSelector.SetSelectedSubCat(std::make_shared<clsCat>(cMod, L"Rock", 99));
    EXPECT_EQ(cScreen.Current(lstlvl), L"ALL");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3", L"Rock 0"}));
    EXPECT_EQ(cScreen.eFocus, std::nullopt);
}

TEST_F(Selector, ACategoryClickDuringAChangeIsIgnored)
{
    int lEvents = 0;
    cSelector.CatChanged = [&](std::shared_ptr<clsCat>&) {
        ++lEvents;
        ClickCat(L"Jazz");
    };
    ClickCat(L"Rock");
    EXPECT_EQ(lEvents, 1);
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Rock"));
}

TEST_F(Selector, RefillingTheListsChangesNoChoice)
{
    ClickCat(L"Jazz");
    cSelector.PopulateLists();
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"2", L"ALL"}));
    EXPECT_EQ(colEvents, (Texts{L"Jazz 2"}));
}

// ---- refreshing ----

TEST_F(Selector, ARefreshKeepsWhatIsChosenAndSaysNothing)
{
    ClickCat(L"Rock");
    ClickLevel(L"3");
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    EXPECT_EQ(cScreen.Entries(lstsongs1), (Texts{L"Mango - Stone"}));
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3"}));
}

TEST_F(Selector, ARefreshKeepsALLWhenALevelHasCome)
{
    ClickCat(L"Rock");
    ClickLevel(L"ALL");
    MainCat(L"Rock")->AddSubCat(std::make_shared<clsCat>(cMod, L"Rock", 2));
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"2", L"3", L"ALL"}));
    EXPECT_EQ(cScreen.Current(lstlvl), L"ALL");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 0"}));
}

TEST_F(Selector, ARefreshAfterTheLevelHasGoneChoosesTheFirst)
{
    ClickCat(L"Rock");
    ClickLevel(L"3");
    MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 1));
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3", L"Rock 1"}));
}

TEST_F(Selector, ARefreshAfterTheCategoryHasGoneChoosesNothing)
{
    ClickCat(L"Jazz");
    cSchedMan->colMainCats()->Remove(CategoryKey(L"Jazz", 0));
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cSelector.SelectedMainCat(), nullptr);
    EXPECT_EQ(cSelector.SelectedSubCat(), nullptr);
    EXPECT_EQ(cScreen.Entries(lstlvl), Texts());
    EXPECT_EQ(cScreen.Entries(lstsongs1), Texts());
    EXPECT_EQ(colEvents, (Texts{L"Jazz 2"}));
}

TEST_F(Selector, ARefreshFindsTheChoiceInANewTree)
{
    ClickCat(L"Rock");
    ClickLevel(L"3");
    cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Rock"));
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 3));
    EXPECT_EQ(colEvents.back(), L"Rock 3"); // another object
}

// ---- one category or several ----

TEST_F(Selector, WithoutMultiSelectOnlyTheCurrentCategoryStaysSelected)
{
    ClickCat(L"Rock");
    ClickCat(L"Jazz", true);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
}

TEST_F(Selector, WithMultiSelectSeveralStaySelectedAndTheCurrentOneIsShown)
{
    AllowMulti();
    ClickCat(L"Rock");
    ClickCat(L"Jazz", true);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock", L"Jazz"}));
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
}

TEST_F(Selector, NOCATCannotStaySelectedBesideARealCategory)
{
    AllowMulti();
    ClickCat(L"NOCAT");
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"NOCAT"}));
    ClickCat(L"Rock", true);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    ClickCat(L"NOCAT", true);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
}

TEST_F(Selector, WithMultiSelectTheCutsCannotBePicked)
{
    ClickCat(L"Rock");
    AllowMulti();
    for (const SelectorControl eControl : {lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
        EXPECT_FALSE(cScreen.enabled[eControl]);
    ClickCat(L"Jazz");
    EXPECT_EQ(cScreen.Entries(lstsongs1),
              (Texts{L"Zebra - Stripes", L"Apple - Core"})); // not filled any more
    cSelector.SetAllowMultiCatSelect(false);
    for (const SelectorControl eControl : {lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
        EXPECT_TRUE(cScreen.enabled[eControl]);
}

TEST_F(Selector, DisablingTheControlsShowsTheHourglass)
{
    cSelector.EnableUI(false);
    EXPECT_TRUE(cScreen.bHourglass);
    for (const SelectorControl eControl :
         {lstCat, lstlvl, lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
        EXPECT_FALSE(cScreen.enabled[eControl]);
    cSelector.EnableUI(true);
    EXPECT_FALSE(cScreen.bHourglass);
    for (const SelectorControl eControl :
         {lstCat, lstlvl, lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
        EXPECT_TRUE(cScreen.enabled[eControl]);
}

TEST_F(Selector, EnablingTheControlsLeavesTheSongsDisabledWithMultiSelect)
{
    AllowMulti();
    cSelector.EnableUI(false);
    cSelector.EnableUI(true);
    EXPECT_TRUE(cScreen.enabled[lstCat]);
    EXPECT_TRUE(cScreen.enabled[lstlvl]);
    for (const SelectorControl eControl : {lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch})
        EXPECT_FALSE(cScreen.enabled[eControl]);
}

TEST_F(Selector, TabFromTheLastControlWrapsToTheFirst)
{
    cSelector.SortedSongsTab();
    EXPECT_EQ(cScreen.eFocus, lstCat);
}

// ---- the selected names ----

TEST_F(Selector, TheNamesOfTheSelectedCategoriesComeTopToBottom)
{
    AllowMulti();
    ClickCat(L"Jazz");
    ClickCat(L"Rock", true);
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), (Texts{L"Rock", L"Jazz"}));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ALLIsRefusedWhenSeveralCategoriesMayBeSelected)
{
    const Boxes refused{OkBox(BoxIcon::Exclamation, L"'ALL' is Not Valid",
                              L"Choose a level other than 'ALL' to be able to multi-select categories")};
    AllowMulti();
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), Texts()); // no level is chosen at all
    EXPECT_EQ(Shown(), refused);
    Shown().clear();
    ClickCat(L"Rock");
    ClickLevel(L"ALL");
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), Texts());
    EXPECT_EQ(Shown(), refused);
}

TEST_F(Selector, WithoutMultiSelectThereAreNoSelectedNames)
{
    ClickCat(L"Rock");
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), Texts());
    EXPECT_EQ(Shown(), Boxes());
}

// ---- the categories of a cut ----

TEST_F(Selector, TheCategoriesAndTheLevelOfACutAreMarked)
{
    const auto cBoth = Add(L"both", L"Jazz/Rock", 1, L"A", L"B");
    MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cMod, L"Jazz", 1));
    AllowMulti();
    cSelector.ShowCutCatsAsSelected(cBoth);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock", L"Jazz"}));
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz"); // the first of the cut's own
    EXPECT_EQ(cScreen.Current(lstlvl), L"1");
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Jazz", 1));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, ChosenCategoryThatContainsTheCutStaysCurrent)
{
    AllowMulti();
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    cSelector.ShowCutCatsAsSelected(CutOf(2));
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3"}));
}

TEST_F(Selector, ACategoryThatDoesNotHoldTheCutIsNotLeftSelected)
{
    AllowMulti();
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    cSelector.ShowCutCatsAsSelected(CutOf(3));
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
}

TEST_F(Selector, NoCatIsNotMarkedBesideARealCategory)
{
    const struct
    {
        const wchar_t* sCategories;
        Texts marked;
        const wchar_t* sCurrent;
    } table[] = {{L"NOCAT/Rock", {L"Rock"}, L"Rock"},
                 {L"Rock/NOCAT", {L"Rock"}, L"Rock"},
                 {L"NOCAT", {L"NOCAT"}, L"NOCAT"}};
    AllowMulti();
    for (const auto& row : table)
    {
        cSelector.ShowCutCatsAsSelected(Add(row.sCategories, row.sCategories, 1, L"A", L"B"));
        EXPECT_EQ(cScreen.Selected(lstCat), row.marked);
        EXPECT_EQ(cScreen.Current(lstCat), row.sCurrent);
    }
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, WithMultiSelectACurrentCategoryNeedNotBeSelected)
{
    AllowMulti();
    ClickCat(L"Rock");
    cSelector.MakeMainCatCurrent(MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"2", L"ALL"}));
    cSelector.MakeMainCatCurrent(nullptr);
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
}

TEST_F(Selector, NoCutMarksNothing)
{
    AllowMulti();
    ClickCat(L"Rock");
    cSelector.ShowCutCatsAsSelected(nullptr);
    EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Selector, MarkingNeedsTheManager)
{
    cSelector.SetSchedMan(nullptr);
    cSelector.ShowCutCatsAsSelected(CutOf(0));
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                    L"SchedMan needs to be set in CatSelector first!")}));
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
    EXPECT_EQ(colEvents, (Texts{L"Rock 1"}));
    cSelector.LevelClick();
    EXPECT_EQ(colEvents, (Texts{L"Rock 1", L"Rock 3"}));
}

TEST_F(Selector, ACutThatCannotBeReadIsPassedOverAndLeavesNothingBusy)
{
    CutOf(0)->failing = {"CategoryNames"};
    cSelector.ShowCutCatsAsSelected(CutOf(0));
    EXPECT_EQ(Shown(), Boxes());
    ClickCat(L"Rock");
    EXPECT_EQ(colEvents, (Texts{L"Rock 1"}));
}

TEST_F(Selector, ACutWithoutCategoriesTakesEveryMarkAway)
{
    AllowMulti();
    ClickCat(L"Rock");
    cSelector.ShowCutCatsAsSelected(Add(L"x", L"", 1, L"A", L"B"));
    EXPECT_EQ(cScreen.Selected(lstCat), Texts());
}

} // namespace ravlo::test
