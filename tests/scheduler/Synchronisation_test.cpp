// SPDX-License-Identifier: MIT
#include "scheduler/Synchronisation.h"

#include "scheduler/CutChanges.h"
#include "scheduler/CutRemoval.h"
#include "support/SyncTest.h"

#include <limits>
#include <regex>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();

const Lines colAddedStart{L"Start 1: Updating Scheduler with Added items"};
const Lines colAddedDone{L"Done: Updated Scheduler with new items."};
const Lines colRemovedDone{L"Done: Updated Scheduler with deleted items."};

ShownBox EmptyNameBox(const std::wstring& sCut)
{
    return OkBox(BoxIcon::None, L"RavloScheduler", L"Zero-length cat names are illegal!\r\n" + sCut);
}
class SynchronisationTest : public StationTest
{
protected:
    ~SynchronisationTest() override
    {
        if (cLib.cSchedMan)
            cLib.cSchedMan->SetWindows(nullptr);
    }
    void OpenWindow() { cLib.cSchedMan->SetWindows(&cWindows); }

    CountingWindows cWindows;
};

// ---- cuts added ----

TEST_F(SynchronisationTest, AddedCutJoinsItsCategoriesAndEachIsSavedOnce)
{
    Start(L"Rock 1: a");
    Added({Add(L"new", L"Rock/Pop")});
    EXPECT_EQ(Tree(), L"Rock 1: a new | Pop 1: new");
    EXPECT_EQ(said, Joined({colAddedStart, SaveSaid(L"Rock", 2), SaveSaid(L"Pop", 1), colAddedDone}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifCut("new", 1));
    EXPECT_EQ(File(L"Pop"), SifCut("new", 1));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, AddedCutMakesItsLevelAndMainCategory)
{
    Start(L"Rock 2: a");
    // Levels above the highest that a user can type are placed too.
    Added({Add(L"b", L"Rock", 5), Add(L"c", L"Jazz", 3), Add(L"d", L"Rock", 1), Add(L"e", L"Rock", 40'000),
           Add(L"f", L"Jazz", lLongest)});
    EXPECT_EQ(Tree(), L"Rock 1: d | Rock 2: a | Rock 5: b | Rock 40000: e | Jazz 3: c | Jazz 2147483647: f");
    EXPECT_EQ(boxes, Boxes());
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

TEST_F(SynchronisationTest, The30thCutIsPlacedAfterItsReport)
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

TEST_F(SynchronisationTest, AddLogsEachStepInOrder)
{
    Start();
    OpenWindow();
    Added({Add(L"a", L"Rock/Pop")});
    Lines colLog = Log();
    ASSERT_EQ(colLog.size(), 12u);
    EXPECT_TRUE(std::regex_match(colLog[1], std::wregex(L"objptr colcuts = -?[0-9]+")));
    colLog.erase(colLog.begin() + 1);
    const std::wstring sRefreshing = L"Refreshing Schedlib in m_cDataBase_CutsAdded";
    EXPECT_EQ(
        colLog,
        (Lines{L"m_cDataBase_CutsAdded at start...", L"Raising Event ProgressStart....",
               L"Raised Event ProgressStart", L"Adding Cuts to cats...", L"Finished Adding Cuts to cats.",
               L"Saving History And Ordering now...there are: 2 Cats affected by this add.",
               L"Saved History and Ordering now...", L"RaisingEvent ProgressDone",
               L"Raised Event ProgressDone.", sRefreshing, L"Done with m_cDataBase_cutsadded"}));
    Forget();
    cWindows.bExists = false;
    Added({Add(L"b", L"Rock")});
    EXPECT_EQ(Logged(sRefreshing), 0);
    EXPECT_EQ(cWindows.lRefreshes, 1) << "none without a window";
}

TEST_F(SynchronisationTest, LogIsOnTheDiskWhenTheHostIsCalled)
{
    Start();
    Lines colLast;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.find(L": Updat") != std::wstring::npos)
            colLast.push_back(Log().back());
    };
    Added({Add(L"a", L"Rock")});
    EXPECT_EQ(colLast, (Lines{L"Raising Event ProgressStart....", L"RaisingEvent ProgressDone"}));
}

TEST_F(SynchronisationTest, WindowIsRefreshedAfterEachKindOfNotification)
{
    const auto cCut = Start(L"Rock 1: a");
    OpenWindow();
    Lines colSeen;
    cWindows.OnRefresh = [&] { colSeen.push_back(Tree()); };
    Added({Add(L"b", L"Rock")});
    cCut->SetCatLevel(2);
    Modified({cCut});
    Removed({CutOf(L"b")});
    EXPECT_EQ(colSeen, (Lines{L"Rock 1: a b", L"Rock 1: b | Rock 2: a", L"Rock 1: | Rock 2: a"}));
}

TEST_F(SynchronisationTest, EmptyNameOfAnAddedCutIsShownOnce)
{
    const auto cMoved = Start(L"Rock 1: moved");
    const auto cFirst = Add(L"a", L"Rock");
    const auto cSecond = Add(L"b", L"Pop");
    cFirst->AddCategoryName(L"");
    cSecond->AddCategoryName(L"");
    Added({cFirst, cSecond});
    EXPECT_EQ(boxes, (Boxes{EmptyNameBox(L"Artist of a - Title of a")}));
    EXPECT_EQ(Tree(), L"Rock 1: moved a | Pop 1: b");
    EXPECT_EQ(Logged(L"Zero-length cat names are illegal: 2 in all."), 1);
    Forget();
    cMoved->SetCategoryText(L"Pop");
    cMoved->AddCategoryName(L"");
    Added({cMoved});
    EXPECT_EQ(boxes, (Boxes{EmptyNameBox(L"Artist of moved - Title of moved")}));
    EXPECT_EQ(Tree(), L"Rock 1: a | Pop 1: b moved");
}

TEST_F(SynchronisationTest, OnlyCategoriesThatACutHasJoinedAreSaved)
{
    Start(L"Rock 1: a");
    Added({Add(L"b", L"Rock/Pop", 0), Add(L"c", L"Rock", -1)});
    EXPECT_EQ(said, Joined({{L"Start 2: Updating Scheduler with Added items"}, colAddedDone}));
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Logged(L"Saving History And Ordering now...there are: 0 Cats affected by this add."), 1);
    EXPECT_EQ(
        boxes,
        (Boxes{CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock"),
               CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Pop"),
               CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level")}));
    Added({Add(L"d", L"Rock", 0), Add(L"e", L"Pop", 1)});
    EXPECT_EQ(Tree(), L"Rock 1: a | Pop 1: e");
    EXPECT_EQ(Written(), (Lines{L"Pop"}));
}

TEST_F(SynchronisationTest, CutWhoseTextsFailInABoxJoinsItsOtherCategories)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    cCut->AddCategoryName(L"");
    cCut->failing = {"Artist", "Title"};
    cPorts.cMessages.OnShown = [&] { cCut->failing.clear(); };
    Added({cCut, Add(L"b", L"Rock")});
    EXPECT_EQ(boxes, (Boxes{EmptyNameBox(L"")}));
    EXPECT_EQ(Tree(), L"Rock 1: a b");
}

TEST_F(SynchronisationTest, MainCategoryMadeForACutThatFailsIsRemoved)
{
    const auto cKnown = Start(L"Rock 1: k");
    const auto cNew = Add(L"a", L"Pop");
    cKnown->failing = cNew->failing = {"RunTimemS"};
    Added({cNew});
    cKnown->SetCategoryText(L"Rock/Jazz");
    Modified({cKnown});
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_EQ(cLib.MainCatNames(), Lines{L"Rock"});
    cKnown->failing.clear();
    cNew->failing.clear();
    Modified({cNew, cKnown});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop", L"Jazz"}));
}

TEST_F(SynchronisationTest, ReloadInABoxLeavesTheNewTreesNumbers)
{
    Start(L"Rock 1: r");
    // In the tree before, the new cut's names are the second list; after the reload those of Jazz are.
    Add(L"j", L"Jazz");
    const auto cCut = Add(L"a", L"Pop");
    cCut->AddCategoryName(L"");
    Once(cPorts.cMessages.OnShown, [&] {
        cCut->SetCategoryText(L"Jazz/Pop");
        cLib.Populate();
    });
    Added({cCut});
    EXPECT_EQ(Order(L"Pop", 1), Keys{L"a"});
    cCut->SetCategoryText(L"Jazz");
    Modified({cCut});
    EXPECT_EQ(Tree(), L"Rock 1: r | Jazz 1: j a | Pop 1:");
}

TEST_F(SynchronisationTest, NameThatCanBeNoFileIsPlacedAndItsSaveRefused)
{
    Start();
    Added({Add(L"a", L"..\\..\\evil"), Add(L"b", L"CON"), Add(L"c", L"Ro:ck"), Add(L"d", L"Rock")});
    EXPECT_EQ(Tree(), L"..\\..\\evil 1: a | CON 1: b | Ro:ck 1: c | Rock 1: d");
    const auto Refused = [](const std::wstring& sName) {
        return CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                           L"52 Bad file name: \"" + sName + L"\"");
    };
    EXPECT_EQ(boxes, (Boxes{Refused(L"..\\..\\evil"), Refused(L"CON"), Refused(L"Ro:ck")}));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_TRUE(sPath == SifPath(L"Rock") || !sPath.ends_with(L".sif"));
}

TEST_F(SynchronisationTest, CutAnnouncedTwiceIsPlacedOnceAndKeepsItsPlace)
{
    const auto cCut = Start(L"Rock 1: a b");
    Added({cCut, cCut});
    EXPECT_EQ(Tree(), L"Rock 1: a b");
    EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
}

TEST_F(SynchronisationTest, CutsThatCannotBeReadAreReportedOnceAndTheOthersPlaced)
{
    for (const char* sMember : {"Key", "RunTimemS", "AddCategoryName", "CategoryNames", "CatLevel"})
    {
        SCOPED_TRACE(sMember);
        Start(L"");
        const auto cBad = cLib.cDataBase->AddTree(L"Rock 1: bad bad2 good");
        cBad->failing = CutOf(L"bad2")->failing = {sMember};
        Added(Cuts(cLib.cDataBase->colCuts));
        EXPECT_EQ(boxes, (Boxes{HandledError(L"m_cDataBase_CutsAdded",
                                             StandardText(91) + L" (2 cuts could not be handled)", L"91")}));
        EXPECT_EQ(Tree(), L"Rock 1: good") << "a cut is placed as a whole or not at all";
        EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
        EXPECT_EQ(Log().back(), L"Done with m_cDataBase_cutsadded");
    }
}

TEST_F(SynchronisationTest, RunTimesOutOfRangeAreReportedOnceAfterTheSave)
{
    Start();
    Added({Add(L"a", L"Rock", 1, lLongest), Add(L"b", L"Rock", 1, lLongest), Add(L"c", L"Rock", 1, lLongest),
           Add(L"d", L"Pop", 1, lLongest), Add(L"e", L"Pop", 1, lLongest)});
    EXPECT_EQ(Tree(), L"Rock 1: a b c | Pop 1: d e");
    EXPECT_EQ(Level(L"Rock", 1)->AverageRunTimemS(), lLongest) << "the sum behind the average stays true";
    const auto Overflow = [](const std::wstring& sName) {
        return HandledError(L"m_cDataBase_CutsAdded", StandardText(6) + L": run times in category " + sName,
                            L"6");
    };
    EXPECT_EQ(boxes, (Boxes{Overflow(L"Rock"), Overflow(L"Pop")}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

// ---- placing one cut ----

// The parts alone, without a manager.
class AddCutToCategoryTest : public testing::Test
{
protected:
    AddCutToCategoryTest() { cState.colMainCats = std::make_shared<CatCollection>(); }
    Lines Affected() const { return {cChanges.Affected().begin(), cChanges.Affected().end()}; }
    std::shared_ptr<FakeCut> NewCut(const std::wstring& sCategoryText, std::int32_t lLevel)
    {
        return cDataBase.Add(L"a", sCategoryText, lLevel);
    }
    std::shared_ptr<clsCat> NewMainCat(const std::wstring& sName)
    {
        return EnsureMainCat(cMod, *cState.colMainCats, sName);
    }
    void PlaceAsAssigned(const std::shared_ptr<Cut>& cCut)
    {
        NameLists cNameLists(cState.cPlacedCuts);
        cChanges.AddCutToCategories(cCut, cNameLists.Of(*cCut));
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    SchedulerState cState{cMod};
    Synchronisation cSync{cState};
    CutChanges cChanges{cState, cSync, CutChanges::Origin::DataBase};
    FakeDataBase cDataBase;
};

TEST_F(AddCutToCategoryTest, MakesWhatIsMissingAndTouchesTheCategory)
{
    NewMainCat(L"Pop");
    NewMainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cMod, L"Jazz", 3));
    PlaceAsAssigned(NewCut(L"Rock/Pop/Jazz", 3));
    EXPECT_EQ(TreeText(*cState.colMainCats), L"Pop 3: a | Jazz 3: a | Rock 3: a");
    EXPECT_EQ(Affected(), (Lines{L"Rock", L"Pop", L"Jazz"}));
}

TEST_F(AddCutToCategoryTest, PlacesIntoTheOneMainCategoryThatIsGiven)
{
    NewMainCat(L"Rock");
    NewMainCat(L"Pop");
    const auto cCut = NewCut(L"Rock", 2);
    cChanges.AddCutToCategory(cCut, L"pop");
    EXPECT_EQ(TreeText(*cState.colMainCats), L"Rock | Pop 2: a");
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(Affected(), (Lines{L"Pop"}));
}

TEST_F(AddCutToCategoryTest, RefusesAMainCategoryThatTheTreeDoesNotContain)
{
    const auto cCut = NewCut(L"Rock", 2);
    cChanges.AddCutToCategory(cCut, L"Gone");
    EXPECT_EQ(cPorts.cMessages.Boxes,
              (Boxes{CriticalBox(L"RavloScheduler",
                                 L"In addcuttocategory, main cat was specified, but doesnt exist!")}));
    EXPECT_EQ(Affected(), Lines());
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(cState.colMainCats->Count(), 0u);
}

TEST_F(AddCutToCategoryTest, TouchesCategoriesThatContainTheCutNotThoseThatRefusedIt)
{
    const auto cCut = NewCut(L"Rock", 2);
    PlaceAsAssigned(cCut);
    cChanges.CallerSaves(L"Rock");
    PlaceAsAssigned(cCut);
    EXPECT_EQ(Affected(), (Lines{L"Rock"})) << "it is there already";
    for (const std::int32_t lLevel : {0, -7})
    {
        cChanges.CallerSaves(L"Rock");
        PlaceAsAssigned(NewCut(L"Rock", lLevel));
        EXPECT_EQ(Affected(), Lines()) << lLevel;
    }
}

TEST_F(AddCutToCategoryTest, WithoutATreeThereIsNothingToPlaceToFindOrToSave)
{
    cState.colMainCats = nullptr;
    const auto cCut = NewCut(L"Rock", 1);
    cCut->lID = 0; // looked up by its object
    EXPECT_TRUE(cState.PlacesOf(cCut->Key()).empty());
    PlaceAsAssigned(cCut);
    cChanges.ModifyCut(cCut);
    EXPECT_TRUE(TakeOutOfCategories(cState, cChanges, cCut, {cCut, nullptr, 0}).empty());
    EXPECT_EQ(Affected(), Lines());
    cChanges.Finish({});
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_FALSE(cState.cPlacedCuts.Contains(cCut->Key()));
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes());
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
}

TEST_F(SynchronisationTest, AfterAFailedFirstPopulationNothingIsFollowed)
{
    const auto cCut = Add(L"a", L"Rock");
    cPorts.cFiles.MakeFolders(L"C:\\Radio");
    cLib.cDataBase->bAllCutsFails = true;
    cLib.Populate();
    Forget();
    EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
    EXPECT_EQ(cLib.cSchedMan->DataBase(), nullptr);
    CatCollection colFrom;
    const Cats colRock{std::make_shared<clsCat>(cLib.cMod, L"Rock", 0)};
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, cCut, colFrom);
    cLib.cSchedMan->RemoveCutsFromCategories({{cCut, nullptr, 0}}, [](std::size_t) {});
    cLib.cSchedMan->ShuffleCategories(colRock);
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats(colRock));
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_TRUE(colFrom.Empty());
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(boxes, Boxes());
}

