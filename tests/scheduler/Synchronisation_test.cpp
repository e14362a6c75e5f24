// SPDX-License-Identifier: MIT
#include "scheduler/Synchronisation.h"

#include "scheduler/CutChanges.h"
#include "scheduler/CutRemoval.h"
#include "support/SyncTest.h"

#include <limits>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();

const Lines colAddedStart{L"Start 1: Updating Scheduler with Added items"};
const Lines colAddedDone{L"Done: Updated Scheduler with new items."};

class SynchronisationTest : public StationTest
{
};

// ---- cuts added ----

TEST_F(SynchronisationTest, AnAddedCutIsPlacedIntoEachOfItsCategoriesAndEachIsSavedOnce)
{
    Add(L"a", L"Rock");
    Start();
    Added({Add(L"new", L"Rock/Pop", 1)});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"new"})) << "it comes up last";
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"new"}));
    EXPECT_EQ(said, Joined({colAddedStart, SaveSaid(L"Rock", 2), SaveSaid(L"Pop", 1), colAddedDone}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifCut("new", 1));
    EXPECT_EQ(File(L"Pop"), SifCut("new", 1));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, AnAddedCutMakesTheLevelAndTheMainCategoryItNeeds)
{
    Add(L"a", L"Rock", 2);
    Start();
    Added({Add(L"b", L"Rock", 5), Add(L"c", L"Jazz", 3), Add(L"d", L"Rock", 1)});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    EXPECT_EQ(Order(L"Rock", 5), (Keys{L"b"}));
    EXPECT_EQ(Order(L"Jazz", 3), (Keys{L"c"}));
    Keys colLevels;
    for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(L"Rock")->SubCats())
        colLevels.push_back(cSubCat->CatID());
    EXPECT_EQ(colLevels, (Keys{L"1", L"2", L"5"}));
}

TEST_F(SynchronisationTest, ImportReportsEvery30thCutAfterAPauseAndBeforeAPump)
{
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Added(AddMany(95, L"k", L""));
    EXPECT_EQ(colTrace, (Lines{L"Start 95: Updating Scheduler with Added items", L"sleep 10",
                               L"Progress 30/95: Updated 30 of 95", L"pump", L"sleep 10",
                               L"Progress 60/95: Updated 60 of 95", L"pump", L"sleep 10",
                               L"Progress 90/95: Updated 90 of 95", L"pump",
                               L"Done: Updated Scheduler with new items."}));
}

TEST_F(SynchronisationTest, TheThirtiethCutIsPlacedAfterItsReport)
{
    Start();
    std::vector<std::size_t> colPlaced;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Progress") && sLine.find(L"Updated") != std::wstring::npos)
            colPlaced.push_back(Order(L"Rock", 1).size());
    };
    Added(AddMany(61, L"k", L"Rock"));
    EXPECT_EQ(colPlaced, (std::vector<std::size_t>{29, 59}));
    EXPECT_EQ(Order(L"Rock", 1).size(), 61u);
}

TEST_F(SynchronisationTest, AnAddWritesEachStepToTheDebugLogInOrder)
{
    Start();
    CountingWindows cWindows;
    cLib.cSchedMan->SetWindows(&cWindows);
    Added({Add(L"a", L"Rock/Pop", 1)});
    Lines colLog = Log();
    ASSERT_EQ(colLog.size(), 12u);
    const std::wstring sPointer = colLog[1];
    EXPECT_TRUE(sPointer.starts_with(L"objptr colcuts = ")) << "an identifying number follows";
    EXPECT_EQ(sPointer.find_first_not_of(L"-0123456789", 17), std::wstring::npos);
    EXPECT_GT(sPointer.size(), 17u);
    colLog.erase(colLog.begin() + 1);
    EXPECT_EQ(colLog, (Lines{L"m_cDataBase_CutsAdded at start...", L"Raising Event ProgressStart....",
                             L"Raised Event ProgressStart", L"Adding Cuts to cats...",
                             L"Finished Adding Cuts to cats.",
                             L"Saving History And Ordering now...there are: 2 Cats affected by this add.",
                             L"Saved History and Ordering now...", L"RaisingEvent ProgressDone",
                             L"Raised Event ProgressDone.", L"Refreshing Schedlib in m_cDataBase_CutsAdded",
                             L"Done with m_cDataBase_cutsadded"}));
    EXPECT_EQ(cWindows.lRefreshes, 1);
    cLib.cSchedMan->SetWindows(nullptr);
}

TEST_F(SynchronisationTest, TheRefreshingLineIsWrittenOnlyWhenAWindowIsOpen)
{
    Start();
    CountingWindows cWindows;
    cWindows.bExists = false;
    cLib.cSchedMan->SetWindows(&cWindows);
    Added({Add(L"a", L"Rock")});
    for (const std::wstring& sLine : Log())
        EXPECT_EQ(sLine.find(L"Refreshing"), std::wstring::npos);
    EXPECT_EQ(cWindows.lRefreshes, 0);
    cLib.cSchedMan->SetWindows(nullptr);
}

TEST_F(SynchronisationTest, TheLogIsOnTheDiskWhenTheHostIsCalled)
{
    Start();
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Start 1: Updating"))
        {
            EXPECT_EQ(Log().back(), L"Raising Event ProgressStart....");
        }
        if (sLine.starts_with(L"Done: Updated"))
        {
            EXPECT_EQ(Log().back(), L"RaisingEvent ProgressDone");
        }
    };
    Added({Add(L"a", L"Rock")});
}

TEST_F(SynchronisationTest, WindowIsRefreshedAfterEachKindOfNotification)
{
    const auto cCut = Add(L"a", L"Rock");
    Start();
    CountingWindows cWindows;
    Keys colSeen;
    cWindows.OnRefresh = [&] { colSeen = Order(L"Rock", 1); };
    cLib.cSchedMan->SetWindows(&cWindows);
    Added({Add(L"b", L"Rock")});
    EXPECT_EQ(colSeen, (Keys{L"a", L"b"}));
    cCut->SetCatLevel(2);
    Modified({cCut});
    EXPECT_EQ(colSeen, (Keys{L"b"}));
    Removed({cLib.cDataBase->colCuts[1]});
    EXPECT_EQ(colSeen, (Keys{}));
    EXPECT_EQ(cWindows.lRefreshes, 3);
    cLib.cSchedMan->SetWindows(nullptr);
}

