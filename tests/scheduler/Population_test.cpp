// SPDX-License-Identifier: MIT
#include "scheduler/Population.h"
#include "scheduler/StationFolder.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lMaxLong = std::numeric_limits<std::int32_t>::max();
const std::wstring sTitle = L"Error in PopulateFromDataBase [cSchedMan]";

const Lines phasesOf(std::size_t cuts)
{
    const std::wstring sCuts = std::to_wstring(cuts);
    return {L"Start " + sCuts + L": Initialising Scheduler - creating categories",
            L"Done: Got Main and Sub Categories for scheduler.",
            L"Start " + sCuts + L": Creating Scheduler Items"};
}

class PopulationTest : public testing::Test
{
protected:
    PopulationTest() { cPorts.cFiles.MakeFolders(L"C:\\Radio"); }

    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategoryText,
                                 std::int32_t lLevel, std::int32_t lRunTime = 180'000)
    {
        return cLibrary.cDataBase->Add(sKey, sCategoryText, lLevel, lRunTime);
    }
    // Lets time pass while the lItem-th cut is worked on, once in each phase.
    void TakeTime(std::size_t item, std::uint32_t lMilliseconds)
    {
        m_colTimes[item] = lMilliseconds;
        static_cast<FakeCut&>(*cLibrary.cDataBase->colCuts[item - 1]).OnCall =
            [this, item](const std::string&) {
            const auto lPhase = std::count_if(colSaid.begin(), colSaid.end(), [](const std::wstring& sLine) {
                return sLine.starts_with(L"Start");
            });
            if (std::exchange(m_colLastPhase[item], lPhase) != lPhase)
                cPorts.cClock.Advance(m_colTimes[item]);
        };
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    Boxes& boxes = cPorts.cMessages.Boxes;
    Lines& colSaid = cLibrary.cHost.colSaid;

private:
    std::map<std::size_t, std::uint32_t> m_colTimes;
    std::map<std::size_t, std::ptrdiff_t> m_colLastPhase;
};

// ---- arguments, folders, settings

TEST_F(PopulationTest, AnEmptyPathIsRefusedAndNothingElseHappens)
{
    cPorts.cFiles.ClearOperations();
    cLibrary.Populate(L"");
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"'strAppPath' Must be the 'app.path' of the calling app!")});
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), L"");
    EXPECT_EQ(cLibrary.cSchedMan->colMainCats(), nullptr);
    EXPECT_EQ(cLibrary.cSchedMan->DataBase(), nullptr);
    EXPECT_TRUE(colSaid.empty());
}

TEST_F(PopulationTest, WithoutADatabaseOnlyThePathTheFoldersAndTheSettingsAreTaken)
{
    cPorts.cFiles.Put(sSettingsPath, "45\r\n46\r\n47\r\n");
    cLibrary.cDataBase = nullptr;
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"PopulateFromDatabase in clsSchedMan actually does need a database!")});
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), sRadio);
    EXPECT_TRUE(cPorts.cFiles.FolderExists(L"C:\\Radio\\Scheduler\\Rules"));
    EXPECT_EQ(cLibrary.cMod.GlobalTitleSepMins(), 46);
    EXPECT_EQ(cLibrary.cSchedMan->colMainCats(), nullptr);
    EXPECT_TRUE(colSaid.empty());
}

TEST_F(PopulationTest, TheFoldersAreCreatedInOrderAndTheLastIsVisitedTwice)
{
    cPorts.cFiles.ClearOperations();
    CreateFolders(cLibrary.cMod, sRadio);
    EXPECT_EQ(cPorts.cFiles.Operations(), (Lines{L"CreateFolder C:\\Radio\\Scheduler",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\History_and_Ordering",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\Rules",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\Debugging Logs"}));
    cPorts.cFiles.ClearOperations();
    CreateFolders(cLibrary.cMod, sRadio);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "what is there is left alone";
    EXPECT_TRUE(boxes.empty());
}

TEST_F(PopulationTest, AFolderThatCannotBeCreatedIsShownAndPopulationGoesOn)
{
    Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate(L"C:\\Nowhere");
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in CreateFolders [scheduler]", L"76 Path not found")})
        << "only the last component is created, and the first failure ends it";
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), Keys{L"a.mp3"});
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), L"C:\\Nowhere\\");
}

