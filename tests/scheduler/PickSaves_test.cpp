// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"
#include "support/SyncTest.h"

#include <algorithm>

namespace ravlo::test
{
namespace
{

// A station with categories Cat1, Cat2 ... of three cuts each, whose picks save.
class PickSavesTest : public StationTest
{
protected:
    static constexpr int lCats = 31;
    PickSavesTest()
    {
        for (int lCat = 1; lCat <= lCats; ++lCat)
            for (const wchar_t* sCut : {L"a", L"b", L"c"})
                Add(Name(lCat) + sCut, Name(lCat));
        Start();
        cLib.cSchedMan->SetRotatesAllowed(true);
    }

    static std::wstring Name(int lCat) { return L"Cat" + std::to_wstring(lCat); }
    void Lock(int lCat, bool bLocked = true)
    {
        cPorts.cFiles.SetLocked(SifPath(Name(lCat)), bLocked ? -1 : 0);
    }
    int Attempts(int lCat) const { return cPorts.cFiles.AttemptsOn(SifPath(Name(lCat))); }
    int AllAttempts() const
    {
        int lAll = 0;
        for (int lCat = 1; lCat <= lCats; ++lCat)
            lAll += Attempts(lCat);
        return lAll;
    }
    void Pick(int lCat, bool bSave = true) { cLib.Pick(Name(lCat) + L"\t1", bSave); }
    std::string Saved(int lCat) const
    {
        std::string bytes;
        for (const std::wstring& sKey : Order(Name(lCat), 1))
            bytes += SifCut(std::string(sKey.begin(), sKey.end()), 1);
        return bytes;
    }
};

TEST_F(PickSavesTest, ALockedFileIsTriedOnceByAPick)
{
    Lock(1);
    const int lBefore = AllAttempts();
    Pick(1);
    EXPECT_EQ(AllAttempts() - lBefore, 1);
    Pick(1);
    Pick(1);
    EXPECT_EQ(AllAttempts() - lBefore, 1) << "within a second it is not tried again";
    WaitForRetry();
    Pick(1);
    EXPECT_EQ(AllAttempts() - lBefore, 2);
    Lock(1, false);
    WaitForRetry();
    Pick(1);
    EXPECT_EQ(File(Name(1)), Saved(1));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 0);
}

TEST_F(PickSavesTest, APickTriesAtMostOnePendingFileAndItsOwn)
{
    for (int lCat = 1; lCat <= 30; ++lCat)
    {
        Lock(lCat);
        Pick(lCat);
    }
    for (int lPick = 1; lPick <= 90; ++lPick)
    {
        WaitForRetry();
        const int lBefore = AllAttempts();
        const int lOwn = Attempts(31);
        Pick(31);
        EXPECT_EQ(Attempts(31) - lOwn, 1);
        EXPECT_EQ(AllAttempts() - lBefore, 2) << "one of them, and its own";
    }
    for (int lCat = 1; lCat <= 30; ++lCat)
        EXPECT_GE(Attempts(lCat), 1 + 3) << "each in its turn, " << lCat;
    const int lBefore = AllAttempts();
    Pick(31);
    Pick(31);
    EXPECT_LE(AllAttempts() - lBefore, 4);
}

TEST_F(PickSavesTest, AnExplicitSaveThatFailedIsRetriedByLaterPicks)
{
    Lock(1);
    Level(Name(1), 1)->SchedCuts()->MoveToEnd(0);
    EXPECT_FALSE(cLib.Save(Name(1)));
    EXPECT_EQ(boxes.size(), 1u);
    const int lBefore = Attempts(1);
    for (int lPick = 1; lPick <= 3; ++lPick)
        Pick(lPick);
    EXPECT_EQ(Attempts(1), lBefore) << "it failed a moment ago";
    Lock(1, false);
    WaitForRetry();
    Pick(2);
    EXPECT_EQ(File(Name(1)), Saved(1));
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(PickSavesTest, ACategoryDeletedDuringItsPickGetsNoFileAgain)
{
    const std::shared_ptr<FakeCut> cFirst = CutOf(Name(1) + L"a");
    bool bDeleted = false;
    cFirst->OnCall = [&](std::string_view) {
        if (std::exchange(bDeleted, true))
            return;
        EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(Name(1))}));
    };
    Pick(1);
    cFirst->OnCall = nullptr;
    EXPECT_TRUE(bDeleted);
    EXPECT_EQ(File(Name(1)), "none");
}