TEST_F(SynchronisationTest, EmptyCategoryNameIsShownOnceAndOthersArePlaced)
{
    Start();
    const auto cFirst = Add(L"a", L"Rock");
    const auto cSecond = Add(L"b", L"Pop");
    cFirst->AddCategoryName(L"");
    cSecond->AddCategoryName(L"");
    Added({cFirst, cSecond});
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                  L"Zero-length cat names are illegal!\r\nArtist of a - Title of a")}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b"}));
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(), L"Zero-length cat names are illegal: 2 in all."), 1);
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(SynchronisationTest, CutsWithoutALevelAreShownOncePerCategoryAndTheRestCounted)
{
    Start();
    Cuts colCuts = AddMany(3, L"r", L"Rock", 0);
    colCuts.push_back(Add(L"p", L"Pop", 0));
    colCuts.push_back(Add(L"good", L"Pop", 1));
    Added(colCuts);
    EXPECT_EQ(
        boxes,
        (Boxes{CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock"),
               CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Pop")}));
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(),
                         L"Not filed in category Rock, having no level: 2 more cuts."),
              1);
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"good"}));
    EXPECT_EQ(MainCat(L"Rock")->TotalCuts(), 0);
}

TEST_F(SynchronisationTest, CutsWithANegativeLevelAreRefusedOncePerCategory)
{
    Start();
    Added(AddMany(3, L"r", L"Rock", -7));
    EXPECT_EQ(boxes,
              (Boxes{CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level")}));
    EXPECT_EQ(MainCat(L"Rock")->SubCats()->Count(), 0u);
}

TEST_F(SynchronisationTest, CutsThatAreAllRefusedAffectNoCategoryAndSaveNothing)
{
    Add(L"a", L"Rock");
    Start();
    Added(Cuts{Add(L"b", L"Rock/Pop", 0), Add(L"c", L"Rock", -1)});
    EXPECT_EQ(said, Joined({{L"Start 2: Updating Scheduler with Added items"}, colAddedDone}));
    EXPECT_EQ(Written(), Lines());
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(),
                         L"Saving History And Ordering now...there are: 0 Cats affected by this add."),
              1);
    EXPECT_EQ(boxes.size(), 3u) << "one a category and kind";
}

TEST_F(SynchronisationTest, ARefusedCutDoesNotSaveACategoryThatOthersDidNotJoin)
{
    Add(L"a", L"Rock/Pop");
    Start();
    Added({Add(L"b", L"Rock", 0), Add(L"c", L"Pop", 1)});
    EXPECT_EQ(Written(), (Lines{L"Pop"}));
}

TEST_F(SynchronisationTest, ACutWhoseTextsFailInABoxIsPlacedUnderItsOtherNames)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    cCut->AddCategoryName(L"");
    const auto cNext = Add(L"b", L"Rock");
    cCut->failing = {"Artist", "Title"};
    cPorts.cMessages.OnShown = [&] { cCut->failing.clear(); };
    Added({cCut, cNext});
    EXPECT_EQ(boxes,
              (Boxes{OkBox(BoxIcon::None, L"RavloScheduler", L"Zero-length cat names are illegal!\r\n")}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
}

TEST_F(SynchronisationTest, MainCategoryMadeForACutThatFailsGoesAgain)
{
    const auto cKnown = Add(L"k", L"Rock");
    Start();
    const auto cNew = Add(L"a", L"Pop");
    const auto Announce = [&](const std::shared_ptr<FakeCut>& cCut, bool bAdded) {
        cCut->failing = {"RunTimemS"};
        bAdded ? Added({cCut}) : Modified({cCut});
        cCut->failing.clear();
        EXPECT_EQ(boxes.size(), 1u);
        boxes.clear();
    };
    Announce(cNew, true);
    EXPECT_EQ(cLib.MainCatNames(), Lines{L"Rock"});
    cKnown->SetCategoryText(L"Rock/Jazz");
    Announce(cKnown, false);
    EXPECT_EQ(cLib.MainCatNames(), Lines{L"Rock"});
    Modified({cNew, cKnown});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop", L"Jazz"}));
}

TEST_F(SynchronisationTest, ReloadInABoxLeavesTheNewTreesNumbers)
{
    Add(L"r", L"Rock");
    Start();
    // In the tree before, the new cut's names are the second list; after the reload those of Jazz are.
    Add(L"j", L"Jazz");
    const auto cCut = Add(L"a", L"Pop");
    cCut->AddCategoryName(L"");
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        cCut->SetCategoryText(L"Jazz/Pop");
        cLib.Populate();
    };
    Added({cCut});
    EXPECT_EQ(Order(L"Pop", 1), Keys{L"a"});
    cCut->SetCategoryText(L"Jazz");
    Modified({cCut});
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"j", L"a"}));
    EXPECT_EQ(Order(L"Pop", 1), Keys());
}