// ---- cuts removed ----

TEST_F(SynchronisationTest, RemovedCutLeavesEveryCategoryAndEachIsSavedOnce)
{
    Start(L"Rock 1: a b c | Pop 1: a | Jazz 1: c");
    Removed({CutOf(L"a"), CutOf(L"b")});
    EXPECT_EQ(Tree(), L"Rock 1: c | Pop 1: | Jazz 1: c");
    EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
    EXPECT_EQ(said, Joined({{L"Start 2: Updating Scheduler with deleted items"},
                            SaveSaid(L"Rock", 1),
                            SaveSaid(L"Pop", 1),
                            colRemovedDone}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(File(L"Pop"), SifMarker(1)) << "the level stays, without cuts";
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, RemovingReportsEvery50thCutAfterAPauseAndWithoutAPump)
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

TEST_F(SynchronisationTest, RemovingACutOfNoCategorySavesNothing)
{
    Add(L"a", L"Rock");
    const auto cOther = Add(L"b", L"");
    Start();
    Removed({cOther});
    EXPECT_EQ(Tree(), L"Rock 1: a");
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(said, Joined({{L"Start 1: Updating Scheduler with deleted items"}, colRemovedDone}));
}

TEST_F(SynchronisationTest, RemovedCutIsFoundInTheTreeNotByItsPresentNames)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: a");
    cCut->SetCategoryText(L"Jazz");
    cCut->SetCatLevel(9);
    Removed({cCut});
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1:");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(SynchronisationTest, RemovedCutThatTakesNoChangesLeavesAllTheSame)
{
    const auto cBad = Add(L"a", L"Rock/Pop", 1, 100'000);
    const auto cGood = Add(L"b", L"Rock", 1, 100'000);
    Add(L"c", L"Rock", 1, 200'000);
    Start();
    cBad->failing = {"RemoveCategoryName"};
    Removed({cBad, cGood});
    EXPECT_EQ(Tree(), L"Rock 1: c | Pop 1:");
    EXPECT_EQ(TotalOf(L"Rock", 1), 200'000);
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes, (Boxes{HandledError(L"m_cDataBase_CutsRemoved",
                                         StandardText(91) + L" (1 cuts could not be handled)", L"91")}));
}

TEST_F(SynchronisationTest, RemovedCutThatHasLostTheNameLeavesNoRunTimeBehind)
{
    const auto cCut = Add(L"a", L"Rock", 1, 100'000);
    Add(L"b", L"Rock", 1, 200'000);
    Add(L"c", L"Rock", 1, 300'000);
    Start();
    cCut->RemoveCategoryName(L"Rock");
    Removed({cCut});
    EXPECT_EQ(Tree(), L"Rock 1: b c");
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
    OpenWindow();
    cWindows.OnRefresh = Look;
    cRaised->SetCatLevel(2);
    Modified({cRaised});
    cWindows.OnRefresh = nullptr;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.ends_with(L"Saving Ordering and hist for: Rock"))
            Look();
    };
    cGone->SetCategoryText(L"");
    Removed({cGone});
    cKnown->SetCatLevel(2);
    Added({cKnown}); // announced as new, although level 1 contains it
    EXPECT_EQ(colTotals, (std::vector<std::int64_t>{1'200'000, 1'000'000, 400'000}));
}

// ---- what a host does to a level itself ----

TEST_F(SynchronisationTest, NamesAnnouncedAtOnceDoNotDisturbAPlacement)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b c");
    const auto cNew = Add(L"d", L"");
    Start();
    const auto cCut = CutOf(L"b");
    for (const std::shared_ptr<FakeCut>& cAnnounced : {cCut, cNew})
        cAnnounced->OnCall = [this, cWeak = std::weak_ptr<FakeCut>(cAnnounced)](std::string_view sMember) {
            if (sMember != "AddCategoryName" && sMember != "RemoveCategoryName")
                return;
            // The name is changed, and announced, before the call that changes it is over.
            const std::shared_ptr<FakeCut> cChanged = cWeak.lock();
            const auto hook = std::exchange(cChanged->OnCall, nullptr);
            if (sMember == "AddCategoryName")
                cChanged->AddCategoryName(L"Rock");
            else
                cChanged->RemoveCategoryName(L"Rock");
            Modified({cChanged});
            cChanged->OnCall = hook;
        };
    PlaceToo(cNew, L"Rock", 1);
    EXPECT_EQ(Tree(), L"Rock 1: a b c d");
    EXPECT_EQ(TotalOf(L"Rock", 1), 4 * 180'000);
    EXPECT_TRUE(Level(L"Rock", 1)->RemoveCut(cCut));
    EXPECT_EQ(Tree(), L"Rock 1: a c d");
    EXPECT_EQ(TotalOf(L"Rock", 1), 3 * 180'000);
    EXPECT_EQ(boxes, Boxes());
}

// ---- taking one cut out ----

class RemoveCutFromCategoryTest : public StationTest
{
protected:
    // The names of the main categories it has left.
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
    ShownBox ErrorBox(std::int32_t lNumber) const
    {
        return CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]", CriticalText(lNumber));
    }

    std::set<std::wstring> colAhead; // categories with a level whose only cut this was
};

TEST_F(RemoveCutFromCategoryTest, CutLeavesTheMainCategoryGivenOrElseAll)
{
    const auto cCut = Start(L"Rock 2: a | Pop 2: a | Jazz 2: a");
    EXPECT_EQ(Remove(MainCat(L"Pop"), cCut), (Lines{L"Pop"}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
    EXPECT_EQ(Tree(), L"Rock 2: a | Pop 2: | Jazz 2: a");
    EXPECT_EQ(Remove(nullptr, cCut), (Lines{L"Rock", L"Jazz"}))
        << "the names are taken before removing takes them off the cut";
    EXPECT_EQ(cCut->CategoryText(), L"");
    EXPECT_EQ(Tree(), L"Rock 2: | Pop 2: | Jazz 2:");
}

TEST_F(RemoveCutFromCategoryTest, LevelWhoseNameTheCutHasLostIsRecalculated)
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
    const auto cCut = Start(L"Rock 1: a | Pop 1: a");
    const std::shared_ptr<clsCat> cOld = MainCat(L"Rock");
    cLib.Populate();
    Forget();
    EXPECT_EQ(Remove(cOld, cCut), (Lines{L"Rock"}));
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: a");
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(cOld->SubCat(1)->TotalCuts(), 1) << "the tree before is no longer used";
    cLib.cSchedMan->DeleteCats({MainCat(L"Rock")});
    Forget();
    EXPECT_EQ(Remove(cOld, cCut), Lines()) << "what is missing is skipped";
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(RemoveCutFromCategoryTest, GivenLevelIsUsedAndTheNameStaysWithAnotherLevel)
{
    const auto cCut = Start(L"Rock 1: a | Rock 2: b");
    PlaceToo(cCut, L"Rock", 2);
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 2), (Lines{L"Rock"}));
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 2: b");
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 1), (Lines{L"Rock"}));
    EXPECT_EQ(cCut->CategoryText(), L"");
}

TEST_F(RemoveCutFromCategoryTest, WhatIsMissingIsSkippedSilently)
{
    const auto cCut = Start(L"Rock 1: a | Gone 1: a");
    cLib.cSchedMan->colMainCats()->Remove(CategoryKey(L"Gone", 0));
    EXPECT_EQ(Remove(nullptr, cCut), (Lines{L"Rock"}));
    EXPECT_EQ(Remove(nullptr, cCut), Lines()) << "in no level any more";
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut, 77), Lines()) << "no such level";
    EXPECT_EQ(Remove(nullptr, nullptr), Lines());
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(RemoveCutFromCategoryTest, SecondaryKeyNeverRemovesADifferentCut)
{
    cLib.cDataBase->AddTree(L"Rock 1: other | Rock 2: a");
    CutOf(L"a")->SetSecondaryKey(L"other");
    Start();
    EXPECT_EQ(Remove(MainCat(L"Rock"), CutOf(L"a"), 1), Lines());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"other"}));
}

TEST_F(RemoveCutFromCategoryTest, FailureLeavesTheCutInEveryCategory)
{
    for (const int lGood : {0, 1})
    {
        SCOPED_TRACE(lGood);
        const auto cCut = Start(L"Rock 1: a b | Pop 1: a b");
        int lCalls = 0;
        cCut->OnCall = [&](std::string_view sMember) {
            if (sMember == "RemoveCategoryName" && lCalls++ == lGood)
                throw RuntimeError(error::DeviceIo);
        };
        EXPECT_EQ(Remove(nullptr, cCut), Lines());
        cCut->OnCall = nullptr;
        EXPECT_EQ(boxes, (Boxes{ErrorBox(error::DeviceIo)}));
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
        EXPECT_EQ(Tree(), L"Rock 1: a b | Pop 1: a b");
        EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
        Forget();
        Modified({cCut});
        EXPECT_EQ(Written(), Lines()) << "it is placed as before";
    }
}

TEST_F(RemoveCutFromCategoryTest, CopyMeansTheDatabasesOwnCut)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: a");
    EXPECT_EQ(Remove(MainCat(L"Rock"), cCut->CloneCut()), (Lines{L"Rock"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: a");
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Pop 1: a | Rock 1:");
}

TEST_F(RemoveCutFromCategoryTest, NotificationsDuringARemovalWait)
{
    const auto cCut = Start(L"Rock 1: a b | Pop 1: a");
    const auto cOther = CutOf(L"b");
    cCut->OnCall = [&](std::string_view sMember) {
        if (sMember != "RemoveCategoryName")
            return;
        cOther->SetCategoryText(L"Jazz");
        Modified({cOther, cCut});
        EXPECT_EQ(MainCat(L"Jazz"), nullptr);
    };
    CatCollection colFrom;
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, cCut, colFrom);
    cCut->OnCall = nullptr;
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: | Jazz 1: b");
    EXPECT_EQ(Written(), (Lines{L"Pop", L"Rock", L"Jazz"}))
        << "Pop ahead of the removal, which itself is no change of the database's";
}

TEST_F(RemoveCutFromCategoryTest, ChangeNotYetAnnouncedIsStillSeenAfterwards)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: a");
    cCut->SetCatLevel(2); // not announced
    Remove(MainCat(L"Rock"), cCut, 1);
    Modified({cCut});
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: | Pop 2: a");
}

// ---- cuts modified ----

TEST_F(SynchronisationTest, CutIsPlacedWhereItsNamesAndLevelSay)
{
    const std::wstring sBefore = L"Rock 1: a b | Rock 2: c | Pop 1: a";
    const auto Expect =
        [&](const wchar_t* sNames, std::int32_t lLevel, const std::wstring& sTree, const Lines& colWritten) {
        for (const bool bModified : {true, false})
        {
            SCOPED_TRACE(testing::PrintToString(std::wstring(sNames)) + (bModified ? " modified" : " added"));
            const auto cCut = Start(sBefore);
            cCut->SetCategoryText(sNames);
            cCut->SetCatLevel(lLevel);
            bModified ? Modified({cCut}) : Added({cCut});
            EXPECT_EQ(Tree(), sTree);
            EXPECT_EQ(cCut->CategoryText(), sNames) << "as the database set them";
            EXPECT_EQ(boxes, Boxes());
            if (!bModified)
                continue;
            EXPECT_EQ(Written(), colWritten);
            EXPECT_EQ(said, Lines()) << "no progress events, not even of the saves";
        }
    };
    Expect(L"Rock/Pop", 2, L"Rock 1: b | Rock 2: c a | Pop 1: | Pop 2: a", {L"Rock", L"Pop"});
    Expect(L"Jazz/Rock/NOCAT", 1, L"Rock 1: a b | Rock 2: c | Pop 1: | Jazz 1: a | NOCAT 1: a",
           {L"Pop", L"Jazz", L"NOCAT"});
    Expect(L"Pop/Jazz", 2, L"Rock 1: b | Rock 2: c | Pop 1: | Pop 2: a | Jazz 2: a",
           {L"Rock", L"Pop", L"Jazz"});
    Expect(L"", 1, L"Rock 1: b | Rock 2: c | Pop 1:", {L"Rock", L"Pop"});
    for (const wchar_t* sSame : {L"Rock/Pop", L"ROCK/pop", L"Pop/Rock"})
        Expect(sSame, 1, sBefore, {});
}

TEST_F(SynchronisationTest, UnknownModifiedCutIsPlacedWithoutItsEmptyName)
{
    Start(L"Rock 1: a");
    const auto cUnknown = Add(L"u", L"Rock");
    cUnknown->AddCategoryName(L"");
    Modified({cUnknown});
    EXPECT_EQ(Tree(), L"Rock 1: a u");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SynchronisationTest, CutModifiedBackAndForthIsComparedWithItsLastState)
{
    const auto cCut = Start(L"Rock 1: a b");
    for (const std::int32_t lLevel : {2, 1, 2, 1})
    {
        cCut->SetCatLevel(lLevel);
        Modified({cCut});
        EXPECT_EQ(Tree(), lLevel == 2 ? L"Rock 1: b | Rock 2: a" : L"Rock 1: b a | Rock 2:");
    }
}

TEST_F(SynchronisationTest, PlacesOfACutAreReadFromTheTree)
{
    const auto cCut = Start(L"Rock 1: a | Rock 8: b");
    PlaceToo(cCut, L"Rock", 8);
    cCut->SetCatLevel(3);
    Modified({cCut});
    EXPECT_EQ(Tree(), L"Rock 1: | Rock 3: a | Rock 8: b");
    Level(L"Rock", 3)->RemoveCut(cCut);
    EXPECT_EQ(cCut->CategoryText(), L"");
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 3), (Keys{L"a"})) << "the database wants it back";
}

TEST_F(SynchronisationTest, ModifiedCutsThatFailAreReportedOnceAndMayBeRetried)
{
    const auto cBad = Start(L"Rock 1: bad good");
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        cCut->SetCatLevel(2);
    cBad->failing = {"RunTimemS"};
    Modified(Cuts(cLib.cDataBase->colCuts));
    EXPECT_EQ(boxes, (Boxes{HandledError(L"ModifyCut [SchedMan]",
                                         StandardText(91) + L" (1 cuts could not be handled)", L"91")}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"good"}));
    cBad->failing.clear();
    Modified({cBad});
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"good", L"bad"}));
}

