// SPDX-License-Identifier: MIT
#include "scheduler/SpreadOrders.h"

#include "base/Utf8.h"
#include "rotation/RotationOrder.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <numeric>

namespace ravlo::test
{
namespace
{

// Rock 1 holds four cuts by Ash, then four by others; Rock 2 and Pop 1 two of each.
class SpreadCategoriesTest : public StationTest
{
protected:
    SpreadCategoriesTest()
    {
        AddCuts(L"Rock", 1, 4);
        AddCuts(L"Rock", 2, 2);
        AddCuts(L"Pop", 1, 2);
        Start();
    }
    void AddCuts(const std::wstring& sName, std::int32_t lLevel, std::size_t count)
    {
        const std::wstring sLevel = sName.substr(0, 1) + std::to_wstring(lLevel);
        for (const std::shared_ptr<Cut>& cCut : AddMany(count, sLevel + L"ash", sName, lLevel))
            cCut->SetArtist(L"Ash");
        AddMany(count, sLevel + L"other", sName, lLevel);
    }
    void Spread(const Cats& colCats, bool bConfirmFirst = false)
    {
        cLib.cSchedMan->SpreadCategories(colCats, bConfirmFirst);
    }
    // "AoAo": which of a level's cuts are by Ash.
    std::wstring Pattern(const std::wstring& sName, std::int32_t lLevel) const
    {
        std::wstring sPattern;
        for (const std::wstring& sKey : Order(sName, lLevel))
            sPattern += sKey.find(L"ash") == std::wstring::npos ? L'o' : L'A';
        return sPattern;
    }
};

TEST_F(SpreadCategoriesTest, SpreadsTheLevelsGivenAndSavesOnce)
{
    const std::int64_t total = TotalOf(L"Rock", 1);
    Spread({Level(L"Rock", 1), MainCat(L"Rock"), Level(L"Rock", 2)});
    EXPECT_EQ(Pattern(L"Rock", 1), L"AoAoAoAo");
    EXPECT_EQ(Pattern(L"Rock", 2), L"AoAo");
    EXPECT_EQ(Pattern(L"Pop", 1), L"AAoo");
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(said, SaveSaid(L"Rock", 12));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(TotalOf(L"Rock", 1), total);
    cLib.Restart();
    EXPECT_EQ(Pattern(L"Rock", 1), L"AoAoAoAo");
}

TEST_F(SpreadCategoriesTest, AskedFirstOnlyYesGoesOn)
{
    for (const BoxAnswer eAnswer : {BoxAnswer::No, BoxAnswer::None, BoxAnswer::Yes})
    {
        Forget();
        cPorts.cMessages.Answers = {eAnswer};
        Spread({MainCat(L"Rock"), Level(L"Pop", 1)}, true);
        EXPECT_EQ(boxes, (Boxes{{BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Spread Categories",
                                 L"Are you sure you want to spread the cuts in: Rock, Pop 1?"}}));
        EXPECT_EQ(Pattern(L"Pop", 1), eAnswer == BoxAnswer::Yes ? L"AoAo" : L"AAoo");
        EXPECT_EQ(Written(), eAnswer == BoxAnswer::Yes ? (Lines{L"Rock", L"Pop"}) : Lines());
    }
}

TEST_F(SpreadCategoriesTest, LongestRestedFirstByTheTimeOfThePlay)
{
    CutOf(L"P1ash1")->SetLastPlayed(cPorts.cClock.Now());
    Spread({Level(L"Pop", 1)});
    EXPECT_EQ(Order(L"Pop", 1)[0], L"P1ash2");
    EXPECT_EQ(Order(L"Pop", 1)[2], L"P1ash1");
}

TEST_F(SpreadCategoriesTest, DealsByTheNamesInForce)
{
    for (const wchar_t* sKey : {L"R1other1", L"R1other2", L"R1other3"})
        CutOf(sKey)->SetArtist(std::wstring(L"feat. ") + sKey);
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Artists.csv",
                      "credited,counts_as\nfeat. R1other1,Ash\nfeat. R1other2,ASH\n");
    CutOf(L"R1other3")->SetTitle(L"Live (feat. Ash)");
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Rotation.cfg", "FeaturedArtists=1\n");
    cPorts.cClock.Advance(1'000);
    Spread({Level(L"Rock", 1)});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"R1ash1", L"R1other4", L"R1ash2", L"R1ash3", L"R1ash4", L"R1other1",
                                       L"R1other2", L"R1other3"}))
        << "all but one count for Ash";
}

TEST_F(SpreadCategoriesTest, ACutThatCannotBeReadKeepsItsLevelAsItWas)
{
    CutOf(L"R1ash3")->failing = {"Artist"};
    const Keys colBefore = Order(L"Rock", 1);
    Spread({MainCat(L"Rock"), MainCat(L"Pop")});
    EXPECT_EQ(Order(L"Rock", 1), colBefore);
    EXPECT_EQ(Pattern(L"Rock", 2), L"AoAo");
    EXPECT_EQ(Pattern(L"Pop", 1), L"AoAo");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes,
              (Boxes{OkBox(BoxIcon::Critical, L"Error in SpreadCategories [cSchedMan]", CriticalText(91))}));
}