TEST_F(SynchronisationTest, ALevelAboveTheOneAUserMayTypeIsPlaced)
{
    Start();
    Added({Add(L"a", L"Rock", 40'000), Add(L"b", L"Rock", lLongest)});
    EXPECT_EQ(Order(L"Rock", 40'000), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Rock", lLongest), (Keys{L"b"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, LevelBehindATabIsIgnoredAndNamesCountOnce)
{
    Start();
    const auto cCut = Add(L"a", L"Rock\t7", 2);
    cCut->AddCategoryName(L"ROCK");
    Added({cCut});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock"}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"a"}));
    EXPECT_EQ(MainCat(L"Rock")->SubCats()->Count(), 1u);
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
}

TEST_F(SynchronisationTest, ANameThatCanBeNoFileIsPlacedItsSaveIsRefusedAndTheOthersGoOn)
{
    Start();
    Added({Add(L"a", L"..\\..\\evil"), Add(L"b", L"CON"), Add(L"c", L"Ro:ck"), Add(L"d", L"Rock")});
    EXPECT_EQ(Order(L"..\\..\\evil", 1), (Keys{L"a"}));
    EXPECT_EQ(Order(L"CON", 1), (Keys{L"b"}));
    const auto Refused = [](const std::wstring& sName) {
        return CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                           L"52 Bad file name: \"" + sName + L"\"");
    };
    EXPECT_EQ(boxes, (Boxes{Refused(L"..\\..\\evil"), Refused(L"CON"), Refused(L"Ro:ck")}));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_TRUE(sPath == SifPath(L"Rock") || !sPath.ends_with(L".sif"));
}

TEST_F(SynchronisationTest, NamesDifferingOnlyByCaseAreOneCategory)
{
    Add(L"a", L"Rock");
    Start();
    Added({Add(L"b", L"ROCK"), Add(L"c", L"\u0420\u043E\u043A"), Add(L"d", L"\u0420\u041E\u041A"),
           Add(L"e", L"\u0411\u0438\u0442")});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"\u0420\u043E\u043A", L"\u0411\u0438\u0442"}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(Order(L"\u0420\u043E\u043A", 1), (Keys{L"c", L"d"}));
    EXPECT_EQ(File(L"\u0420\u043E\u043A"), SifCut("c", 1) + SifCut("d", 1));
    EXPECT_EQ(File(L"\u0411\u0438\u0442"), SifCut("e", 1));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, ACutAnnouncedAsNewThatIsPlacedElsewhereIsMoved)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    cCut->SetCategoryText(L"Pop/Jazz");
    cCut->SetCatLevel(2);
    Added({cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Jazz", 2), (Keys{L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop/Jazz");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop", L"Jazz"}));
}

TEST_F(SynchronisationTest, AnEmptyNameOfAMovedCutAnnouncedAsNewIsShown)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    cCut->SetCategoryText(L"Pop");
    cCut->AddCategoryName(L"");
    Added({cCut});
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                  L"Zero-length cat names are illegal!\r\nArtist of a - Title of a")}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"a"}));
}

TEST_F(SynchronisationTest, CutAnnouncedTwiceIsPlacedOnceAndKeepsItsPlace)
{
    const auto cCut = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    Added({cCut, cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
}

TEST_F(SynchronisationTest, CutsThatCannotBeReadAreReportedOnceAndTheOthersArePlaced)
{
    for (const char* sMember : {"Key", "RunTimemS", "AddCategoryName", "CategoryNames", "CatLevel"})
    {
        SCOPED_TRACE(sMember);
        RadioPorts cOther;
        Library cLibrary(cOther);
        cLibrary.Populate();
        const auto cBad = cLibrary.cDataBase->Add(L"bad", L"Rock", 1);
        const auto cBadToo = cLibrary.cDataBase->Add(L"bad too", L"Rock", 1);
        const auto cGood = cLibrary.cDataBase->Add(L"good", L"Rock", 1);
        cBad->failing = cBadToo->failing = {sMember};
        cLibrary.cDataBase->Announce(&DataBaseEvents::CutsAdded, Cuts{cBad, cBadToo, cGood});
        EXPECT_EQ(cOther.cMessages.Boxes,
                  (Boxes{HandledError(L"m_cDataBase_CutsAdded",
                                      StandardText(91) + L" (2 cuts could not be handled)", L"91")}));
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"good"})) << "a cut is filed whole or not at all";
        EXPECT_EQ(cLibrary.Level(L"Rock", 1)->AverageRunTimemS(), 180'000);
        EXPECT_EQ(cOther.LogMessages().back(), L"Done with m_cDataBase_cutsadded");
    }
}

