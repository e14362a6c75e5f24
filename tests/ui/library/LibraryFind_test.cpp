// SPDX-License-Identifier: MIT
#include "LibraryFakes.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

// Rock 1 has four cuts, Jazz 1 one of them and another one.
class FindTest : public ScreenLibraryTest
{
protected:
    FindTest()
    {
        Cut(L"a.wav", L"Rock", L"Bj\u00F6rk", L"It's Oh So Quiet", L"Post");
        Cut(L"b.wav", L"Rock", L"Queen", L"Radio Ga Ga", L"The Works");
        Cut(L"c.wav", L"Rock/Jazz", L"Queen", L"Bicycle Race", L"Jazz");
        Cut(L"d.wav", L"Rock", L"Motorhead", L"Ace of Spades", L"Ace of Spades");
        Cut(L"e.wav", L"Jazz", L"Ella", L"Summertime", L"Porgy");
        Show();
        ShowNode(L"Rock", 1);
    }
    std::shared_ptr<FakeCut> Cut(const wchar_t* sKey, const wchar_t* sCategories, const wchar_t* sArtist,
                                 const wchar_t* sTitle, const wchar_t* sAlbum)
    {
        const std::shared_ptr<FakeCut> cCut = Add(sKey, sCategories, 1);
        cCut->SetPath(std::wstring(L"C:\\Music\\") + sKey);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        cCut->SetAlbum(sAlbum);
        m_colCuts.push_back(cCut);
        return cCut;
    }
    std::vector<std::shared_ptr<FakeCut>> m_colCuts;
    GridFind& Find() { return cForm.Panes().FindCuts(); }
    TreeFind& FindCategories() { return cForm.Panes().FindCategories(); }
    // Opens the bar and types.
    void FindCuts(const std::wstring& sQuery)
    {
        Find().OpenBar();
        Find().QueryChanged(sQuery);
    }
    void RunSteps()
    {
        while (std::exchange(cCutsBar.lSteps, 0) != 0)
            Find().Step();
    }
    Lines VisibleNodes() const
    {
        Lines colTexts;
        for (const CategoryTreePresenter::Node node : Tree().Visible())
            colTexts.push_back(Tree().At(node).sText);
        return colTexts;
    }
    void NarrowTree(const std::wstring& sQuery)
    {
        FindCategories().OpenBar();
        FindCategories().QueryChanged(sQuery);
    }
};

// ---- cuts

TEST_P(FindTest, CutsAreFoundByArtistTitleAlbumAndPath)
{
    const struct
    {
        const wchar_t* sQuery;
        Keys colFound;
        const wchar_t* sCount;
    } cases[] = {
        {L"bjork", {L"a.wav"}, L"1 of 4"},     {L"queen ga", {L"b.wav"}, L"1 of 4"},
        {L"RACE quee", {L"c.wav"}, L"1 of 4"}, {L"works", {L"b.wav"}, L"1 of 4"},
        {L"music\\d", {L"d.wav"}, L"1 of 4"},  {L"o", {L"a.wav", L"b.wav", L"d.wav"}, L"3 of 4"},
        {L"queen spades", {}, L"0 of 4"},      {L" ", {L"a.wav", L"b.wav", L"c.wav", L"d.wav"}, L""},
    };
    for (const auto& test : cases)
    {
        FindCuts(test.sQuery);
        EXPECT_EQ(RowKeys(), test.colFound) << std::string(test.sQuery, test.sQuery + 2);
        EXPECT_EQ(cCutsBar.sCount, test.sCount);
    }
    EXPECT_TRUE(cCutsBar.bShown);
    EXPECT_FALSE(cView.Busy());
}

TEST_P(FindTest, ClosingTheBarShowsTheWholeListAtItsRow)
{
    cGridView.current = 3;
    FindCuts(L"queen");
    EXPECT_EQ(cGridView.current, std::nullopt);
    Find().GoToList();
    EXPECT_EQ(SelectedKeys(), (Keys{L"b.wav"}));
    Find().CloseBar();
    EXPECT_EQ(RowKeys().size(), 4u);
    EXPECT_EQ(cGridView.current, 1u);
    EXPECT_EQ(SelectedKeys(), (Keys{L"b.wav"}));
    EXPECT_FALSE(cCutsBar.bShown);
    EXPECT_EQ(cCutsBar.sQuery + cCutsBar.sCount, L"");
    EXPECT_EQ(cCutsBar.colFocused, (Lines{L"query", L"list", L"list"}));
}

