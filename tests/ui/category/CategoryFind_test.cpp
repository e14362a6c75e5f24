// SPDX-License-Identifier: MIT
#include "ui/category/CategoryFind.h"

#include "ui/category/CategoryTest.h"

namespace ravlo::test
{

namespace
{

// A bar on a fake screen.
struct ScreenBar final : FindBarView
{
    void ShowBar(bool bShow) override { bShown = bShow; }
    void SetQuery(const std::wstring& sText) override { sQuery = sText; }
    void SetCount(const std::wstring& sText) override { sCount = sText; }
    void FocusQuery() override { bInList = false; }
    void FocusList() override { bInList = true; }
    void AskForStep() override {}

    bool bShown = false;
    bool bInList = true;
    std::wstring sQuery;
    std::wstring sCount;
};

// The station's categories, "Zo\u00EB" and "Abba Gold" after them.
struct CategoryFindTest : CategoryTest
{
    CategoryFindTest()
    {
        Add(L"z", L"Zo\u00EB", 1, L"Z", L"Z");
        Add(L"g", L"Abba Gold", 1, L"G", L"G");
        cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
        cSelector.SetSchedMan(cSchedMan);
        cSelector.SetColMainCats(cSchedMan->colMainCats());
        colAll = cScreen.Entries(lstCat);
    }
    void Narrow(const std::wstring& sQuery)
    {
        cFind.OpenBar();
        cFind.QueryChanged(sQuery);
    }