TEST_F(SynchronisationTest, RunTimesOutOfRangeAreReportedOnceAfterTheSave)
{
    Start();
    Added({Add(L"a", L"Rock", 1, lLongest), Add(L"b", L"Rock", 1, lLongest), Add(L"c", L"Rock", 1, lLongest),
           Add(L"d", L"Pop", 1, lLongest), Add(L"e", L"Pop", 1, lLongest)});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"d", L"e"}));
    EXPECT_EQ(Level(L"Rock", 1)->AverageRunTimemS(), lLongest) << "the sum behind the average stays true";
    EXPECT_EQ(boxes, (Boxes{HandledError(L"m_cDataBase_CutsAdded",
                                         StandardText(6) + L": run times in category Rock", L"6"),
                            HandledError(L"m_cDataBase_CutsAdded",
                                         StandardText(6) + L": run times in category Pop", L"6")}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

// ---- placement one cut ----

// The parts alone, without a manager.
struct Parts
{
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    SchedulerState cState{cMod};
    Synchronisation cSync{cState};
    CutChanges cChanges{cState, cSync, CutChanges::Origin::DataBase};

    Parts() { cState.colMainCats = std::make_shared<CatCollection>(); }
    Lines Affected() const { return {cChanges.Affected().begin(), cChanges.Affected().end()}; }

    std::shared_ptr<FakeCut> NewCut(const std::wstring& sCategoryText, std::int32_t lLevel)
    {
        FakeDataBase cDataBase;
        return cDataBase.Add(L"a", sCategoryText, lLevel);
    }
    std::shared_ptr<clsCat> NewMainCat(const std::wstring& sName)
    {
        auto cMainCat = std::make_shared<clsCat>(cMod, sName, 0);
        cState.colMainCats->Add(TextKey(CategoryKey(sName, 0)), cMainCat);
        return cMainCat;
    }
    void File(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName)
    {
        cChanges.AddCutToCategory(cCut, sCatName);
    }
    void PlaceAsAssigned(const std::shared_ptr<Cut>& cCut)
    {
        NameLists cNameLists(cState.cPlacedCuts);
        cChanges.AddCutToCategories(cCut, cNameLists.Of(*cCut));
    }
};

TEST(AddCutToCategory, MakesWhatIsMissingAndTouchesTheCategory)
{
    struct Case
    {
        const char* sWhat;
        bool bHasMainCat;
        bool bHasLevel;
    };
    for (const Case& c : {Case{"nothing is there", false, false}, Case{"the main category", true, false},
                          Case{"the level too", true, true}})
    {
        SCOPED_TRACE(c.sWhat);
        Parts cParts;
        if (c.bHasMainCat)
        {
            const auto cMainCat = cParts.NewMainCat(L"Rock");
            if (c.bHasLevel)
                cMainCat->AddSubCat(std::make_shared<clsCat>(cParts.cMod, L"Rock", 3));
        }
        cParts.PlaceAsAssigned(cParts.NewCut(L"Rock", 3));
        EXPECT_EQ(cParts.cState.MainCat(L"Rock")->SubCat(3)->TotalCuts(), 1);
        EXPECT_EQ(cParts.Affected(), (Lines{L"Rock"}));
    }
}

TEST(AddCutToCategory, PlacesIntoTheOneMainCategoryThatIsGiven)
{
    Parts cParts;
    const auto cRock = cParts.NewMainCat(L"Rock");
    const auto cPop = cParts.NewMainCat(L"Pop");
    const auto cCut = cParts.NewCut(L"Rock", 2);
    cParts.File(cCut, L"pop");
    EXPECT_EQ(cRock->TotalCuts(), 0);
    EXPECT_EQ(cPop->TotalCuts(), 1);
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(cParts.Affected(), (Lines{L"Pop"}));
}

TEST(AddCutToCategory, RefusesAMainCategoryTheTreeDoesNotHold)
{
    Parts cParts;
    const auto cCut = cParts.NewCut(L"Rock", 2);
    cParts.File(cCut, L"Gone");
    EXPECT_EQ(cParts.cPorts.cMessages.Boxes,
              (Boxes{CriticalBox(L"RavloScheduler",
                                 L"In addcuttocategory, main cat was specified, but doesnt exist!")}));
    EXPECT_EQ(cParts.Affected(), Lines());
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(cParts.cState.colMainCats->Count(), 0u);
}

TEST(AddCutToCategory, SavesCategoriesThatContainTheCutNotThoseThatRefusedIt)
{
    Parts cParts;
    const auto cCut = cParts.NewCut(L"Rock", 2);
    cParts.PlaceAsAssigned(cCut);
    cParts.cChanges.CallerSaves(L"Rock");
    cParts.PlaceAsAssigned(cCut);
    EXPECT_EQ(cParts.Affected(), (Lines{L"Rock"})) << "it sits there";
    for (const std::int32_t lLevel : {0, -7})
    {
        cParts.cChanges.CallerSaves(L"Rock");
        cParts.PlaceAsAssigned(cParts.NewCut(L"Rock", lLevel));
        EXPECT_EQ(cParts.Affected(), Lines()) << lLevel;
    }
}

TEST(Synchronisation, WithoutATreeThereIsNothingToPlaceToFindOrToSave)
{
    Parts cParts;
    cParts.cState.colMainCats = nullptr;
    const auto cCut = cParts.NewCut(L"Rock", 1);
    EXPECT_TRUE(cParts.cState.PlacesOf(cCut->Key()).empty());
    cParts.PlaceAsAssigned(cCut);
    cParts.cChanges.ModifyCut(cCut);
    EXPECT_TRUE(TakeOutOfCategories(cParts.cState, cParts.cChanges, cCut, {cCut, nullptr, 0}).empty());
    EXPECT_EQ(cParts.Affected(), Lines());
    cParts.cChanges.Finish({});
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_FALSE(cParts.cState.cPlacedCuts.Contains(cCut->Key()));
    EXPECT_EQ(cParts.cPorts.cMessages.Boxes, Boxes());
    EXPECT_TRUE(cParts.cPorts.cFiles.Operations().empty());
}

TEST(Synchronisation, AfterAFailedFirstPopulationNothingIsFollowed)
{
    RadioPorts cPorts;
    cPorts.cFiles.MakeFolders(L"C:\\Radio");
    Library cLib(cPorts);
    const auto cCut = cLib.cDataBase->Add(L"a", L"Rock", 1);
    cLib.cDataBase->bAllCutsFails = true;
    cLib.Populate();
    cPorts.cMessages.Boxes.clear();
    EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
    EXPECT_EQ(cLib.cSchedMan->DataBase(), nullptr);
    CatCollection colFrom;
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, cCut, colFrom);
    cLib.cSchedMan->RemoveCutsFromCategories({{cCut, nullptr, 0}}, [](std::size_t) {});
    cLib.cSchedMan->ShuffleCategories({std::make_shared<clsCat>(cLib.cMod, L"Rock", 0)});
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({std::make_shared<clsCat>(cLib.cMod, L"Rock", 0)}));
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_TRUE(colFrom.Empty());
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes());
}

// ---- cuts removed ----