TEST_P(FindTest, WhatWasSelectedWhileNarrowedStaysSelected)
{
    cGridView.current = 3;
    FindCuts(L"queen");
    EXPECT_EQ(cGridView.current, std::nullopt) << "the current row is hidden";
    Grid().SelectAll();
    EXPECT_TRUE(Find().CloseBar());
    EXPECT_EQ(SelectedKeys(), (Keys{L"b.wav", L"c.wav"}));
    EXPECT_EQ(cGridView.current, 3u);
}

TEST_P(FindTest, HiddenRowsAreSelectedAgainUnlessTheSelectionChanged)
{
    for (const bool bUserSelects : {false, true})
    {
        cGridView.Select({0, 1});
        FindCuts(L"queen");
        FindCuts(L"queen race");
        FindCuts(L"queen");
        EXPECT_EQ(SelectedKeys(), (Keys{L"b.wav"}));
        if (bUserSelects)
            cGridView.Select({1});
        Find().CloseBar();
        EXPECT_EQ(SelectedKeys(), bUserSelects ? (Keys{L"c.wav"}) : (Keys{L"a.wav", L"b.wav"}));
    }
}

TEST_P(FindTest, ClosingTheBarReturnsToTheTopRowWithoutACurrentOne)
{
    cGridView.top = 2;
    FindCuts(L"queen");
    Find().CloseBar();
    EXPECT_EQ(cGridView.top, 2u);
    EXPECT_EQ(cGridView.current, std::nullopt);
}

TEST_P(FindTest, ClosingSaysWhetherTheBarWasOpen)
{
    EXPECT_FALSE(Find().CloseBar() || FindCategories().CloseBar()) << "Esc cancels a cut then";
    FindCuts(L"queen");
    NarrowTree(L"jazz");
    EXPECT_TRUE(Find().CloseBar());
    EXPECT_TRUE(FindCategories().CloseBar());
    EXPECT_FALSE(Find().CloseBar() || FindCategories().CloseBar());
}

TEST_P(FindTest, TheQueryStaysWhenNodesAndNewsAreShown)
{
    FindCuts(L"queen");
    ShowNode(L"Jazz", 1);
    EXPECT_EQ(RowKeys(), (Keys{L"c.wav"}));
    EXPECT_EQ(cCutsBar.sCount, L"1 of 2");
    ShowNode(L"Rock", 1);
    const auto cNew = Cut(L"f.wav", L"Rock", L"Queen", L"Innuendo", L"Innuendo");
    Announce(&DataBaseEvents::CutsAdded, cNew);
    cForm.RequestRefresh();
    EXPECT_EQ(RowKeys(), (Keys{L"b.wav", L"c.wav", L"f.wav"}));
    cNew->SetArtist(L"Freddie");
    Announce(&DataBaseEvents::CutsModified, cNew);
    cForm.RequestRefresh();
    EXPECT_EQ(RowKeys(), (Keys{L"b.wav", L"c.wav"})) << "an edited cut is read again";
    EXPECT_EQ(cCutsBar.sCount, L"2 of 5");
    Remove({0});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a.wav", L"c.wav", L"d.wav", L"f.wav"}));
    EXPECT_EQ(RowKeys(), (Keys{L"c.wav"}));
}

TEST_P(FindTest, LargeListsAreReadInShortSteps)
{
    for (const std::shared_ptr<FakeCut>& cCut : m_colCuts)
        cCut->OnCall = [this](std::string_view sMember) {
            if (sMember == "Artist") // each cut takes 10 ms
                cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + 10);
        };
    FindCuts(L"queen");
    EXPECT_EQ(cCutsBar.sCount, L"2 of 4") << "opened and typed: two steps of two cuts";
    Find().QueryChanged(L"o");
    ShowNode(L"Rock", 0);
    EXPECT_EQ(cCutsBar.sCount, L"3 of 4\u2026") << "known cuts are found at once";
    RunSteps();
    EXPECT_EQ(RowKeys(), (Keys{L"a.wav", L"b.wav", L"d.wav"}));
    EXPECT_EQ(cCutsBar.sCount, L"3 of 4");
    Find().Step();
    EXPECT_EQ(cCutsBar.lSteps, 0) << "nothing more to do";
}