TEST_F(PopulationTest, TheSettingsAreReadAtEveryPopulation)
{
    cPorts.cFiles.Put(sSettingsPath, "1\r\n2\r\n3\r\n");
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 1);
    cPorts.cFiles.Put(sSettingsPath, "7\r\n8\r\n9\r\n");
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 7);
}

// ---- the tree

TEST_F(PopulationTest, CutsArePlacedInTheDatabasesOrder)
{
    Add(L"c.mp3", L"Rock/Pop", 2);
    Add(L"a.mp3", L"Pop", 1);
    Add(L"b.mp3", L"rock", 2);
    Add(L"none.mp3", L"", 1);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Pop"})) << "in the order of their first cuts";
    EXPECT_EQ(cLibrary.cSchedMan->colMainCats()->KeyAt(0)->Text(), L"Rock\t0");
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->CatLevel(), 0);
    EXPECT_EQ(cLibrary.Order(L"Rock", 2), (Keys{L"c.mp3", L"b.mp3"}));
    EXPECT_EQ(cLibrary.Order(L"Pop", 1), Keys{L"a.mp3"});
    EXPECT_EQ(cLibrary.Order(L"Pop", 2), Keys{L"c.mp3"});
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->SubCats()->Count(), 1u);
    EXPECT_EQ(cLibrary.cSchedMan->DataBase(), cLibrary.cDataBase);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(PopulationTest, ALevelWithinAnAssignmentIsIgnored)
{
    const auto cCut = Add(L"a.mp3", L"Rock\t7", 2);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), Lines{L"Rock"});
    EXPECT_EQ(cLibrary.Order(L"Rock", 2), Keys{L"a.mp3"}) << "the level is the cut's own";
    EXPECT_EQ(cLibrary.Level(L"Rock", 7), nullptr);
}

TEST_F(PopulationTest, TheSameNameTwiceCountsOnce)
{
    Add(L"a.mp3", L"Rock\t1/ROCK\t2", 1);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), Lines{L"Rock"});
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->TotalCuts(), 1);
}

TEST_F(PopulationTest, NamesThatMeanSomethingElsewhereAreCategoriesHere)
{
    Add(L"a.mp3", L"ALL AUDIO/NOCAT/AC\\DC/12", 1);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"ALL AUDIO", L"NOCAT", L"AC\\DC", L"12"}));
}

TEST_F(PopulationTest, AnEmptyDatabaseGivesAnEmptyTree)
{
    cLibrary.Populate();
    ASSERT_NE(cLibrary.cSchedMan->colMainCats(), nullptr);
    EXPECT_TRUE(cLibrary.cSchedMan->colMainCats()->Empty());
    EXPECT_EQ(colSaid, phasesOf(0));
}

TEST_F(PopulationTest, ALevelPastTheOnesThatCanBeTypedIsPlacedNormally)
{
    Add(L"a.mp3", L"Rock", 32766);
    Add(L"b.mp3", L"Rock", lMaxLong);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.Order(L"Rock", 32766), Keys{L"a.mp3"});
    EXPECT_EQ(cLibrary.Order(L"Rock", lMaxLong), Keys{L"b.mp3"});
}

// ---- what the files add

TEST_F(PopulationTest, ListedCategoryWithoutCutsIsPresent)
{
    Add(L"a.mp3", L"Rock", 1);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nJazz\r\nrock\r\n123\r\nBlues");
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz", L"Blues"}));
    EXPECT_EQ(cLibrary.MainCat(L"Jazz")->CatLevel(), 0);
    EXPECT_EQ(cLibrary.MainCat(L"Jazz")->SubCats()->Count(), 0u);
}

TEST_F(PopulationTest, SavedSubstituteOfADatabaseCategoryIsThatCategory)
{
    Add(L"a.mp3", L"\u65E5\u672C/ Lead", 1);
    cPorts.cFiles.Put(sMainCatsPath, "\r\n??\r\n Lead\r\n???");
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"\u65E5\u672C", L" Lead", L"???"}));
}

TEST_F(PopulationTest, ADamagedListGivesTheNamesBeforeTheDamage)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nJazz\r\nJazz\r\nBlues");
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), Lines{L"Jazz"});
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in GetSavedCatNames [cSchedMan] ",
                                       L"457 " + StandardDescription(error::KeyAlreadyExists))});
}