TEST_F(SynchronisationTest, ARemovedCutLeavesEveryCategoryAndEachIsSavedOnce)
{
    Cuts colCuts{Add(L"a", L"Rock/Pop"), Add(L"b", L"Rock")};
    Add(L"c", L"Rock/Jazz");
    Start();
    Removed(colCuts);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"c"}));
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
    EXPECT_EQ(said, Joined({{L"Start 2: Updating Scheduler with deleted items"},
                            SaveSaid(L"Rock", 1),
                            SaveSaid(L"Pop", 1),
                            {L"Done: Updated Scheduler with deleted items."}}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(File(L"Pop"), SifMarker(1)) << "the level stays, without cuts";
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, RemovingCutsReportsEveryFiftiethAfterAPauseAndWithoutAPump)
{
    const Cuts colCuts = AddMany(120, L"k", L"");
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Removed(colCuts);
    EXPECT_EQ(colTrace, (Lines{L"Start 120: Updating Scheduler with deleted items", L"sleep 10",
                               L"Progress 50/120: Updated 50 of 120", L"sleep 10",
                               L"Progress 100/120: Updated 100 of 120",
                               L"Done: Updated Scheduler with deleted items."}));
}

TEST_F(SynchronisationTest, RemovingACutThatIsInNoCategoryChangesNothingAndSavesNothing)
{
    Add(L"a", L"Rock");
    const auto cOther = Add(L"b", L"");
    Start();
    Removed({cOther});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(said, (Lines{L"Start 1: Updating Scheduler with deleted items",
                           L"Done: Updated Scheduler with deleted items."}));
}

TEST_F(SynchronisationTest, RemovedCutIsFoundInTheTreeNotByItsPresentNames)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    cCut->SetCategoryText(L"Jazz");
    cCut->SetCatLevel(9);
    Removed({cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(SynchronisationTest, ARemovedCutThatTakesNoChangesAnyMoreLeavesAllTheSame)
{
    const auto cBad = Add(L"a", L"Rock/Pop", 1, 100'000);
    const auto cGood = Add(L"b", L"Rock", 1, 100'000);
    Add(L"c", L"Rock", 1, 200'000);
    Start();
    cBad->failing = {"RemoveCategoryName"};
    Removed({cBad, cGood});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"c"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 200'000);
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes, (Boxes{HandledError(L"m_cDataBase_CutsRemoved",
                                         StandardText(91) + L" (1 cuts could not be handled)", L"91")}));
}

TEST_F(SynchronisationTest, ARemovedCutThatNoLongerCarriesTheNameLeavesNoRunTimeBehind)
{
    const auto cCut = Add(L"a", L"Rock", 1, 100'000);
    Add(L"b", L"Rock", 1, 200'000);
    Add(L"c", L"Rock", 1, 300'000);
    Start();
    cCut->RemoveCategoryName(L"Rock");
    Removed({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 500'000);
}

TEST_F(SynchronisationTest, ListenersFindTheRunTimesOfTheResult)
{
    const auto cRaised = Add(L"a", L"Rock", 1, 100'000);
    const auto cGone = Add(L"b", L"Rock", 1, 200'000);
    const auto cKnown = Add(L"c", L"Rock", 1, 600'000);
    Add(L"d", L"Rock", 1, 400'000);
    Start();
    std::vector<std::int64_t> colTotals;
    const auto Look = [&] { colTotals.push_back(TotalOf(L"Rock", 1)); };
    CountingWindows cWindows;
    cWindows.OnRefresh = Look;
    cLib.cSchedMan->SetWindows(&cWindows);
    cRaised->SetCatLevel(2);
    Modified({cRaised});
    EXPECT_EQ(colTotals, (std::vector<std::int64_t>{1'200'000}));
    cWindows.OnRefresh = nullptr;
    colTotals.clear();
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.ends_with(L"Saving Ordering and hist for: Rock"))
            Look();
    };
    cGone->SetCategoryText(L"");
    Removed({cGone});
    EXPECT_EQ(colTotals, (std::vector<std::int64_t>{1'000'000}));
    colTotals.clear();
    cKnown->SetCatLevel(2);
    Added({cKnown}); // announced as new, though it stands in level 1
    EXPECT_EQ(colTotals, (std::vector<std::int64_t>{400'000}));
    cLib.cSchedMan->SetWindows(nullptr);
}

// ---- what a host does to a level itself ----

TEST_F(SynchronisationTest, NamesAnnouncedAtOnceDoNotDisturbAPlacement)
{
    Add(L"a", L"Rock");
    const auto cCut = Add(L"b", L"Rock");
    Add(L"c", L"Rock");
    const auto cNew = Add(L"d", L"");
    Start();
    for (const std::shared_ptr<FakeCut>& cAnnounced : {cCut, cNew})
        cAnnounced->OnCall = [this, cWeak = std::weak_ptr<FakeCut>(cAnnounced)](const std::string& sMember) {
            if (sMember != "AddCategoryName" && sMember != "RemoveCategoryName")
                return;
            // The name is changed, and told of, before the call that changes it is over.
            const std::shared_ptr<FakeCut> cChanged = cWeak.lock();
            const auto hook = std::exchange(cChanged->OnCall, nullptr);
            if (sMember == "AddCategoryName")
                cChanged->AddCategoryName(L"Rock");
            else
                cChanged->RemoveCategoryName(L"Rock");
            Modified({cChanged});
            cChanged->OnCall = hook;
        };
    bool bCreated = false;
    EXPECT_TRUE(Level(L"Rock", 1)->AddCut(cNew, bCreated));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 4 * 180'000);
    EXPECT_TRUE(Level(L"Rock", 1)->RemoveCut(cCut));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"c", L"d"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 3 * 180'000);
    EXPECT_EQ(boxes, Boxes());
}

// ---- taking one cut out ----

class RemoveCutFromCategoryTest : public StationTest
{
protected:
    Lines Remove(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<Cut>& cCut,
                 std::int32_t lLevel = 0)
    {
        for (const std::wstring& sName : cLib.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
                if (cCut && cSubCat->TotalCuts() == 1 && cSubCat->SchedCuts()->Exists(cCut->Key()))
                    colAhead.insert(sName);
        CatCollection colFrom;
        cLib.cSchedMan->RemoveCutFromCategory(cMainCat, cCut, colFrom, lLevel);
        Lines colNames;
        for (std::size_t at = 0; at < colFrom.Count(); ++at)
        {
            colNames.push_back(colFrom.At(at)->CatName());
            EXPECT_EQ(colFrom.KeyAt(at)->Text(), colNames.back()) << "keyed by name";
            EXPECT_EQ(colFrom.At(at), MainCat(colNames.back()));
        }
        for (const std::wstring& sName : Written())
            EXPECT_EQ(colAhead.count(sName), 1u) << "it saves nothing but ahead of a level's last cut";
        EXPECT_EQ(said, Lines());
        return colNames;
    }
    std::set<std::wstring> colAhead; // categories in which the cuts stood alone
};

TEST_F(RemoveCutFromCategoryTest, WithoutAMainCategoryTheCutLeavesAllItIsAssignedTo)
{
    const auto cCut = Add(L"a", L"Rock/Pop/Jazz", 2);
    Start();
    EXPECT_EQ(Remove(nullptr, cCut), (Lines{L"Rock", L"Pop", L"Jazz"}))
        << "the names are taken before removing takes them off the cut";
    EXPECT_EQ(cCut->CategoryText(), L"");
    EXPECT_EQ(Order(L"Jazz", 2), Keys());
}

TEST_F(RemoveCutFromCategoryTest, ALevelWhoseNameTheCutHasLostIsRecalculated)
{
    const auto cCut = Add(L"a", L"Rock", 1, 100'000);
    Add(L"b", L"Rock", 1, 200'000);
    Start();
    cCut->RemoveCategoryName(L"Rock");
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut), (Lines{L"Rock"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 200'000);
}

TEST_F(RemoveCutFromCategoryTest, MainCategoryFromBeforeAReloadMeansThePresentOne)
{
    const auto cCut = Add(L"a", L"Rock/Pop");
    Start();
    const std::shared_ptr<clsCat> cOld = MainCat(L"Rock");
    cLib.Populate();
    Forget();
    EXPECT_EQ(Remove(cOld, cCut), (Lines{L"Rock"}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(cOld->SubCat(1)->TotalCuts(), 1) << "the tree before is no longer anybody's";
    cLib.cSchedMan->DeleteCats({MainCat(L"Rock")});
    Forget();
    EXPECT_EQ(Remove(cOld, cCut), Lines()) << "what is missing is passed over";
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(RemoveCutFromCategoryTest, WithAMainCategoryTheCutLeavesThatOneAlone)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 2);
    Start();
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut), (Lines{L"Rock"}));
    EXPECT_EQ(Order(L"Rock", 2), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
}

TEST_F(RemoveCutFromCategoryTest, GivenLevelIsUsedAndTheNameStaysWithAnotherLevel)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Start();
    bool bCreated = false;
    ASSERT_TRUE(Level(L"Rock", 2)->AddCut(cCut, bCreated));
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 2), (Lines{L"Rock"}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"b"}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 1), (Lines{L"Rock"}));
    EXPECT_EQ(cCut->CategoryText(), L"");
}

TEST_F(RemoveCutFromCategoryTest, WhatIsMissingIsPassedOverWithoutAWordAndNotCounted)
{
    const auto cCut = Add(L"a", L"Rock/Gone", 1);
    Start();
    cLib.cSchedMan->colMainCats()->Remove(CategoryKey(L"Gone", 0));
    EXPECT_EQ(Remove(nullptr, cCut), (Lines{L"Rock"}));
    EXPECT_EQ(Remove(nullptr, cCut), Lines()) << "it stands nowhere any more";
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 77), Lines()) << "no such level";
    EXPECT_EQ(Remove(nullptr, nullptr), Lines());
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(RemoveCutFromCategoryTest, ASecondaryKeyNeverRemovesADifferentCut)
{
    const auto cOther = Add(L"other", L"Rock");
    const auto cCut = Add(L"a", L"Rock", 2);
    cOther->lID = 1;
    cCut->lID = 2;
    cCut->SetSecondaryKey(L"other");
    Start();
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 1), Lines());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"other"}));
}

TEST_F(RemoveCutFromCategoryTest, CutThatRefusesIsShownAndKeepsItsPlace)
{
    const auto cCut = Add(L"a", L"Rock");
    Start();
    cCut->failing = {"RemoveCategoryName"};
    EXPECT_EQ(Remove(nullptr, cCut), Lines());
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]", CriticalText(91))}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
}

TEST_F(RemoveCutFromCategoryTest, AFailureHalfWayLeavesTheCutInEveryCategory)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock/Pop", 1);
    Start();
    int lCalls = 0;
    cCut->OnCall = [&](const std::string& sMember) {
        if (sMember == "RemoveCategoryName" && ++lCalls == 2)
            throw RuntimeError(error::DeviceIo);
    };
    EXPECT_EQ(Remove(nullptr, cCut), Lines());
    cCut->OnCall = nullptr;
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]", CriticalText(57))}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
    Forget();
    Modified({cCut});
    EXPECT_EQ(Written(), Lines()) << "it is filed as before";
}

TEST_F(RemoveCutFromCategoryTest, CopyMeansTheDatabasesOwnCut)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCopy), (Lines{L"Rock"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    cLib.Restart();
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"a"}));
}

TEST_F(RemoveCutFromCategoryTest, WhatTheDatabaseAnnouncesInTheMiddleWaits)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    const auto cOther = Add(L"b", L"Rock", 1);
    Start();
    cCut->OnCall = [&](const std::string& sMember) {
        if (sMember != "RemoveCategoryName")
            return;
        cOther->SetCategoryText(L"Jazz");
        Modified({cOther, cCut});
        EXPECT_EQ(MainCat(L"Jazz"), nullptr) << "nothing changes under the feet of the removal";
    };
    CatCollection colFrom;
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, cCut, colFrom);
    cCut->OnCall = nullptr;
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"b"}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Written(), (Lines{L"Pop", L"Rock", L"Jazz"}))
        << "Pop ahead of the removal, which itself is no change of the database's";
}