// A host's database gives other objects for the cuts, which are known by their keys only in a level.
TEST_P(FindTest, ARefreshOfANarrowedListKeepsItsPlaceAndSelection)
{
    for (const auto& [sNode, lLevel] : {std::pair{L"Rock", 1}, std::pair{sAllAudio, 0}})
    {
        ShowNode(sNode, lLevel);
        FindCuts(L"queen");
        RunSteps();
        ASSERT_EQ(RowKeys(), (Keys{L"b.wav", L"c.wav"}));
        cGridView.Select({1});
        cGridView.current = 1;
        for (const std::shared_ptr<FakeCut>& cCut : m_colCuts)
            cCut->OnCall = [this](std::string_view sMember) {
                if (sMember == "Artist") // each cut takes 10 ms
                    cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + 10);
            };
        Man().PopulateFromDataBase(cLibrary.cDataBase, Man().AppPath());
        cForm.RequestRefresh();
        const Keys colAtOnce = RowKeys();
        EXPECT_TRUE(lLevel == 0 || colAtOnce == (Keys{L"b.wav", L"c.wav"}));
        cForm.RequestRefresh(); // before all is read
        RunSteps();
        EXPECT_EQ(RowKeys(), (Keys{L"b.wav", L"c.wav"}));
        EXPECT_EQ(SelectedKeys(), (Keys{L"c.wav"}));
        EXPECT_EQ(cGridView.current, 1u);
        for (const std::shared_ptr<FakeCut>& cCut : m_colCuts)
            cCut->OnCall = nullptr;
        Find().CloseBar();
    }
}

TEST_P(FindTest, WhatIsSelectedWhileCutsAreReadStays)
{
    for (const std::shared_ptr<FakeCut>& cCut : m_colCuts)
        cCut->OnCall = [this](std::string_view sMember) {
            if (sMember == "Artist")
                cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + 10);
        };
    ShowNode(sAllAudio, 0);
    FindCuts(L"e");
    RunSteps();
    cGridView.Select({3});
    cForm.RequestRefresh();
    cGridView.Select({0});
    RunSteps();
    EXPECT_EQ(SelectedKeys(), (Keys{L"a.wav"}));
}

TEST_P(FindTest, TheBarOpenedAgainDuringACommandFindsAmongPresentCuts)
{
    FindCuts(L"queen");
    cLibrary.cHost.OnEvent = [this](const std::wstring& sSaid) {
        if (sSaid.find(L"Edit") == std::wstring::npos)
            return;
        Find().CloseBar();
        m_colCuts[0]->SetArtist(L"Queen");
    };
    CutActions().CellDblClick(1, 1);
    FindCuts(L"queen");
    RunSteps();
    EXPECT_EQ(RowKeys(), (Keys{L"a.wav", L"b.wav", L"c.wav"}));
}

TEST_P(FindTest, AHiddenRowIsNotReadBeforeTheBarOpens)
{
    CutInRow(0).calls.clear();
    ShowNode(L"Rock", 1);
    EXPECT_TRUE(CutInRow(0).calls.empty());
}

TEST_P(FindTest, WhatIsTypedDuringACommandIsAppliedAfterwards)
{
    FindCuts(L"");
    cLibrary.cHost.OnEvent = [this](const std::wstring& sSaid) {
        if (sSaid.find(L"Edit") == std::wstring::npos)
            return;
        Find().QueryChanged(L"queen");
        EXPECT_EQ(RowKeys().size(), 4u);
    };
    CutActions().CellDblClick(1, 1);
    RunSteps();
    EXPECT_EQ(RowKeys(), (Keys{L"b.wav", L"c.wav"}));
}

TEST_P(FindTest, ACutThatCannotBeReadIsFoundByItsOtherFields)
{
    CutInRow(1).failing = {"Artist"};
    FindCuts(L"radio");
    EXPECT_EQ(RowKeys(), (Keys{L"b.wav"}));
    FindCuts(L"queen");
    EXPECT_EQ(RowKeys(), (Keys{L"c.wav"}));
    EXPECT_TRUE(Shown().empty());
}

// ---- categories

