// SPDX-License-Identifier: MIT
#include "scheduler/Population.h"
#include "scheduler/StationFolder.h"

#include "support/SyncTest.h"

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

Lines PhasesOf(std::size_t cuts)
{
    const std::wstring sCuts = std::to_wstring(cuts);
    return {L"Start " + sCuts + L": Initialising Scheduler - creating categories",
            L"Done: Got Main and Sub Categories for scheduler.",
            L"Start " + sCuts + L": Creating Scheduler Items"};
}

class PopulationTest : public StationTest
{
protected:
    PopulationTest() { cPorts.cFiles.MakeFolders(L"C:\\Radio"); }

    FakeCut& CutAt(std::size_t item) const
    {
        return static_cast<FakeCut&>(*cLib.cDataBase->colCuts[item - 1]);
    }
    // Lets time pass while the item-th cut is worked on, once in each phase.
    void TakeTime(std::size_t item, std::uint32_t lMilliseconds)
    {
        m_colTimes[item] = lMilliseconds;
        CutAt(item).OnCall = [this, item](std::string_view) {
            const auto phase = std::count_if(said.begin(), said.end(), [](const std::wstring& sLine) {
                return sLine.starts_with(L"Start");
            });
            if (std::exchange(m_colLastPhase[item], phase) != phase)
                cPorts.cClock.Advance(m_colTimes[item]);
        };
    }

private:
    std::map<std::size_t, std::uint32_t> m_colTimes;
    std::map<std::size_t, std::ptrdiff_t> m_colLastPhase;
};

// ---- arguments, folders, settings

TEST_F(PopulationTest, EmptyPathIsRefusedAndNothingElseHappens)
{
    cPorts.cFiles.ClearOperations();
    cLib.Populate(L"");
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"'strAppPath' Must be the 'app.path' of the calling app!")});
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_EQ(cLib.cSchedMan->AppPath(), L"");
    EXPECT_EQ(cLib.cSchedMan->colMainCats(), nullptr);
    EXPECT_EQ(cLib.cSchedMan->DataBase(), nullptr);
    EXPECT_TRUE(said.empty());
}

TEST_F(PopulationTest, WithoutADatabasePathFoldersAndSettingsAreTaken)
{
    cPorts.cFiles.Put(sSettingsPath, "45\r\n46\r\n47\r\n");
    cLib.cDataBase = nullptr;
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"PopulateFromDatabase in clsSchedMan actually does need a database!")});
    EXPECT_EQ(cLib.cSchedMan->AppPath(), sRadio);
    EXPECT_TRUE(cPorts.cFiles.FolderExists(L"C:\\Radio\\Scheduler\\Rules"));
    EXPECT_EQ(cLib.cMod.GlobalTitleSepMins(), 46);
    EXPECT_EQ(cLib.cSchedMan->colMainCats(), nullptr);
    EXPECT_TRUE(said.empty());
}

TEST_F(PopulationTest, FoldersThatAreMissingAreCreatedInOrder)
{
    cPorts.cFiles.ClearOperations();
    CreateFolders(cLib.cMod, sRadio);
    EXPECT_EQ(cPorts.cFiles.Operations(), (Lines{L"CreateFolder C:\\Radio\\Scheduler",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\History_and_Ordering",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\Rules",
                                                 L"CreateFolder C:\\Radio\\Scheduler\\Debugging Logs"}));
    cPorts.cFiles.ClearOperations();
    CreateFolders(cLib.cMod, sRadio);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "what is there is left alone";
    EXPECT_TRUE(boxes.empty());
}

TEST_F(PopulationTest, FolderThatCannotBeCreatedIsShownAndPopulationContinues)
{
    Add(L"a", L"Rock");
    cLib.Populate(L"C:\\Nowhere");
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in CreateFolders [scheduler]", L"76 Path not found")})
        << "only the last component is created, and the first failure ends it";
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
    EXPECT_EQ(cLib.cSchedMan->AppPath(), L"C:\\Nowhere\\");
}

TEST_F(PopulationTest, SettingsAreReadAtEveryPopulation)
{
    cPorts.cFiles.Put(sSettingsPath, "1\r\n2\r\n3\r\n");
    cLib.Populate();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 1);
    cPorts.cFiles.Put(sSettingsPath, "7\r\n8\r\n9\r\n");
    cLib.Populate();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 7);
}