TEST_F(PickSavesTest, PendingOrdersAreSavedFirstUnlessTheirCategoryWasRenamed)
{
    for (const bool bRenamed : {false, true})
    {
        Lock(1);
        Pick(1);
        Lock(1, false);
        if (bRenamed)
            MainCat(Name(1))->SetCatName(L"Renamed");
        WaitForRetry();
        Forget();
        Pick(2);
        EXPECT_EQ(Written(), bRenamed ? Lines{L"Cat2"} : (Lines{L"Cat1", L"Cat2"}));
        Forget();
        Pick(2);
        EXPECT_EQ(Written(), Lines{L"Cat2"});
    }
}

TEST_F(PickSavesTest, ANameThatCanBeNoFilesNameIsLoggedOnce)
{
    Add(L"x", L"A/C");
    const std::shared_ptr<clsCat> cOdd = std::make_shared<clsCat>(cLib.cMod, L"A?C", 0);
    bool bCreated = false;
    cOdd->AddCut(cLib.cDataBase->colCuts.back(), bCreated);
    cLib.cSchedMan->colMainCats()->Add(TextKey(CategoryKey(L"A?C", 0)), cOdd);
    Forget();
    for (int lPick = 1; lPick <= 5; ++lPick)
    {
        cLib.Pick(L"A?C\t1");
        WaitForRetry();
        Pick(1);
    }
    EXPECT_EQ(Logged(L"DISPLAYERROR, SaveHistoryAndOrdering A?C 52 Bad file name: \"A?C\""), 1);
}

// ---- what a population needs to know

TEST_F(PickSavesTest, AnOrderIsNewerThanItsReadingAfterAPickSavedOrNot)
{
    cLib.Populate();
    EventRelay cRelay(cLib.cMod);
    HistoryFiles cFiles(cLib.cMod, cRelay);
    const CatCollection& colCats = *cLib.cSchedMan->colMainCats();
    cFiles.ApplyHistory(colCats, sRadio);
    EXPECT_FALSE(cFiles.IsNewerThanItsReading(*MainCat(Name(1))));
    cFiles.SaveAfterPick(MainCat(Name(1)), colCats);
    cFiles.NoteUnsaved(*MainCat(Name(2)));
    EXPECT_TRUE(cFiles.IsNewerThanItsReading(*MainCat(Name(1))));
    EXPECT_TRUE(cFiles.IsNewerThanItsReading(*MainCat(Name(2))));
    EXPECT_FALSE(cFiles.IsNewerThanItsReading(*MainCat(Name(3))));
    cFiles.ApplyHistory(colCats, sRadio);
    EXPECT_FALSE(cFiles.IsNewerThanItsReading(*MainCat(Name(1))));
}

// ---- levels that a change may empty

TEST_F(PickSavesTest, AFileWithMarkersServesBeforeAndAfterTheLevelIsEmptied)
{
    Add(L"deep1", Name(1), 2);
    Add(L"deep2", Name(1), 2);
    cLib.Populate();
    Level(Name(1), 2)->SchedCuts()->MoveToEnd(0);
    Level(Name(1), 1)->SchedCuts()->MoveToEnd(0);
    EventRelay cRelay(cLib.cMod);
    HistoryFiles cFiles(cLib.cMod, cRelay);
    cFiles.Serve(sRadio);
    std::string cuts = Saved(1);
    const std::string deep = SifCut("deep2", 2) + SifCut("deep1", 2);
    {
        const HistoryFiles::EmptyingLevels cEmptying(cFiles, L"cat1", {1, 7});
        EXPECT_EQ(cFiles.Save(MainCat(Name(1)), quietly), HistoryFiles::Saved::Yes);
        EXPECT_EQ(File(Name(1)), SifMarker(1) + cuts + deep);
    }
    // Killed before the change: the order is whole.
    const Keys colOrder = Order(Name(1), 1);
    cLib.Restart();
    EXPECT_EQ(Order(Name(1), 1), colOrder);
    EXPECT_EQ(Order(Name(1), 2), (Keys{L"deep2", L"deep1"}));
    // Killed after the database has it, before the new order is saved: level 1 is empty, level 2 as it was.
    for (const std::wstring& sKey : colOrder)
        CutOf(sKey)->SetCategoryText(Name(2));
    Forget();
    cLib.Restart();
    EXPECT_EQ(boxes, Boxes());
    ASSERT_TRUE(Level(Name(1), 1));
    EXPECT_EQ(Order(Name(1), 1), Keys());
    EXPECT_EQ(Order(Name(1), 2), (Keys{L"deep2", L"deep1"}));
    EXPECT_EQ(cFiles.Save(MainCat(Name(1)), quietly), HistoryFiles::Saved::Yes);
    EXPECT_EQ(File(Name(1)), SifMarker(1) + deep) << "no marker beyond the empty level's";
}

} // namespace
} // namespace ravlo::test