TEST_P(FindTest, TheTreeShowsCategoriesWhoseTextsMatch)
{
    Add(L"x", L"R\u00F6ck 'n' Roll", 12);
    Man().PopulateFromDataBase(cLibrary.cDataBase, Man().AppPath());
    cForm.ReloadAll();
    SelectNode(L"Jazz", 0);
    const struct
    {
        const wchar_t* sQuery;
        Lines colShown;
        const wchar_t* sCount;
    } cases[] = {
        {L"rock", {sAllAudio, L"Rock", L"R\u00F6ck 'n' Roll"}, L"2 of 3"},
        {L"rock 12", {sAllAudio, L"R\u00F6ck 'n' Roll"}, L"1 of 3"},
        {L"nothing", {sAllAudio}, L"0 of 3"},
        {L"", {sAllAudio, L"Jazz", L"Rock", L"R\u00F6ck 'n' Roll"}, L""},
    };
    for (const auto& test : cases)
    {
        NarrowTree(test.sQuery);
        EXPECT_EQ(VisibleNodes(), test.colShown);
        EXPECT_EQ(cCategoriesBar.sCount, test.sCount);
    }
    EXPECT_EQ(SelectedNode(), CategoryKey(L"Jazz", 0)) << "selected again when it is shown again";
}

TEST_P(FindTest, HiddenTicksStayAndTickingActsOnShownNodes)
{
    cForm.Panes().NodeCheck(Node(L"Jazz", 0), true);
    NarrowTree(L"rock");
    EXPECT_EQ(cView.colStatus.back(), L"2 checked nodes are not shown.|");
    cForm.Do(LibraryCommand::mnuSelectNoneTree);
    EXPECT_EQ(cForm.Panes().CheckedCats(Man()), (Cats{MainCat(L"Jazz"), Level(L"Jazz", 1)}));
    cForm.Do(LibraryCommand::mnuSelectInvertTree);
    FindCategories().CloseBar();
    EXPECT_EQ(cForm.Panes().CheckedCats(Man()).size(), 4u);
    EXPECT_FALSE(cCategoriesBar.bShown);
    EXPECT_EQ(VisibleNodes().size(), 3u);
}

TEST_P(FindTest, QuestionsSayHowManyCheckedNodesAreNotShown)
{
    using enum LibraryCommand;
    cForm.Panes().NodeCheck(Node(L"Jazz", 0), true);
    NarrowTree(L"rock");
    for (const LibraryCommand eCommand : {mnuCatDelete, mnuShuffle, mnuSpread})
    {
        cView.colStatus.clear();
        Answers({BoxAnswer::No});
        cForm.Do(eCommand);
        EXPECT_TRUE(std::count(cView.colStatus.begin(), cView.colStatus.end(),
                               L"2 checked nodes are not shown.|") == 1);
    }
}

TEST_P(FindTest, ANarrowedTreeStaysSoUntilANewNodeNeedsSight)
{
    NarrowTree(L"jazz");
    FindCategories().GoToList();
    EXPECT_EQ(SelectedNode(), CategoryKey(L"Jazz", 0));
    cForm.ReloadAll();
    EXPECT_EQ(VisibleNodes(), (Lines{sAllAudio, L"Jazz"}));
    cPorts.cMessages.Typed = {L"Pop"};
    cForm.Do(LibraryCommand::mnuCatNew);
    EXPECT_EQ(VisibleNodes(), (Lines{sAllAudio, L"Jazz", L"Pop", L"Rock"}));
    EXPECT_EQ(cTreeView.colBrought.back(), Node(L"Pop", 0));
    EXPECT_EQ(cCategoriesBar.sQuery, L"");
    EXPECT_FALSE(cCategoriesBar.bShown);
}

TEST_P(FindTest, GoingToACutClosesTheBarsThatHideIt)
{
    cView.OnModal = [&] {
        FindCuts(L"queen");
        NarrowTree(L"rock");
        cForm.GoTo(L"Rock\t1", TextKey(L"c.wav"));
        EXPECT_EQ(SelectedKeys(), (Keys{L"c.wav"}));
        EXPECT_TRUE(cCutsBar.bShown && cCategoriesBar.bShown) << "they do not hide it";
        cForm.GoTo(L"Jazz\t1", TextKey(L"e.wav"));
        EXPECT_EQ(RowKeys(), (Keys{L"c.wav", L"e.wav"}));
        EXPECT_EQ(SelectedKeys(), (Keys{L"e.wav"}));
        EXPECT_EQ(SelectedNode(), L"Jazz\t1");
        EXPECT_FALSE(cCutsBar.bShown || cCategoriesBar.bShown);
        EXPECT_EQ(cCutsBar.sQuery + cCutsBar.sCount, L"");
        cView.OnModal = nullptr;
    };
    cForm.ShowModalUI();
}

INSTANTIATE_TEST_SUITE_P(Objects, FindTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