TEST_F(PopulationTest, TheSavedOrdersAndEmptyLevelsComeBack)
{
    Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Rock", 1);
    Add(L"new.mp3", L"Rock", 1);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("b.mp3", 1) + SifCut("a.mp3", 1) + SifMarker(4));
    cPorts.cFiles.Put(SifPath(L"Jazz"), SifMarker(2));
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"new.mp3", L"b.mp3", L"a.mp3"}))
        << "a new cut comes up first";
    ASSERT_TRUE(cLibrary.Level(L"Rock", 4));
    ASSERT_TRUE(cLibrary.Level(L"Jazz", 2));
    EXPECT_EQ(cLibrary.Level(L"Jazz", 2)->TotalCuts(), 0);
}

TEST_F(PopulationTest, OneCategorysBadFileDoesNotKeepTheOthersFromTheirs)
{
    Add(L"a.mp3", L"Rock/Pop", 1);
    Add(L"b.mp3", L"Rock/Pop", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("a.mp3", 3));
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("b.mp3", 1) + SifCut("a.mp3", 1));
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 3")});
    EXPECT_EQ(cLibrary.Order(L"Pop", 1), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(PopulationTest, ARestartBringsEverythingBack)
{
    Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Rock", 1);
    Add(L"c.mp3", L"Rock", 1);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cLibrary.Populate();
    cLibrary.Level(L"Rock", 1)->SchedCuts()->MoveToEnd(0);
    cLibrary.MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, L"Jazz", 3));
    EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
    cLibrary.Restart();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"b.mp3", L"c.mp3", L"a.mp3"}));
    EXPECT_TRUE(cLibrary.Level(L"Jazz", 3));
    EXPECT_TRUE(boxes.empty());
}

// ---- progress

TEST_F(PopulationTest, ThePhasesAreToldOfInOrder)
{
    Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Pop", 1);
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("b.mp3", 1));
    cLibrary.Populate();
    EXPECT_EQ(colSaid, (Lines{L"Start 2: Initialising Scheduler - creating categories",
                              L"Done: Got Main and Sub Categories for scheduler.",
                              L"Start 2: Creating Scheduler Items",
                              L"Start 1: Getting Ordering and Scheduler History for: Pop",
                              L"Done: Got Scheduler [from file] Info for: Pop"}));
}

TEST_F(PopulationTest, EveryTwentiethCutIsReportedAtMostOncePer100Milliseconds)
{
    for (int lCut = 1; lCut <= 130; ++lCut)
        Add(std::to_wstring(lCut), L"Pop/Rock", 3);
    // In both phases, and a pause that the work has earned takes 1 ms more.
    TakeTime(1, 100);   // 20: exactly 100, not due
    TakeTime(40, 1);    // 40: due; too little work for a pause
    TakeTime(59, 100);  // 60: exactly 100 since the last report
    TakeTime(99, 101);  // 80: due by the pause at 60 alone; 100: due
    TakeTime(130, 999); // no sample comes after it
    cLibrary.Populate();
    EXPECT_EQ(colSaid, (Lines{L"Start 130: Initialising Scheduler - creating categories",
                              L"Progress 40/130: Creating: Rock3", L"Progress 80/130: Creating: Rock3",
                              L"Progress 100/130: Creating: Rock3",
                              L"Done: Got Main and Sub Categories for scheduler.",
                              L"Start 130: Creating Scheduler Items",
                              L"Progress 40/130: 40Added: Artist of 40 - Title of 40",
                              L"Progress 80/130: 80Added: Artist of 80 - Title of 80",
                              L"Progress 100/130: 100Added: Artist of 100 - Title of 100"}));
}

TEST_F(PopulationTest, TheReportOfACutWithoutCategoriesNamesNone)
{
    for (int lCut = 1; lCut <= 20; ++lCut)
        Add(std::to_wstring(lCut), L"", 3);
    static_cast<FakeCut&>(*cLibrary.cDataBase->colCuts[18]).SetArtist(L"");
    static_cast<FakeCut&>(*cLibrary.cDataBase->colCuts[19]).SetArtist(L"");
    static_cast<FakeCut&>(*cLibrary.cDataBase->colCuts[19]).SetTitle(L"");
    TakeTime(20, 101);
    cLibrary.Populate();
    EXPECT_EQ(colSaid[1], L"Progress 20/20: Creating: ");
    EXPECT_EQ(colSaid.back(), L"Progress 20/20: 20Added:  - ");
}