// ---- the tree

TEST_F(PopulationTest, CutsArePlacedInTheDatabasesOrder)
{
    Add(L"c", L"Rock/Pop", 2);
    Add(L"a", L"Pop");
    Add(L"b", L"rock", 2);
    Add(L"none", L"");
    Add(L"t", L"Rock\t7/ROCK\t1", 2); // a cut has one level, and each name once
    Add(L"n", L"ALL AUDIO/NOCAT/AC\\DC/12");
    Add(L"h", L"Rock", 32766); // higher than a user can type
    Add(L"m", L"Rock", lMaxLong);
    cLib.Populate();
    EXPECT_EQ(Tree(), L"Rock 2: c b t | Rock 32766: h | Rock 2147483647: m | Pop 1: a | Pop 2: c | "
                      L"ALL AUDIO 1: n | NOCAT 1: n | AC\\DC 1: n | 12 1: n");
    EXPECT_EQ(cLib.cSchedMan->colMainCats()->KeyAt(0)->Text(), L"Rock\t0");
    EXPECT_EQ(MainCat(L"Rock")->CatLevel(), 0);
    EXPECT_EQ(cLib.cSchedMan->DataBase(), cLib.cDataBase);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(PopulationTest, EmptyDatabaseGivesAnEmptyTree)
{
    cLib.Populate();
    ASSERT_NE(cLib.cSchedMan->colMainCats(), nullptr);
    EXPECT_TRUE(cLib.cSchedMan->colMainCats()->Empty());
    EXPECT_EQ(said, PhasesOf(0));
}

// ---- what the files add

TEST_F(PopulationTest, ListedCategoryWithoutCutsIsPresent)
{
    Add(L"a", L"Rock");
    cPorts.cFiles.Put(sMainCatsPath, "\r\nJazz\r\nrock\r\n123\r\nBlues");
    cLib.Populate();
    EXPECT_EQ(Tree(), L"Rock 1: a | Jazz | Blues");
    EXPECT_EQ(MainCat(L"Jazz")->CatLevel(), 0);
}

TEST_F(PopulationTest, SavedSubstituteOfADatabaseCategoryIsThatCategory)
{
    Add(L"a", L"\u65E5\u672C/ Lead");
    cPorts.cFiles.Put(sMainCatsPath, "\r\n??\r\n Lead\r\n???");
    cLib.Populate();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"\u65E5\u672C", L" Lead", L"???"}));
}

TEST_F(PopulationTest, DamagedListGivesTheNamesBeforeTheDamage)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nJazz\r\nJazz\r\nBlues");
    cLib.Populate();
    EXPECT_EQ(cLib.MainCatNames(), Lines{L"Jazz"});
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in GetSavedCatNames [cSchedMan] ",
                                       L"457 " + StandardDescription(error::KeyAlreadyExists))});
}

TEST_F(PopulationTest, SavedOrdersAndEmptyLevelsComeBack)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b new");
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("b", 1) + SifCut("a", 1) + SifMarker(4));
    cPorts.cFiles.Put(SifPath(L"Jazz"), SifMarker(2));
    cLib.Populate();
    EXPECT_EQ(Tree(), L"Rock 1: new b a | Rock 4: | Jazz 2:") << "a new cut comes up first";
}

TEST_F(PopulationTest, BadFileOfOneCategoryDoesNotAffectOthers)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b | Pop 1: a b");
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("a", 3));
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("b", 1) + SifCut("a", 1));
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 3")});
    EXPECT_EQ(Tree(), L"Rock 1: a b | Pop 1: b a");
}

TEST_F(PopulationTest, RestartBringsEverythingBack)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b c");
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cLib.Populate();
    Level(L"Rock", 1)->SchedCuts()->MoveToEnd(0);
    MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Jazz", 3));
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 1: b c a | Jazz 3:");
    EXPECT_TRUE(boxes.empty());
}

// ---- progress

TEST_F(PopulationTest, PhasesAreReportedInOrder)
{
    Add(L"a", L"Rock");
    Add(L"b", L"Pop");
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("b", 1));
    cLib.Populate();
    EXPECT_EQ(said, (Lines{L"Start 2: Initialising Scheduler - creating categories",
                           L"Done: Got Main and Sub Categories for scheduler.",
                           L"Start 2: Creating Scheduler Items",
                           L"Start 1: Getting Ordering and Scheduler History for: Pop",
                           L"Done: Got Scheduler [from file] Info for: Pop"}));
}