    ScreenBar cBar;
    CategoryFind cFind{cSelector, cBar};
    Texts colAll;
};

} // namespace

TEST_F(CategoryFindTest, TheListIsNarrowedWhileTheChoiceStays)
{
    ClickCat(L"Jazz");
    ClickLevel(L"2");
    const struct
    {
        const wchar_t* sQuery;
        Texts colShown;
        const wchar_t* sCount;
    } cases[] = {
        {L"zoe", {L"Zo\u00EB"}, L"1 of 5, 1 selected not shown"},
        {L"A", {L"Abba Gold", L"Jazz", L"NOCAT"}, L"3 of 5"},
        {L"gold ab", {L"Abba Gold"}, L"1 of 5, 1 selected not shown"},
        {L"x", {}, L"0 of 5, 1 selected not shown"},
    };
    for (const auto& test : cases)
    {
        Narrow(test.sQuery);
        Texts colShown = cScreen.Entries(lstCat);
        std::sort(colShown.begin(), colShown.end());
        EXPECT_EQ(colShown, test.colShown);
        EXPECT_EQ(cBar.sCount, test.sCount);
        EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Jazz", 2));
    }
    cFind.CloseBar();
    EXPECT_EQ(cScreen.Entries(lstCat), colAll);
    EXPECT_EQ(cScreen.Selected(lstCat), Texts{L"Jazz"});
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
    EXPECT_EQ(cBar.sQuery + cBar.sCount, L"");
    EXPECT_TRUE(!cBar.bShown && cBar.bInList);
}

TEST_F(CategoryFindTest, SelectionsGatheredBySeveralSearchesCountTogether)
{
    cSelector.SetAllowMultiCatSelect(true);
    ClickCat(L"Rock");
    ClickLevel(L"1");
    Narrow(L"jazz");
    ClickCat(L"Jazz", true);
    Narrow(L"abba");
    EXPECT_EQ(cBar.sCount, L"1 of 5, 2 selected not shown");
    Texts colExpected;
    for (const std::wstring& sName : colAll)
        if (sName == L"Rock" || sName == L"Jazz")
            colExpected.push_back(sName);
    EXPECT_EQ(cSelector.colSelectedSubCatNames(), colExpected);
    cSelector.RefreshLists(cSchedMan->colMainCats());
    EXPECT_EQ(cScreen.Entries(lstCat), Texts{L"Abba Gold"}) << "still narrowed";
    EXPECT_EQ(cSelector.HiddenSelected(), 2u);
    cFind.QueryChanged(L"");
    EXPECT_TRUE(cBar.bShown);
    EXPECT_EQ(cScreen.Selected(lstCat), colExpected);
}

TEST_F(CategoryFindTest, HiddenNocatGivesWayToARealCategory)
{
    cSelector.SetAllowMultiCatSelect(true);
    ClickCat(L"NOCAT");
    Narrow(L"jazz");
    ClickCat(L"Jazz", true);
    cFind.CloseBar();
    EXPECT_EQ(cScreen.Selected(lstCat), Texts{L"Jazz"});
}

TEST_F(CategoryFindTest, AHiddenCategoryThatIsToBeShownEndsTheSearch)
{
    Narrow(L"jazz");
    cSelector.SetSelectedMainCat(MainCat(L"Rock"));
    EXPECT_EQ(cScreen.Entries(lstCat), colAll);
    EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
    EXPECT_FALSE(cBar.bShown);
    Narrow(L"zoe");
    ClickCat(L"Zo\u00EB");
    cFind.CloseBar();
    EXPECT_EQ(cScreen.Selected(lstCat), Texts{L"Zo\u00EB"});
}

TEST_F(CategoryFindTest, EnterChoosesTheFirstFoundCategory)
{
    Narrow(L"zoe");
    cFind.GoToList();
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Zo\u00EB"));
    EXPECT_TRUE(cBar.bInList);
}

TEST_F(CategoryFindTest, SortingByNameIsRememberedAndKeepsTheChoice)
{
    ClickCat(L"Jazz");
    cSelector.SetSortByName(true);
    EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Abba Gold", L"Jazz", L"NOCAT", L"Rock", L"Zo\u00EB"}));
    EXPECT_EQ(cScreen.Selected(lstCat), Texts{L"Jazz"});
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
    ScreenSelector cOther;
    CatSelectorPresenter cNext(cOther, cMod);
    cNext.SetColMainCats(cSchedMan->colMainCats());
    EXPECT_EQ(cOther.Entries(lstCat), cScreen.Entries(lstCat));
    cNext.SetSortByName(false);
    EXPECT_EQ(cOther.Entries(lstCat), colAll);
}

TEST_F(CategoryFindTest, TypingGoesToTheEntryThatBeginsWithIt)
{
    ClickCat(L"Rock");
    cSelector.SetSortByName(true);
    const struct
    {
        std::uint32_t lWait;
        wchar_t cTyped;
        const wchar_t* sCurrent;
    } steps[] = {{0, L'z', L"Zo\u00EB"},  {10, L'O', L"Zo\u00EB"},    {10, L'e', L"Zo\u00EB"},
                 {2000, L'n', L"NOCAT"},  {2000, L'a', L"Abba Gold"}, {10, L'b', L"Abba Gold"},
                 {10, L'x', L"Abba Gold"}};
    for (const auto& step : steps)
    {
        cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + step.lWait);
        EXPECT_TRUE(cSelector.TypeInList(lstCat, step.cTyped));
        EXPECT_EQ(cScreen.Selected(lstCat), Texts{step.sCurrent});
        EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(step.sCurrent));
    }
    ClickCat(L"Rock");
    EXPECT_TRUE(cSelector.TypeInList(lstlvl, L'3'));
    EXPECT_EQ(cSelector.SelectedSubCat(), Level(L"Rock", 3));
    EXPECT_TRUE(cSelector.TypeInList(lstsongs1, L'm'));
    EXPECT_EQ(cScreen.Selected(lstsongs1), Texts{L"Mango - Stone"});
    EXPECT_FALSE(cSelector.TypeInList(lstCat, L' ')) << "a blank selects";
}

TEST_F(CategoryFindTest, TypingKeepsTheSelectionOfSeveralCategories)
{
    cSelector.SetAllowMultiCatSelect(true);
    ClickCat(L"Rock");
    Narrow(L"a");
    ClickCat(L"Abba Gold", true);
    EXPECT_TRUE(cSelector.TypeInList(lstCat, L'j'));
    EXPECT_EQ(cScreen.Current(lstCat), L"Jazz");
    EXPECT_EQ(cSelector.SelectedMainCat(), MainCat(L"Jazz"));
    cFind.CloseBar();
    Texts colSelected = cScreen.Selected(lstCat);
    std::sort(colSelected.begin(), colSelected.end());
    EXPECT_EQ(colSelected, (Texts{L"Abba Gold", L"Rock"}));
    cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + 2000);
    EXPECT_TRUE(cSelector.TypeInList(lstCat, L'j'));
    EXPECT_TRUE(cSelector.TypeInList(lstCat, L' ')) << "no entry begins with that";
    EXPECT_EQ(cScreen.Selected(lstCat).size(), 3u);
    EXPECT_TRUE(cSelector.TypeInList(lstCat, L' '));
    EXPECT_EQ(cScreen.Selected(lstCat).size(), 2u);
}

} // namespace ravlo::test