TEST_F(PopulationTest, ACutWhoseTextsFailInAReportIsPlacedAllTheSame)
{
    for (int lCut = 1; lCut <= 40; ++lCut)
        Add(std::to_wstring(lCut), L"Rock", 1);
    static_cast<FakeCut&>(*cLibrary.cDataBase->colCuts[19]).failing = {"Artist", "Title"};
    TakeTime(20, 101);
    TakeTime(40, 101);
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cLibrary.Order(L"Rock", 1).size(), 40u);
    EXPECT_EQ(Lines(colSaid.end() - 2, colSaid.end()),
              (Lines{L"Progress 20/40: ", L"Progress 40/40: 40Added: Artist of 40 - Title of 40"}))
        << "the report comes, without the text";
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"DISPLAYERROR, PopulateFromDataBase, progress 91 " +
                                           StandardDescription(error::ObjectNotSet)}));
}

TEST_F(PopulationTest, PausesFor1MillisecondAtMostEvery15Milliseconds)
{
    for (int lCut = 1; lCut <= 100; ++lCut)
        Add(std::to_wstring(lCut), L"Rock", 1);
    cLibrary.Populate();
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 0) << "a library read in no time is not slowed";
    TakeTime(10, 14); // 20: 14 ms of work, no pause
    TakeTime(30, 1);  // 40: 15, a pause
    TakeTime(50, 15); // 60: a pause
    TakeTime(70, 7);  // 80: none
    cPorts.cHostLoop.OnSleep = [](std::uint32_t lMilliseconds) { EXPECT_EQ(lMilliseconds, 1u); };
    colSaid.clear();
    cLibrary.Populate();
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 4) << "two in each of the two phases";
}

// ---- cuts that cannot be placed

TEST_F(PopulationTest, NamesWithoutCharactersAreRefusedWithOneBoxAndCountedInTheLog)
{
    Add(L"a.mp3", L"Rock", 1)->AddCategoryName(L"");
    Add(L"b.mp3", L"\t1", 1);
    Add(L"c.mp3", L"\t2/Pop", 1);
    cLibrary.Populate();
    EXPECT_EQ(boxes,
              Boxes{OkBox(BoxIcon::None, L"RavloScheduler", L"Zero-length cat names are illegal [1]")});
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(cLibrary.Order(L"Pop", 1), Keys{L"c.mp3"});
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Zero-length cat names are illegal: 3 in all."});
}

TEST_F(PopulationTest, CutsWithoutALevelGiveOneBoxPerCategoryAndAreCountedInTheLog)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        Add(sKey, L"Rock", 0);
    Add(L"d", L"Pop", 0);
    const auto cGood = Add(L"e", L"Rock", 1);
    cLibrary.Populate();
    EXPECT_EQ(
        boxes,
        (Boxes{CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock"),
               CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Pop")}));
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->TotalCuts(), 1);
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Not filed in category Rock, having no level: 2 more cuts."});
}

TEST_F(PopulationTest, NegativeLevelsGiveOneBoxPerCategoryAndALoggedCount)
{
    const auto cFirst = Add(L"a", L"Rock", -1);
    Add(L"b", L"Rock", std::numeric_limits<std::int32_t>::min());
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level")});
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->SubCats()->Count(), 0u);
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Not filed in category Rock, having no level: 1 more cuts."});
}

TEST_F(PopulationTest, RunTimeOutOfRangeIsReportedOncePerCategoryAtTheEnd)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        Add(sKey, L"Rock/Pop", 1, lMaxLong);
    Add(L"d", L"Jazz", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("c", 1) + SifCut("b", 1) + SifCut("a", 1));
    cPorts.cMessages.OnShown = [this] {
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"c", L"b", L"a"})) << "filed, put in order and in use";
        EXPECT_EQ(cLibrary.Order(L"Pop", 1), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(cLibrary.Order(L"Jazz", 1), Keys{L"d"});
    };
    cLibrary.Populate();
    EXPECT_EQ(boxes, (Boxes{CriticalBox(sTitle, L"6 Overflow: run times in category Rock"),
                            CriticalBox(sTitle, L"6 Overflow: run times in category Pop")}));
    EXPECT_EQ(cLibrary.Level(L"Rock", 1)->AverageRunTimemS(), lMaxLong);
}