// ---- listening ----

TEST_F(SynchronisationTest, NotificationInsideANotificationIsHandledAfterIt)
{
    Start();
    const auto cSecond = Add(L"b", L"Rock");
    bool bDone = false;
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        if (!std::exchange(bDone, true))
        {
            Added({cSecond});
            EXPECT_EQ(Order(L"Rock", 1), Keys());
        }
    };
    Added({Add(L"a", L"Rock")});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(said, Joined({colAddedStart, SaveSaid(L"Rock", 1), colAddedDone, colAddedStart,
                            SaveSaid(L"Rock", 2), colAddedDone}));
}

TEST_F(SynchronisationTest, NotificationDuringAPopulationWaitsForTheNewTree)
{
    Add(L"a", L"Rock");
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Done: Got Main"))
        {
            Added({Add(L"late", L"Rock")});
            EXPECT_EQ(cLib.cSchedMan->colMainCats(), nullptr);
        }
    };
    cLib.Populate();
    EXPECT_EQ(Tree(), L"Rock 1: a late");
}

TEST_F(SynchronisationTest, ManagerReleasedInsideANotificationFinishesIt)
{
    for (const bool bFollowed : {false, true})
    {
        SCOPED_TRACE(bFollowed);
        Start(L"");
        HostEvents cFollower;
        cLib.cSchedMan->SetProgressFollower(bFollowed ? &cFollower : nullptr);
        const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
        cLib.cHost.OnEvent = [&](const std::wstring&) { cLib.cSchedMan.reset(); };
        Added({Add(L"a", L"Rock")});
        EXPECT_TRUE(cWeak.expired());
        EXPECT_EQ(said.front(), colAddedStart.front());
        EXPECT_EQ(said.back(), colAddedDone.front());
        EXPECT_EQ(cFollower.colSaid, bFollowed ? said : Lines());
        EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
        EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock");
    }
}