TEST_F(PopulationTest, EveryTwentiethCutIsReportedAtMostOncePer100Milliseconds)
{
    AddMany(130, L"", L"Pop/Rock", 3);
    // In both phases, and a pause that the work has earned takes 1 ms more.
    TakeTime(1, 100);   // 20: exactly 100, not due
    TakeTime(40, 1);    // 40: due; too little work for a pause
    TakeTime(59, 100);  // 60: exactly 100 since the last report
    TakeTime(99, 101);  // 80: due by the pause at 60 alone; 100: due
    TakeTime(130, 999); // no sample comes after it
    cLib.Populate();
    EXPECT_EQ(said, (Lines{L"Start 130: Initialising Scheduler - creating categories",
                           L"Progress 40/130: Creating: Rock3", L"Progress 80/130: Creating: Rock3",
                           L"Progress 100/130: Creating: Rock3",
                           L"Done: Got Main and Sub Categories for scheduler.",
                           L"Start 130: Creating Scheduler Items",
                           L"Progress 40/130: 40Added: Artist of 40 - Title of 40",
                           L"Progress 80/130: 80Added: Artist of 80 - Title of 80",
                           L"Progress 100/130: 100Added: Artist of 100 - Title of 100"}));
}

TEST_F(PopulationTest, ReportOfACutWithoutCategoriesNamesNone)
{
    AddMany(20, L"", L"", 3);
    CutAt(19).SetArtist(L"");
    CutAt(20).SetArtist(L"");
    CutAt(20).SetTitle(L"");
    TakeTime(20, 101);
    cLib.Populate();
    EXPECT_EQ(said[1], L"Progress 20/20: Creating: ");
    EXPECT_EQ(said.back(), L"Progress 20/20: 20Added:  - ");
}

TEST_F(PopulationTest, CutWhoseTextsFailInAReportIsPlacedAllTheSame)
{
    for (int lCut = 1; lCut <= 40; ++lCut)
        Add(std::to_wstring(lCut), L"Rock", 1);
    CutAt(20).failing = {"Artist", "Title"};
    TakeTime(20, 101);
    TakeTime(40, 101);
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Order(L"Rock", 1).size(), 40u);
    EXPECT_EQ(Lines(said.end() - 2, said.end()),
              (Lines{L"Progress 20/40: ", L"Progress 40/40: 40Added: Artist of 40 - Title of 40"}))
        << "the report comes, without the text";
    EXPECT_EQ(Log(), (Lines{L"DISPLAYERROR, PopulateFromDataBase, progress 91 " +
                            StandardDescription(error::ObjectNotSet)}));
}

TEST_F(PopulationTest, PausesFor1MillisecondAtMostEvery15Milliseconds)
{
    for (int lCut = 1; lCut <= 100; ++lCut)
        Add(std::to_wstring(lCut), L"Rock", 1);
    cLib.Populate();
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 0) << "a library read in no time is not slowed";
    TakeTime(10, 14); // 20: 14 ms of work, no pause
    TakeTime(30, 15); // 40: 29, a pause
    TakeTime(50, 15); // 60: a pause
    cPorts.cHostLoop.OnSleep = [](std::uint32_t lMilliseconds) { EXPECT_EQ(lMilliseconds, 1u); };
    said.clear();
    cLib.Populate();
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 4) << "two in each of the two phases";
}

// ---- cuts that cannot be placed

TEST_F(PopulationTest, EmptyNamesAreShownOnceAndCounted)
{
    Add(L"a", L"Rock")->AddCategoryName(L"");
    Add(L"b", L"\t1");
    Add(L"c", L"\t2/Pop");
    cLib.Populate();
    EXPECT_EQ(boxes,
              Boxes{OkBox(BoxIcon::None, L"RavloScheduler", L"Zero-length cat names are illegal [1]")});
    EXPECT_EQ(Tree(), L"Rock 1: a | Pop 1: c");
    EXPECT_EQ(Log(), Lines{L"Zero-length cat names are illegal: 3 in all."});
}