TEST_F(RemoveCutFromCategoryTest, ChangeNotYetAnnouncedIsStillSeenAfterwards)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    cCut->SetCatLevel(2); // nobody has been told
    Remove(MainCat(L"Rock"), cCut, 1);
    Modified({cCut});
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
}

// ---- cuts modified ----

TEST_F(SynchronisationTest, AChangedLevelMovesTheCutToTheEndOfTheNewLevelInEveryCategory)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock", 2);
    Add(L"c", L"Rock", 1, 60'000);
    Start();
    cCut->SetCatLevel(2);
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"c"}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(Order(L"Pop", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"})) << "the level was made";
    EXPECT_EQ(TotalOf(L"Rock", 1), 60'000);
    EXPECT_EQ(TotalOf(L"Rock", 2), 360'000);
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(said, Lines()) << "no progress events, not even of the saves";
}

TEST_F(SynchronisationTest, ChangedNamesMoveTheCutOnlyWhereTheyChanged)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock");
    Add(L"c", L"Pop");
    Start();
    cCut->SetCategoryText(L"Jazz/Rock/NOCAT");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"})) << "it keeps its place";
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"c"}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"a"}));
    EXPECT_EQ(Order(L"NOCAT", 1), (Keys{L"a"})) << "a name like any other";
    EXPECT_EQ(cCut->CategoryText(), L"Jazz/Rock/NOCAT")
        << "names and their order stay as the database set them";
    EXPECT_EQ(Written(), (Lines{L"Pop", L"Jazz", L"NOCAT"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, AModifiedCutWithTheSameNamesAndLevelChangesNothing)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock");
    Start();
    for (const wchar_t* sText : {L"Rock/Pop", L"ROCK/pop", L"Pop/Rock"})
    {
        cCut->SetCategoryText(sText);
        Modified({cCut});
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
        EXPECT_EQ(cCut->CategoryText(), sText);
    }
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(SynchronisationTest, ACutWithoutNamesLeavesAllAndOneThatWasUnknownIsPlaced)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    cCut->SetCategoryText(L"");
    const auto cUnknown = Add(L"u", L"Rock", 1);
    Modified({cCut, cUnknown});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"u"}));
    EXPECT_EQ(Order(L"Pop", 1), Keys());
}