TEST_F(SynchronisationTest, DatabasesProgressIsPassedOnAndKeepsTheManager)
{
    const auto Raise = [this](int lEvent) {
        FakeDataBase& cDataBase = *cLib.cDataBase;
        lEvent == 0   ? cDataBase.Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Reading"), 7)
        : lEvent == 1 ? cDataBase.Announce(&DataBaseEvents::Progress, std::wstring(L"Row"), 3, 7)
                      : cDataBase.Announce(&DataBaseEvents::ProgressDone, std::wstring(L"Read."));
    };
    const Lines colExpected{L"Start 7: Reading", L"Progress 3/7: Row", L"Done: Read."};
    for (const int lEvent : {0, 1, 2})
    {
        Start(L"");
        // The first of two listeners drops the last reference.
        HostEvents cFollower;
        cLib.cSchedMan->SetProgressFollower(&cFollower);
        const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
        cLib.cHost.OnEvent = [&](const std::wstring&) {
            cLib.cSchedMan.reset();
            EXPECT_FALSE(cWeak.expired());
        };
        Raise(lEvent);
        EXPECT_TRUE(cWeak.expired());
        EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
        EXPECT_EQ(said, Lines{colExpected[static_cast<std::size_t>(lEvent)]});
        EXPECT_EQ(cFollower.colSaid, said) << "the second hears it too";
    }
}