TEST_F(PopulationTest, RunTimeOutOfRangeIsReportedOncePerCategoryAtTheEnd)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        Add(sKey, L"Rock/Pop", 1, lMaxLong);
    Add(L"d", L"Jazz");
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCut("c", 1) + SifCut("b", 1) + SifCut("a", 1));
    cPorts.cMessages.OnShown = [this] {
        EXPECT_EQ(Tree(), L"Rock 1: c b a | Pop 1: a b c | Jazz 1: d") << "placed, in order and in use";
    };
    cLib.Populate();
    EXPECT_EQ(boxes, (Boxes{CriticalBox(sTitle, L"6 Overflow: run times in category Rock"),
                            CriticalBox(sTitle, L"6 Overflow: run times in category Pop")}));
    EXPECT_EQ(Level(L"Rock", 1)->AverageRunTimemS(), lMaxLong);
}

ShownBox BadCutsBox(int lCuts)
{
    return CriticalBox(sTitle,
                       CriticalText(91) + L" (" + std::to_wstring(lCuts) + L" cuts could not be handled)");
}

TEST_F(PopulationTest, BadCutStopsNothing)
{
    for (const char* sMember : {"CategoryNames", "CatLevel", "Key", "RunTimemS", "AddCategoryName"})
    {
        SCOPED_TRACE(sMember);
        cLib.cDataBase->colCuts.clear();
        Add(L"a", L"Rock");
        const auto cBad = Add(L"bad", L"Rock");
        cBad->failing = {sMember};
        Add(L"b", L"Rock/Pop");
        boxes.clear();
        cLib.Restart();
        EXPECT_EQ(boxes, Boxes{BadCutsBox(1)});
        Keys colOrder = Order(L"Rock", 1);
        std::erase(colOrder, L"bad"); // may be there when only its name could not be registered
        EXPECT_EQ(colOrder, (Keys{L"a", L"b"}));
        EXPECT_EQ(Order(L"Pop", 1), Keys{L"b"});
        cBad->failing.clear();
    }
}

TEST_F(PopulationTest, BadCutsAreCountedInOneReport)
{
    for (int lCut = 0; lCut < 50; ++lCut)
        Add(std::to_wstring(lCut), L"Rock")->failing = {lCut % 2 ? "CategoryNames" : "Path"};
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes{BadCutsBox(25)});
    EXPECT_EQ(MainCat(L"Rock")->TotalCuts(), 25);
}

TEST_F(PopulationTest, CategoryWhoseNameIsNoFilesNameIsScheduled)
{
    Add(L"a", L"AC\\DC/Rock");
    cLib.Populate();
    EXPECT_TRUE(boxes.empty()) << "there is no file to read under such a name";
    EXPECT_EQ(Order(L"AC\\DC", 1), Keys{L"a"});
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                       L"52 Bad file name: \"AC\\DC\"")});
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
}

// ---- populations, picks and saves inside a population

TEST_F(PopulationTest, PopulationInsideAPopulationIsIgnored)
{
    Add(L"a", L"Rock");
    int lNested = 0;
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        ++lNested;
        auto cOther = std::make_shared<FakeDataBase>();
        cOther->Add(L"z", L"Other", 1);
        cLib.cSchedMan->PopulateFromDataBase(cOther, L"C:\\Other");
    };
    cLib.Populate();
    EXPECT_EQ(lNested, 3);
    EXPECT_EQ(said, PhasesOf(1)) << "nothing but the outer one's events";
    EXPECT_EQ(cLib.MainCatNames(), Lines{L"Rock"});
    EXPECT_EQ(cLib.cSchedMan->DataBase(), cLib.cDataBase);
    EXPECT_EQ(cLib.cSchedMan->AppPath(), sRadio);
    EXPECT_EQ(Log(), Lines(3, L"PopulateFromDataBase was called while it is running; ignored."));
    cLib.cHost.OnEvent = nullptr;
    cLib.Populate();
    EXPECT_EQ(said.size(), 6u) << "afterwards it may be called again";
}

TEST_F(PopulationTest, NamesChangedBetweenThePhasesAreUsed)
{
    const auto cCut = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Done: Got Main"))
        {
            cCut->SetCategoryText(L"Jazz/Rock");
            cCut->SetCatLevel(3);
        }
    };
    cLib.Populate();
    EXPECT_EQ(Tree(), L"Rock 1: b | Rock 3: a | Jazz 3: a");
    Forget();
    Modified({cCut});
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "its places are remembered";
    EXPECT_EQ(cCut->CategoryText(), L"Jazz/Rock");
}

