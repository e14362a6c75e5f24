// SPDX-License-Identifier: MIT
#include "ui/rotation/ListSources.h"

#include "support/Raised.h"
#include "support/SchedulerTest.h"

#include <functional>

namespace ravlo::test
{

namespace
{

using Lines = std::vector<std::wstring>;

class ScreenList final : public RotationListView
{
public:
    void SetTitle(const std::wstring& s) override { sTitle = s; }
    void ShowPage(const ListPage& pageIn, std::size_t chosenIn) override
    {
        page = pageIn;
        chosen = chosenIn;
        ++lShown;
    }
    void ShowSentence(const std::wstring& s) override { sSentence = s; }
    void CopyText(const std::wstring& s) override { sCopied = s; }
    void Close() override { bOpen = false; }

    std::wstring sTitle;
    ListPage page;
    std::size_t chosen = 99;
    int lShown = 0;
    std::wstring sSentence;
    std::wstring sCopied;
    bool bOpen = true;
};

ListPage TwoRows()
{
    ListPage page;
    page.sHeading = L"Heading";
    page.columns = {{L"Name"}};
    page.rows = {{{L"a"}, L"About a", false}, {{L"b"}, L"About b", true}};
    page.first = 1;
    return page;
}

// A station with rock 1 and pop 1.
struct ListSourcesTest : testing::Test
{
    ListSourcesTest()
    {
        cLib.cDataBase->AddTree(L"rock 1: a b c | pop 1: d");
        cLib.Populate();
        cLib.cSchedMan->SetRotatesAllowed(true);
    }
    ListPage Explained(const wchar_t* sKey = L"") const
    {
        return ExplanationSource(cLib.cSchedMan, L"rock\t1", *sKey ? TextKey(sKey) : TextKey()).Read();
    }

    RadioPorts cPorts;
    Library cLib{cPorts};
};

} // namespace

TEST(RotationList, OpensWithTheRowOfThePageAndItsSentence)
{
    ScreenList cScreen;
    RotationListPresenter cList(cScreen, {L"Title", TwoRows});
    cList.Open();
    EXPECT_EQ(cScreen.sTitle, L"Title");
    EXPECT_EQ(cScreen.page.sHeading, L"Heading");
    EXPECT_EQ(cScreen.chosen, 1u);
    EXPECT_EQ(cScreen.sSentence, L"About b");
    cList.RowChosen(0);
    EXPECT_EQ(cScreen.sSentence, L"About a");
    cList.RowChosen(2);
    EXPECT_EQ(cScreen.sSentence, L"");
    cList.CopyClick();
    EXPECT_EQ(cScreen.sCopied, TwoRows().Text());
    cList.CloseClick();
    EXPECT_FALSE(cScreen.bOpen);
}

TEST(RotationList, APageThatCannotBeReadSaysWhy)
{
    ScreenList cScreen;
    bool bFails = false;
    const auto read = [&] {
        if (bFails)
            throw RuntimeError(error::InvalidProcedureCall, L"rock 1 no longer exists.");
        return TwoRows();
    };
    RotationListPresenter cList(cScreen, {L"Title", read});
    cList.Open();
    bFails = true;
    cList.Refresh();
    EXPECT_EQ(cScreen.page.sHeading, L"This cannot be shown now: rock 1 no longer exists.");
    EXPECT_TRUE(cScreen.page.rows.empty());
    EXPECT_EQ(cScreen.page.columns.size(), 1u);
    EXPECT_EQ(cScreen.sSentence, L"");
    bFails = false;
    cList.Refresh();
    EXPECT_EQ(cScreen.page.rows.size(), 2u);
}

TEST(RotationList, ARefreshDuringAReadIsIgnored)
{
    ScreenList cScreen;
    RotationListPresenter* pList = nullptr;
    int lReads = 0;
    RotationListPresenter cList(cScreen, {L"Title", [&] {
                                              ++lReads;
                                              pList->Refresh();
                                              return TwoRows();
                                          }});
    pList = &cList;
    cList.Open();
    EXPECT_EQ(lReads, 1);
    EXPECT_EQ(cScreen.lShown, 1);
}

// ---- what the pages are read from

TEST_F(ListSourcesTest, ExplainsThePickThatWouldComeNextAndChangesNothing)
{
    const ListPage page = Explained();
    const std::wstring sNext = page.rows.at(page.first).cells[3];
    EXPECT_EQ(page.rows.size(), 1u);
    EXPECT_EQ(Explained().rows.at(0).cells, page.rows.at(0).cells) << "asked again, the same";
    EXPECT_EQ(cLib.NextCut(L"rock\t1")->Title(), sNext);
}

TEST_F(ListSourcesTest, NamesTheCutThatWasAskedAbout)
{
    const auto last = [](const ListPage& page) {
        return page.sHeading.substr(page.sHeading.rfind(L'\n') + 1);
    };
    const std::wstring sThird = cLib.CutsOf(L"rock")[2]->Key().Text();
    EXPECT_EQ(last(Explained(sThird.c_str())), L"Artist of " + sThird + L" - Title of " + sThird +
                                                   L" is not examined: it is number 3 in the order, and the "
                                                   L"pick examines 1 cut.");
    EXPECT_EQ(last(Explained(L"d")), L"Artist of d - Title of d is not in this level.");
    EXPECT_EQ(last(Explained(L"gone")), L"gone is not in this level.");
}

TEST_F(ListSourcesTest, ForecastsTwentyCutsAtTheRateOfTheLastPlays)
{
    const ListSource source = NextCutsSource(cLib.cSchedMan, L"rock\t1");
    EXPECT_EQ(source.sTitle, L"Next 20 Cuts: rock 1");
    EXPECT_EQ(source.Read().rows.size(), 20u);
    EXPECT_NE(source.Read().sHeading.find(L"one cut after the other"), std::wstring::npos);
    for (int i = 0; i < 4; ++i)
        cLib.cDataBase->Add(L"p" + std::to_wstring(i), L"rock", 1)
            ->SetLastPlayed(cPorts.cClock.Now() - i * 30 / 1440.0);
    cLib.Populate();
    EXPECT_NE(source.Read().sHeading.find(L"asked every 30 min"), std::wstring::npos);
}

TEST_F(ListSourcesTest, ALevelThatIsGoneIsAnError)
{
    for (const ListSource& source :
         {ExplanationSource(cLib.cSchedMan, L"rock\t7", {}), NextCutsSource(cLib.cSchedMan, L"rock\t7")})
        EXPECT_EQ(RaisedBy([&] { source.Read(); }).sDescription, L"rock 7 no longer exists.");
    const auto cFresh = std::make_shared<clsSchedMan>(cLib.cMod);
    EXPECT_EQ(NumberRaisedBy([&] { NextCutsSource(cFresh, L"rock\t1").Read(); }), error::ObjectNotSet);
}

} // namespace ravlo::test