TEST_F(PopulationTest, OneBadCutStopsNothing)
{
    for (const char* sMember : {"CategoryNames", "CatLevel", "Key", "RunTimemS", "AddCategoryName"})
    {
        RadioPorts cOther;
        cOther.cFiles.MakeFolders(L"C:\\Radio");
        Library cOtherLibrary(cOther);
        cOtherLibrary.cDataBase->Add(L"a", L"Rock", 1);
        cOtherLibrary.cDataBase->Add(L"bad", L"Rock", 1)->failing = {sMember};
        cOtherLibrary.cDataBase->Add(L"b", L"Rock/Pop", 1);
        cOtherLibrary.Populate();
        EXPECT_EQ(cOther.cMessages.Boxes,
                  Boxes{CriticalBox(sTitle,
                                    L"91 Object variable or With block variable not set (1 cuts could not be "
                                    L"handled)")})
            << sMember;
        Keys colOrder = cOtherLibrary.Order(L"Rock", 1);
        std::erase(colOrder, L"bad"); // may stand there when only its name could not be registered
        EXPECT_EQ(colOrder, (Keys{L"a", L"b"})) << sMember;
        EXPECT_EQ(cOtherLibrary.Order(L"Pop", 1), Keys{L"b"}) << sMember;
    }
}

TEST_F(PopulationTest, ManyBadCutsAreCountedInOneReport)
{
    for (int lCut = 0; lCut < 50; ++lCut)
        Add(std::to_wstring(lCut), L"Rock", 1)->failing = {lCut % 2 ? "CategoryNames" : "Path"};
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(
                         sTitle, L"91 Object variable or With block variable not set (25 cuts could not "
                                 L"be handled)")});
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->TotalCuts(), 25);
}

TEST_F(PopulationTest, ACategoryWhoseNameIsNoFilesNameIsScheduledAllTheSame)
{
    Add(L"a.mp3", L"AC\\DC/Rock", 1);
    cLibrary.Populate();
    EXPECT_TRUE(boxes.empty()) << "there is no file to read under such a name";
    EXPECT_EQ(cLibrary.Order(L"AC\\DC", 1), Keys{L"a.mp3"});
    EXPECT_FALSE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                       L"52 Bad file name: \"AC\\DC\"")});
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), SifCut("a.mp3", 1));
}

// ---- populations, picks and saves inside a population

TEST_F(PopulationTest, APopulationInsideAPopulationIsIgnored)
{
    Add(L"a.mp3", L"Rock", 1);
    int lNested = 0;
    cLibrary.cHost.OnEvent = [&](const std::wstring&) {
        ++lNested;
        auto cOther = std::make_shared<FakeDataBase>();
        cOther->Add(L"z.mp3", L"Other", 1);
        cLibrary.cSchedMan->PopulateFromDataBase(cOther, L"C:\\Other");
    };
    cLibrary.Populate();
    EXPECT_EQ(lNested, 3);
    EXPECT_EQ(colSaid, phasesOf(1)) << "nothing but the outer one's events";
    EXPECT_EQ(cLibrary.MainCatNames(), Lines{L"Rock"});
    EXPECT_EQ(cLibrary.cSchedMan->DataBase(), cLibrary.cDataBase);
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), sRadio);
    EXPECT_EQ(cPorts.LogMessages(),
              Lines(3, L"PopulateFromDataBase was called while it is running; ignored."));
    cLibrary.cHost.OnEvent = nullptr;
    cLibrary.Populate();
    EXPECT_EQ(colSaid.size(), 6u) << "afterwards it may be called again";
}

TEST_F(PopulationTest, NamesChangedBetweenThePhasesAreUsed)
{
    const auto cCut = Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Rock", 1);
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Done: Got Main"))
        {
            cCut->SetCategoryText(L"Jazz/Rock");
            cCut->SetCatLevel(3);
        }
    };
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    EXPECT_EQ(cLibrary.Order(L"Jazz", 3), Keys{L"a.mp3"});
    EXPECT_EQ(cLibrary.Order(L"Rock", 3), Keys{L"a.mp3"});
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), Keys{L"b.mp3"});
    // What it was placed under is remembered: its announcement changes nothing.
    cPorts.cFiles.ClearOperations();
    cLibrary.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cCut});
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_EQ(cCut->CategoryText(), L"Jazz/Rock");
}