TEST_F(SpreadCategoriesTest, CutsThatLeaveOrJoinWhileCutsAreReadStayConsistent)
{
    bool bDone = false;
    CutOf(L"P1ash2")->OnCall = [&](std::string_view sMember) {
        if (sMember != "Artist" || std::exchange(bDone, true))
            return;
        Removed({CutOf(L"P1other1")});
        Added({Add(L"P1new", L"Pop", 1)});
    };
    Spread({Level(L"Pop", 1)});
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"P1ash1", L"P1ash2", L"P1other2", L"P1new"}));
}

TEST(RandomOrder, ManagerSeedsTheGeneratorForEachOrder)
{
    RadioPorts cPorts;
    Library cLib(cPorts);
    EXPECT_EQ(cLib.cSchedMan->RandomOrderOf(0), std::vector<std::size_t>());
    std::vector<std::size_t> colOrder = cLib.cSchedMan->RandomOrderOf(30);
    EXPECT_EQ(cPorts.cRandom.lRandomized, 2);
    EXPECT_FALSE(std::is_sorted(colOrder.begin(), colOrder.end()));
    std::sort(colOrder.begin(), colOrder.end());
    std::vector<std::size_t> colAll(30);
    std::iota(colAll.begin(), colAll.end(), std::size_t{0});
    EXPECT_EQ(colOrder, colAll);
}

// The trial is of Pop 1 as the class sets it up.
class SpreadTrialTest : public SpreadCategoriesTest
{
protected:
    SpreadTrialTest()
    {
        for (const std::wstring& sKey : Order(L"Pop", 1))
        {
            const std::shared_ptr<FakeCut> cCut = CutOf(sKey);
            trial.colPresent.push_back(TextKey(sKey));
            trial.colItems.push_back(
                {{TextKey(cCut->Artist())}, TextKey(cCut->Title()), TextKey(cCut->Album()), 0});
        }
        for (const wchar_t* sKey : {L"P1other2", L"P1ash2", L"P1other1", L"P1ash1"})
            trial.colSpread.push_back(TextKey(sKey));
        cLib.cSchedMan->RememberSpread(trial);
    }
    // Whether a spread gives the trial's order.
    bool Gives()
    {
        Spread({Level(L"Pop", 1)});
        return Order(L"Pop", 1) == Keys{L"P1other2", L"P1ash2", L"P1other1", L"P1ash1"};
    }
    void PutBack() { PutInOrder(*Level(L"Pop", 1)->SchedCuts(), trial.colPresent); }

    SpreadTrial trial{TextKey(L"POP\t1"), {}, {}, {}, {}};
};

TEST_F(SpreadTrialTest, ItsOrderIsGivenWheneverTheLevelIsAsItWas)
{
    CutOf(L"P1ash1")->failing = {"Artist"};
    EXPECT_FALSE(Gives());
    CutOf(L"P1ash1")->failing.clear();
    EXPECT_TRUE(Gives()) << "after a spread that failed";
    PutBack();
    cLib.cSchedMan->UpdateArtistTitleHistory(CutOf(L"P1ash1"));
    EXPECT_TRUE(Gives()) << "after an undo, and a play";
    EXPECT_FALSE(Gives()) << "in another order";
}

TEST_F(SpreadTrialTest, ACutThatWasRetaggedIsDealtAnew)
{
    const std::shared_ptr<FakeCut> cCut = CutOf(L"P1other1");
    const std::wstring sArtist = cCut->Artist();
    const std::wstring sTitle = cCut->Title();
    const std::wstring sAlbum = cCut->Album();
    for (const auto& retag : std::vector<std::function<void()>>{[&] { cCut->SetArtist(L"Elm"); },
                                                                [&] { cCut->SetTitle(L"Other"); },
                                                                [&] { cCut->SetAlbum(L"Other"); }})
    {
        retag();
        EXPECT_FALSE(Gives());
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        cCut->SetAlbum(sAlbum);
        PutBack();
        EXPECT_TRUE(Gives());
        PutBack();
    }
}

TEST_F(SpreadTrialTest, OtherOptionsOrNamesDealAnew)
{
    cLib.cSchedMan->SetFairRotation(true);
    EXPECT_FALSE(Gives());
    cLib.cSchedMan->SetFairRotation(false);
    PutBack();
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Artists.csv",
                      "credited,counts_as\n" + Utf8Of(CutOf(L"P1other1")->Artist()) + ",Ash\n");
    cPorts.cClock.Advance(1'000);
    EXPECT_FALSE(Gives());
}

} // namespace
} // namespace ravlo::test