TEST_F(PopulationTest, NothingIsSeenOrSavedOfATreeThatIsBeingBuilt)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b");
    const std::string good = SifCut("b", 1) + SifCut("a", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), good);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        EXPECT_EQ(cLib.cSchedMan->colMainCats(), nullptr);
        EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
        EXPECT_FALSE(cLib.cSchedMan->SaveCatNames());
    };
    cLib.Populate();
    EXPECT_EQ(File(L"Rock"), good);
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nJazz");
    EXPECT_EQ(Tree(), L"Rock 1: b a | Jazz");
}

TEST_F(PopulationTest, WhileATreeIsReplacedSavesAreThoseOfTheOldOne)
{
    cLib.cDataBase->AddTree(L"Rock 1: a b");
    const std::string good = SifCut("b", 1) + SifCut("a", 1);
    cPorts.cFiles.Put(SifPath(L"Rock"), good);
    cLib.Populate();
    const auto colOld = cLib.cSchedMan->colMainCats();
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!sLine.starts_with(L"Start 2"))
            return;
        EXPECT_EQ(cLib.cSchedMan->colMainCats(), colOld);
        EXPECT_EQ(Tree(), L"Rock 1: b a");
        const auto hook = std::exchange(cLib.cHost.OnEvent, nullptr);
        EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
        cLib.cHost.OnEvent = hook;
        EXPECT_EQ(File(L"Rock"), good);
    };
    cLib.Populate();
    EXPECT_NE(cLib.cSchedMan->colMainCats(), colOld);
    EXPECT_EQ(Tree(), L"Rock 1: b a");
    EXPECT_EQ(File(L"Rock"), good);
}

TEST_F(PopulationTest, WhileTheLibraryMovesSavesStayInTheOldFolder)
{
    Add(L"a", L"Rock");
    cLib.Populate();
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\MainCats.txt", "\r\nRock\r\nJazz");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif", SifMarker(5) + SifCut("a", 1));
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        const auto hook = std::exchange(cLib.cHost.OnEvent, nullptr);
        EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
        EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
        cLib.cHost.OnEvent = hook;
    };
    cLib.Populate(L"C:\\Other");
    cLib.cHost.OnEvent = nullptr;
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 5: | Jazz");
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock")));
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif"),
              SifCut("a", 1) + SifMarker(5));
}

// ---- the database

TEST_F(PopulationTest, OnlyThePresentDatabaseIsFollowedAndKeepsNoManager)
{
    cLib.Populate();
    EXPECT_EQ(cLib.cDataBase->colListeners.size(), 1u);
    const auto cOld = cLib.cDataBase;
    cLib.Populate();
    EXPECT_EQ(cOld->colListeners.size(), 1u) << "followed once, however often populated";
    cLib.cDataBase = std::make_shared<FakeDataBase>();
    cLib.Populate();
    EXPECT_TRUE(cOld->colListeners.empty());
    EXPECT_EQ(cLib.cDataBase->colListeners.size(), 1u);
    const std::weak_ptr<clsSchedMan> cWeak = cLib.cSchedMan;
    cLib.End();
    EXPECT_TRUE(cWeak.expired());
    EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
}

TEST_F(PopulationTest, UnreadableDatabaseIsReportedAndTheOldTreeStays)
{
    Add(L"a", L"Rock");
    cLib.Populate();
    const auto colOld = cLib.cSchedMan->colMainCats();
    const auto cFirst = cLib.cDataBase;
    cLib.cDataBase = std::make_shared<FakeDataBase>();
    cLib.cDataBase->bAllCutsFails = true;
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes{CriticalBox(sTitle, L"57 Device I/O error")});
    EXPECT_EQ(cLib.cSchedMan->colMainCats(), colOld);
    EXPECT_EQ(cLib.cSchedMan->DataBase(), cFirst) << "and the tree's own database is followed again";
    EXPECT_EQ(cFirst->colListeners.size(), 1u);
    EXPECT_TRUE(cLib.cDataBase->colListeners.empty());
    cFirst->Announce(&DataBaseEvents::CutsAdded, Cuts{cFirst->Add(L"b", L"Rock", 1)});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    cLib.cDataBase->bAllCutsFails = false;
    cLib.Populate();
    EXPECT_TRUE(cLib.cSchedMan->colMainCats()->Empty()) << "and it can be populated again";
}

} // namespace
} // namespace ravlo::test