TEST_F(SynchronisationTest, AnEmptyNameOfAModifiedCutIsSkippedWithoutAWord)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    cCut->AddCategoryName(L"");
    cCut->AddCategoryName(L"Pop");
    Modified({cCut});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, ACutModifiedBackAndForthIsComparedWithWhatItBecame)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 1);
    Start();
    for (const std::int32_t lLevel : {2, 1, 2, 1})
    {
        cCut->SetCatLevel(lLevel);
        Modified({cCut});
        EXPECT_EQ(Order(L"Rock", lLevel).back(), L"a");
        EXPECT_EQ(MainCat(L"Rock")->TotalCuts(), 2);
    }
}

TEST_F(SynchronisationTest, PlacesOfACutAreReadFromTheTree)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    bool bCreated = false;
    const auto cOdd = std::make_shared<clsCat>(cLib.cMod, L"Rock", 8);
    MainCat(L"Rock")->AddSubCat(cOdd);
    cOdd->AddCut(cCut, bCreated); // a host has put it there as well
    cCut->SetCatLevel(3);
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 8), Keys());
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Rock", 3), (Keys{L"a"}));
}

TEST_F(SynchronisationTest, ACutAHostHasTakenOutItselfIsPlacedAgainWhenTheDatabaseSaysSo)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    Level(L"Rock", 1)->RemoveCut(cCut);
    EXPECT_EQ(cCut->CategoryText(), L"");
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(SynchronisationTest, ModifiedCutsThatFailAreReportedOnceAndRetried)
{
    const auto cBad = Add(L"bad", L"Rock", 1);
    const auto cGood = Add(L"good", L"Rock", 1);
    Start();
    cBad->SetCatLevel(2);
    cGood->SetCatLevel(2);
    cBad->failing = {"RunTimemS"};
    Modified({cBad, cGood});
    EXPECT_EQ(boxes, (Boxes{HandledError(L"ModifyCut [SchedMan]",
                                         StandardText(91) + L" (1 cuts could not be handled)", L"91")}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"good"}));
    cBad->failing.clear();
    Modified({cBad});
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"good", L"bad"}));
}

TEST_F(SynchronisationTest, ManyModifiedCutsSaveEachCategoryOnce)
{
    const Cuts colCuts = AddMany(40, L"k", L"Rock/Pop/Jazz", 1);
    Start();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        cCut->SetCategoryText(L"Rock/Soul");
    Modified(colCuts);
    EXPECT_EQ(Written(), (Lines{L"Pop", L"Jazz", L"Soul"}));
}

// ---- listening ----

TEST_F(SynchronisationTest, TheDatabasesOwnProgressIsPassedThrough)
{
    Start();
    cLib.cDataBase->Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Reading"), 7);
    cLib.cDataBase->Announce(&DataBaseEvents::Progress, std::wstring(L"Row"), 3, 7);
    cLib.cDataBase->Announce(&DataBaseEvents::ProgressDone, std::wstring(L"Read."));
    EXPECT_EQ(said, (Lines{L"Start 7: Reading", L"Progress 3/7: Row", L"Done: Read."}));
}

TEST_F(SynchronisationTest, ANotificationInsideANotificationIsHandledAfterIt)
{
    Start();
    const auto cFirst = Add(L"a", L"Rock");
    const auto cSecond = Add(L"b", L"Rock");
    bool bDone = false;
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        if (!std::exchange(bDone, true))
        {
            Added({cSecond});
            EXPECT_EQ(Order(L"Rock", 1), Keys());
        }
    };
    Added({cFirst});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(said, Joined({colAddedStart, SaveSaid(L"Rock", 1), colAddedDone, colAddedStart,
                            SaveSaid(L"Rock", 2), colAddedDone}));
}

TEST_F(SynchronisationTest, ANotificationDuringAPopulationWaitsForTheNewTree)
{
    Add(L"a", L"Rock");
    std::shared_ptr<FakeCut> cLate;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!cLate && sLine.starts_with(L"Done: Got Main"))
        {
            cLate = Add(L"late", L"Rock");
            Added({cLate});
            EXPECT_EQ(cLib.cSchedMan->colMainCats(), nullptr);
        }
    };
    cLib.Populate();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"late"}));
}