TEST_F(SynchronisationTest, ErrorAfterTheCutsIsShownUnderTheNotificationsName)
{
    const auto cCut = Start(L"Rock 1: a");
    OpenWindow();
    cWindows.OnRefresh = [] { throw RuntimeError(error::ObjectNotSet); };
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
}

TEST_F(SynchronisationTest, ReloadWhileABoxIsShownEndsTheImportWithNothingLost)
{
    Start();
    Add(L"a", L"Jazz/Rock")->AddCategoryName(L"");
    Add(L"b", L"Pop");
    const Cuts colCuts = cLib.cDataBase->colCuts;
    Once(cPorts.cMessages.OnShown, [&] { cLib.Populate(); });
    Added(colCuts);
    EXPECT_EQ(Tree(), L"Jazz 1: a | Rock 1: a | Pop 1: b");
    Forget();
    Modified(colCuts);
    EXPECT_EQ(Written(), Lines()) << "remembered as the new tree has them";
}

TEST_F(SynchronisationTest, ReloadDuringAnImportEndsItWithNothingLost)
{
    Start();
    Once(cPorts.cHostLoop.OnPump, [&] { cLib.Populate(); });
    Added(AddMany(70, L"k", L"Rock"));
    EXPECT_EQ(Order(L"Rock", 1).size(), 70u);
    EXPECT_EQ(TotalOf(L"Rock", 1), 70 * 180'000);
}

TEST_F(SynchronisationTest, AnnouncementsOfTheSchedulersOwnChangesChangeNothing)
{
    const auto cCut = Start(L"Rock 1: a | Pop 2: b");
    cCut->OnCall = [&](std::string_view sMember) {
        if (sMember == "SetCatLevel" || sMember == "AddCategoryName" || sMember == "RemoveCategoryName")
            Modified({cCut});
    };
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut}, bCreated);
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 2: b a");
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

} // namespace
} // namespace ravlo::test