TEST_F(PopulationTest, NothingIsSeenOrSavedOfATreeThatIsBeingBuilt)
{
    Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Rock", 1);
    const std::string good = SifCut("b.mp3", 1) + SifCut("a.mp3", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), good);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cLibrary.cHost.OnEvent = [&](const std::wstring&) {
        EXPECT_EQ(cLibrary.cSchedMan->colMainCats(), nullptr);
        EXPECT_FALSE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
        EXPECT_FALSE(cLibrary.cSchedMan->SaveCatNames());
    };
    cLibrary.Populate();
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), good);
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nJazz");
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"b.mp3", L"a.mp3"}));
}

TEST_F(PopulationTest, WhileATreeIsReplacedSavesAreThoseOfTheOldOne)
{
    Add(L"a.mp3", L"Rock", 1);
    Add(L"b.mp3", L"Rock", 1);
    const std::string good = SifCut("b.mp3", 1) + SifCut("a.mp3", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), good);
    cLibrary.Populate();
    const auto colOld = cLibrary.cSchedMan->colMainCats();
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!sLine.starts_with(L"Start 2"))
            return;
        EXPECT_EQ(cLibrary.cSchedMan->colMainCats(), colOld);
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"b.mp3", L"a.mp3"}));
        const auto hook = std::exchange(cLibrary.cHost.OnEvent, nullptr);
        EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
        cLibrary.cHost.OnEvent = hook;
        EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), good);
    };
    cLibrary.Populate();
    EXPECT_NE(cLibrary.cSchedMan->colMainCats(), colOld);
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), good);
}

TEST_F(PopulationTest, WhileTheLibraryMovesToAnotherFolderSavesStayInTheOldOne)
{
    Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\MainCats.txt", "\r\nRock\r\nJazz");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif",
                      SifMarker(5) + SifCut("a.mp3", 1));
    cLibrary.cHost.OnEvent = [&](const std::wstring&) {
        const auto hook = std::exchange(cLibrary.cHost.OnEvent, nullptr);
        EXPECT_TRUE(cLibrary.cSchedMan->SaveCatNames());
        EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
        cLibrary.cHost.OnEvent = hook;
    };
    cLibrary.Populate(L"C:\\Other");
    cLibrary.cHost.OnEvent = nullptr;
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    EXPECT_TRUE(cLibrary.Level(L"Rock", 5));
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), SifCut("a.mp3", 1));
    EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(cLibrary.MainCat(L"Rock")));
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif"),
              SifCut("a.mp3", 1) + SifMarker(5));
}

// ---- the database

TEST_F(PopulationTest, TheOldDatabaseIsLeftBeforeTheNewOneIsFollowed)
{
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cDataBase->colListeners.size(), 1u);
    const auto cOld = cLibrary.cDataBase;
    cLibrary.Populate();
    EXPECT_EQ(cOld->colListeners.size(), 1u) << "followed once, however often populated";
    cLibrary.cDataBase = std::make_shared<FakeDataBase>();
    cLibrary.Populate();
    EXPECT_TRUE(cOld->colListeners.empty());
    EXPECT_EQ(cLibrary.cDataBase->colListeners.size(), 1u);
    cLibrary.cSchedMan->SetEvents(nullptr);
    cLibrary.cSchedMan = nullptr;
    EXPECT_TRUE(cLibrary.cDataBase->colListeners.empty());
}

TEST_F(PopulationTest, UnreadableDatabaseIsReportedAndTheOldTreeStays)
{
    Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    const auto colOld = cLibrary.cSchedMan->colMainCats();
    const auto cFirst = cLibrary.cDataBase;
    cLibrary.cDataBase = std::make_shared<FakeDataBase>();
    cLibrary.cDataBase->bAllCutsFails = true;
    cLibrary.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(sTitle, L"57 Device I/O error")});
    EXPECT_EQ(cLibrary.cSchedMan->colMainCats(), colOld);
    EXPECT_EQ(cLibrary.cSchedMan->DataBase(), cFirst) << "and the tree's own database is followed again";
    EXPECT_EQ(cFirst->colListeners.size(), 1u);
    EXPECT_TRUE(cLibrary.cDataBase->colListeners.empty());
    cFirst->Announce(&DataBaseEvents::CutsAdded, Cuts{cFirst->Add(L"b.mp3", L"Rock", 1)});
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"a.mp3", L"b.mp3"}));
    cLibrary.cDataBase->bAllCutsFails = false;
    cLibrary.Populate();
    EXPECT_TRUE(cLibrary.cSchedMan->colMainCats()->Empty()) << "and it can be populated again";
}

} // namespace
} // namespace ravlo::test