TEST_F(SynchronisationTest, AfterAnotherPopulationTheOldDatabaseIsNotListenedTo)
{
    Start();
    const auto cOld = cLib.cDataBase;
    cLib.cDataBase = std::make_shared<FakeDataBase>();
    cLib.Populate();
    EXPECT_TRUE(cOld->colListeners.empty());
    EXPECT_EQ(cLib.cDataBase->colListeners.size(), 1u);
    cLib.Populate();
    EXPECT_EQ(cLib.cDataBase->colListeners.size(), 1u) << "advised once";
}

TEST_F(SynchronisationTest, TheDatabaseDoesNotKeepTheManagerAlive)
{
    Start();
    const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
    cLib.cSchedMan->SetEvents(nullptr);
    cLib.cSchedMan.reset();
    EXPECT_TRUE(cWeak.expired());
    EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
}

TEST_F(SynchronisationTest, AManagerReleasedInsideANotificationEndsWhenItIsHandled)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
    cLib.cHost.OnEvent = [&](const std::wstring&) { cLib.cSchedMan.reset(); };
    Added({cCut});
    EXPECT_TRUE(cWeak.expired());
    EXPECT_EQ(said.front(), colAddedStart.front());
    EXPECT_EQ(said.back(), colAddedDone.front());
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock");
}

TEST_F(SynchronisationTest, ManagerReleasedInsideProgressLivesUntilItReturns)
{
    const std::function<void(FakeDataBase&)> events[] = {
        [](FakeDataBase& cDataBase) {
        cDataBase.Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Reading"), 7);
        },
        [](FakeDataBase& cDataBase) {
        cDataBase.Announce(&DataBaseEvents::Progress, std::wstring(L"Row"), 3, 7);
    },
                                             [](FakeDataBase& cDataBase) {
        cDataBase.Announce(&DataBaseEvents::ProgressDone, std::wstring(L"Read."));
    },
        };
    for (const auto& raise : events)
    {
        RadioPorts cOther;
        Library cLibrary(cOther);
        cLibrary.Populate();
        // Of the two that are told the first drops the last reference.
        HostEvents cFollower;
        cLibrary.cSchedMan->SetProgressFollower(&cFollower);
        const std::weak_ptr<clsSchedMan> cWeak = cLibrary.cSchedMan;
        cLibrary.cHost.OnEvent = [&](const std::wstring&) {
            cLibrary.cSchedMan.reset();
            EXPECT_FALSE(cWeak.expired());
        };
        raise(*cLibrary.cDataBase);
        EXPECT_TRUE(cWeak.expired());
        EXPECT_TRUE(cLibrary.cDataBase->colListeners.empty());
        EXPECT_EQ(cFollower.colSaid, (Lines{cLibrary.cHost.colSaid.back()})) << "the second is told too";
    }
}

TEST_F(SynchronisationTest, ManagerReleasedByTheFirstSinkFinishesTheImport)
{
    Start();
    HostEvents cFollower;
    cLib.cSchedMan->SetProgressFollower(&cFollower);
    const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
    cLib.cHost.OnEvent = [&](const std::wstring&) { cLib.cSchedMan.reset(); };
    Added({Add(L"a", L"Rock")});
    EXPECT_TRUE(cWeak.expired());
    EXPECT_EQ(cFollower.colSaid, said);
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
}

TEST_F(SynchronisationTest, WhatGoesWrongAfterTheCutsIsShownUnderTheNotificationsName)
{
    const auto cCut = Add(L"a", L"Rock");
    Start();
    CountingWindows cWindows;
    cWindows.OnRefresh = [] { throw RuntimeError(error::ObjectNotSet); };
    cLib.cSchedMan->SetWindows(&cWindows);
    const auto Shown = [&](const std::wstring& sName) {
        EXPECT_EQ(boxes, (Boxes{HandledError(sName, StandardText(91), L"91")}));
        EXPECT_EQ(Written(), (Lines{L"Rock"}));
        Forget();
    };
    Added({Add(L"b", L"Rock")});
    Shown(L"m_cDataBase_CutsAdded");
    cCut->SetCatLevel(2);
    Modified({cCut});
    Shown(L"m_cDataBase_CutsModified");
    Removed({cCut});
    Shown(L"m_cDataBase_CutsRemoved");
    cLib.cSchedMan->SetWindows(nullptr);
}

TEST_F(SynchronisationTest, ReloadWhileABoxIsShownEndsTheImportWithNothingLost)
{
    Start();
    const auto cCut = Add(L"a", L"Jazz/Rock");
    cCut->AddCategoryName(L"");
    Add(L"b", L"Pop");
    Cuts colCuts = cLib.cDataBase->colCuts;
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        cLib.Populate();
    };
    Added(colCuts);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b"}));
    Forget();
    Modified(colCuts);
    EXPECT_EQ(Written(), Lines()) << "remembered as the new tree has them";
}

TEST_F(SynchronisationTest, ChangesTheSchedulerMakesItselfAreQueuedAndChangeNothingMore)
{
    // A database that announces every property change at once, in the middle of the scheduler's work.
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Pop", 2);
    Start();
    cCut->OnCall = [&](const std::string& sMember) {
        if (sMember == "SetCatLevel" || sMember == "AddCategoryName" || sMember == "RemoveCategoryName")
            Modified({cCut});
    };
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut}, bCreated);
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(SynchronisationTest, ReloadDuringAnImportEndsItWithNothingLost)
{
    Start();
    const Cuts colCuts = AddMany(70, L"k", L"Rock");
    bool bDone = false;
    cPorts.cHostLoop.OnPump = [&] {
        if (!std::exchange(bDone, true))
            cLib.Populate();
    };
    Added(colCuts);
    EXPECT_EQ(Order(L"Rock", 1).size(), 70u);
    EXPECT_EQ(TotalOf(L"Rock", 1), 70 * 180'000);
}

} // namespace
} // namespace ravlo::test
