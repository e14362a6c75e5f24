// SPDX-License-Identifier: MIT
#include "scheduler/CategoryEditing.h"

#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <limits>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();

Keys Sorted(Keys colKeys)
{
    std::sort(colKeys.begin(), colKeys.end());
    return colKeys;
}

class EditingTest : public StationTest
{
protected:
    Keys Levels(const std::wstring& sName) const
    {
        Keys colLevels;
        for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
            colLevels.push_back(cSubCat->CatID());
        return colLevels;
    }
    std::shared_ptr<clsCat> AddLevel(const std::wstring& sName, std::int32_t lLevel)
    {
        const auto cSubCat = std::make_shared<clsCat>(cLib.cMod, sName, lLevel);
        EXPECT_TRUE(MainCat(sName)->AddSubCat(cSubCat));
        return cSubCat;
    }
};

// ---- the list of names

TEST_F(EditingTest, CategoriesAreListedByNameAndLevelsByNameAndNumber)
{
    const auto cRock = std::make_shared<clsCat>(cLib.cMod, L"Rock", 0);
    const auto cPop2 = std::make_shared<clsCat>(cLib.cMod, L"Pop", 2);
    EXPECT_EQ(cLib.cSchedMan->ListCats({}), L"");
    EXPECT_EQ(cLib.cSchedMan->ListCats({cRock}), L"Rock");
    EXPECT_EQ(cLib.cSchedMan->ListCats({cPop2, cRock, cPop2}), L"Pop 2, Rock, Pop 2");
    EXPECT_EQ(ListCats({cPop2, cRock, cPop2}, 3), L"Pop 2, Rock, Pop 2");
    EXPECT_EQ(ListCats({cPop2, cRock, cPop2}, 2), L"Pop 2, Rock... (+1)");
}

// ---- shuffling

class ShuffleTest : public EditingTest
{
protected:
    ShuffleTest()
    {
        AddMany(20, L"a", L"Rock", 1);
        AddMany(20, L"b", L"Rock", 2);
        AddMany(20, L"c", L"Pop", 1);
        Start();
    }
};

TEST_F(ShuffleTest, EachLevelIsShuffledInItselfAndItsMainCategorySavedOnce)
{
    const Keys colRock1 = Order(L"Rock", 1);
    const Keys colRock2 = Order(L"Rock", 2);
    const Keys colPop = Order(L"Pop", 1);
    cLib.cSchedMan->ShuffleCategories({Level(L"Rock", 1), Level(L"Rock", 2)});
    EXPECT_NE(Order(L"Rock", 1), colRock1);
    EXPECT_NE(Order(L"Rock", 2), colRock2);
    EXPECT_EQ(Sorted(Order(L"Rock", 1)), Sorted(colRock1));
    EXPECT_EQ(Sorted(Order(L"Rock", 2)), Sorted(colRock2));
    EXPECT_EQ(Order(L"Pop", 1), colPop);
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(said, SaveSaid(L"Rock", 40));
    EXPECT_EQ(boxes, Boxes()) << "it does not ask unless it is told to";
    EXPECT_EQ(cPorts.cRandom.lRandomized, 1);
    std::string bytes;
    for (const std::int32_t lLevel : {1, 2})
        for (const std::wstring& sKey : Order(L"Rock", lLevel))
            bytes += SifCut(std::string(sKey.begin(), sKey.end()), lLevel);
    EXPECT_EQ(File(L"Rock"), bytes);
}

TEST_F(ShuffleTest, MainCategoryMeansAllLevelsAndEachIsShuffledOnce)
{
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock")});
    const Keys colRock1 = Order(L"Rock", 1);
    const Keys colRock2 = Order(L"Rock", 2);

    RadioPorts cOther; // the same chance
    Library cLibrary(cOther);
    cLibrary.cDataBase->colCuts = cLib.cDataBase->colCuts;
    cLibrary.Populate();
    cLibrary.cSchedMan->ShuffleCategories(
        {cLibrary.Level(L"Rock", 2), cLibrary.MainCat(L"Rock"), cLibrary.Level(L"Rock", 2)});
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), colRock1);
    EXPECT_EQ(cLibrary.Order(L"Rock", 2), colRock2);
}

TEST_F(ShuffleTest, ItemsKeepKeysAndAHostsCollectionSeesTheNewOrder)
{
    const std::shared_ptr<CutCollection> colHeld = Level(L"Rock", 1)->SchedCuts();
    const std::int64_t total = TotalOf(L"Rock", 1);
    cLib.cSchedMan->ShuffleCategories({Level(L"Rock", 1)});
    EXPECT_EQ(Level(L"Rock", 1)->SchedCuts(), colHeld);
    for (std::size_t at = 0; at < colHeld->Count(); ++at)
        EXPECT_EQ(*colHeld->KeyAt(at), colHeld->At(at)->Key());
    EXPECT_EQ(TotalOf(L"Rock", 1), total);
    EXPECT_EQ(colHeld->At(0)->CategoryText(), L"Rock");
}

TEST_F(ShuffleTest, AskedFirstOnlyYesGoesOn)
{
    const ShownBox question{BoxIcon::Question, BoxButtons::YesNo, L"Confirm Shuffle.",
                            L"Really shuffle these categories: Rock, Pop 1"};
    const Cats colCats{MainCat(L"Rock"), Level(L"Pop", 1)};
    for (const BoxAnswer eAnswer : {BoxAnswer::No, BoxAnswer::None, BoxAnswer::Yes})
    {
        Forget();
        const Keys colBefore = Order(L"Pop", 1);
        cPorts.cMessages.Answers = {eAnswer};
        cLib.cSchedMan->ShuffleCategories(colCats, true);
        EXPECT_EQ(boxes, (Boxes{question}));
        EXPECT_EQ(Order(L"Pop", 1) != colBefore, eAnswer == BoxAnswer::Yes);
        EXPECT_EQ(Written(), eAnswer == BoxAnswer::Yes ? (Lines{L"Rock", L"Pop"}) : Lines());
    }
}

TEST_F(ShuffleTest, AVeryLongListInTheQuestionIsCapped)
{
    const auto cMainCat = std::make_shared<clsCat>(cLib.cMod, L"X", 0);
    cLib.cSchedMan->colMainCats()->Add(TextKey(CategoryKey(L"X", 0)), cMainCat);
    for (std::int32_t lLevel = 1; lLevel <= 33; ++lLevel)
        cMainCat->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"X", lLevel));
    cLib.cSchedMan->ShuffleCategories({cMainCat->SubCats()->begin(), cMainCat->SubCats()->end()}, true);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_TRUE(boxes[0].sText.starts_with(L"Really shuffle these categories: X 1, X 2, "));
    EXPECT_TRUE(boxes[0].sText.ends_with(L", X 30... (+3)"));
}

TEST_F(ShuffleTest, ACategoryThatCannotBeSavedIsReportedAndTheOthersGoOn)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock"), MainCat(L"Pop")});
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::Exclamation, L"RavloScheduler",
                                  L"Failed to save cat history and ordering for: Rock")}));
    EXPECT_EQ(File(L"Pop").size(), 20 * HistoryFiles::recordSize);
    Keys colWritten;
    for (std::size_t at = 0; at < 20; ++at)
    {
        const std::string path = File(L"Pop").substr(at * HistoryFiles::recordSize + 510, 255);
        colWritten.emplace_back(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(path.find(' ')));
    }
    EXPECT_EQ(colWritten, Order(L"Pop", 1));
    EXPECT_EQ(cPorts.TemporaryFiles(), Lines());
}

TEST_F(ShuffleTest, ACategoryWithoutLevelsIsPassedOver)
{
    const auto cEmpty = std::make_shared<clsCat>(cLib.cMod, L"Empty", 0);
    cLib.cSchedMan->colMainCats()->Add(TextKey(CategoryKey(L"Empty", 0)), cEmpty);
    cLib.cSchedMan->ShuffleCategories({cEmpty});
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Written(), Lines());
}

TEST_F(ShuffleTest, CategoriesThatDoNotExistAreNeitherAskedForNorShuffled)
{
    const auto cDead = Level(L"Pop", 1);
    cLib.cSchedMan->DeleteCats({cDead});
    Forget();
    cLib.cSchedMan->ShuffleCategories({cDead, std::make_shared<clsCat>(cLib.cMod, L"Gone", 0)}, true);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Written(), Lines());
}

TEST_F(ShuffleTest, ACategoryFromBeforeAReloadIsShuffledByItsName)
{
    const Cats colOld{MainCat(L"Rock"), Level(L"Pop", 1)};
    const Keys colBefore = Order(L"Pop", 1);
    cLib.Populate();
    Forget();
    cPorts.cMessages.Answers = {BoxAnswer::Yes};
    // The host reloads once more while the question is open.
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        cLib.Populate();
    };
    cLib.cSchedMan->ShuffleCategories(colOld, true);
    EXPECT_NE(Order(L"Pop", 1), colBefore);
    EXPECT_EQ(Sorted(Order(L"Pop", 1)), Sorted(colBefore));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    const Keys colShuffled = Order(L"Rock", 2);
    cLib.Restart();
    EXPECT_EQ(Order(L"Rock", 2), colShuffled);
}

// ---- deleting

const Lines colDeleted{L"Done: Categories Deleted."};

TEST_F(EditingTest, ADeletedLevelLosesItsCutsAndItsMainCategoryIsSaved)
{
    const auto cGoes = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock", 2);
    Start();
    const auto cDead = Level(L"Rock", 1);
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({cDead}));
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"2"}));
    EXPECT_EQ(cGoes->CategoryText(), L"Pop");
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"a"}));
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1"},
                            SaveSaid(L"Rock", 1),
                            colDeleted}));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cDead->TotalCuts(), 0);
}

TEST_F(EditingTest, ACutInTwoLevelsOfOneMainCategoryKeepsTheName)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Start();
    bool bCreated = false;
    Level(L"Rock", 2)->AddCut(cCut, bCreated);
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 2)}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(EditingTest, TheLastLevelTakesTheFileWithItAndTheMainCategoryStays)
{
    Add(L"a", L"Rock", 1);
    Start();
    ASSERT_TRUE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}));
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock"}));
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1"}, colDeleted}));
    cLib.Restart();
    EXPECT_EQ(Levels(L"Rock"), Keys()) << "the level does not come back";
}

TEST_F(EditingTest, DeletedMainCategoryTakesLevelsFileAndListedName)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock", 2);
    Start();
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls", "rules");
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Pop"}));
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nPop");
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1",
                             L"Start 1: Deleting Category: Rock 2", L"Done: Deleted Rock 2"},
                            colDeleted}));
    EXPECT_TRUE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls"))
        << "rules stay";
    cLib.Restart();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Pop"}));
}

TEST_F(EditingTest, AMainCategoryListedWithSomeOfItsLevelsGoesOnlyWhenNoneIsLeft)
{
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Add(L"c", L"Rock", 3);
    Start();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock"), Level(L"Rock", 1), Level(L"Rock", 2)}));
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"3"}));
    EXPECT_EQ(File(L"Rock"), SifCut("c", 3));
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 3), MainCat(L"Rock")})) << "in any order";
    EXPECT_EQ(cLib.MainCatNames(), Lines());
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "");
}

TEST_F(EditingTest, AMainCategoryWithoutLevelsCanBeDeleted)
{
    Add(L"a", L"Rock", 1);
    Start();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}));
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(cLib.MainCatNames(), Lines());
}

TEST_F(EditingTest, DeletingReportsEveryFiftiethCutAndPumps)
{
    AddMany(120, L"k", L"Rock", 1);
    Add(L"x", L"Rock", 2);
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}));
    colTrace.resize(6);
    EXPECT_EQ(
        colTrace,
        (Lines{L"Start 120: Deleting Category: Rock 1", L"Progress 50/120: Removed 50 from: Rock 1", L"pump",
               L"Progress 100/120: Removed 100 from: Rock 1", L"pump", L"Done: Deleted Rock 1"}));
}

TEST_F(EditingTest, DeletingNothingTellsTheEndAndChangesNothing)
{
    Add(L"a", L"Rock", 1);
    Start();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({}));
    EXPECT_EQ(said, colDeleted);
    EXPECT_EQ(Written(), Lines());
}

TEST_F(EditingTest, WhatDoesNotExistIsNotDeletedAndNothingIsSaid)
{
    Add(L"a", L"Rock", 1);
    Start();
    const auto cGoneLevel = std::make_shared<clsCat>(cLib.cMod, L"Rock", 7);
    const auto cGone = std::make_shared<clsCat>(cLib.cMod, L"Gone", 0);
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({cGoneLevel, nullptr, cGone}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Written(), Lines());
}

TEST_F(EditingTest, WhatExistsIsDeletedBesideWhatDoesNot)
{
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Start();
    EXPECT_FALSE(
        cLib.cSchedMan->DeleteCats({std::make_shared<clsCat>(cLib.cMod, L"Gone", 0), Level(L"Rock", 1)}));
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"2"}));
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
}

TEST_F(EditingTest, ACategoryFromBeforeAReloadIsDeletedByItsName)
{
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Add(L"p", L"Pop", 1);
    Start();
    const Cats colOld{Level(L"Rock", 1), MainCat(L"Pop")};
    cLib.Populate();
    Forget();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({colOld[0], colOld[1], Level(L"Rock", 1)}));
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"2"}));
    EXPECT_EQ(MainCat(L"Pop"), nullptr);
    EXPECT_EQ(said.back(), colDeleted.front());
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
    EXPECT_EQ(File(L"Pop"), "none");
    cLib.Restart();
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"2"}));
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(EditingTest, CutThatRefusesKeepsItsLevelAndIsReportedOnce)
{
    const auto cBad = Add(L"bad", L"Rock", 1);
    const auto cGood = Add(L"good", L"Rock", 1);
    Add(L"x", L"Rock", 2);
    Start();
    cBad->failing = {"RemoveCategoryName"};
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1), Level(L"Rock", 2)}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"bad"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
    EXPECT_EQ(cGood->CategoryText(), L"");
    EXPECT_EQ(cBad->CategoryText(), L"Rock");
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"1"}));
    EXPECT_EQ(File(L"Rock"), SifCut("bad", 1));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]",
                                        CriticalText(91) + L" (1 cuts could not be handled)")}));
}

TEST_F(EditingTest, AFileThatCannotBeDeletedIsShownAndTheCategoryIsGone)
{
    Add(L"a", L"Rock", 1);
    Start();
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(75))}));
    EXPECT_EQ(cLib.MainCatNames(), Lines());
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "");
}

TEST_F(EditingTest, AMainCategorysRunTimeOutOfRangeIsNoReasonToKeepALevel)
{
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2, lLongest);
    Add(L"c", L"Rock", 3, lLongest);
    Start();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}));
    EXPECT_EQ(Levels(L"Rock"), (Keys{L"2", L"3"}));
    EXPECT_EQ(boxes, Boxes()) << "the figure is not shown anywhere";
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(), L"DISPLAYERROR, RemoveSubCat 6 " + StandardText(6)),
              1);
}

TEST_F(EditingTest, AfterALevelIsDeletedItsCutsMayBeAnnouncedAgain)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Start();
    cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)});
    Forget();
    Modified({cCut});
    EXPECT_EQ(Written(), Lines()) << "its new names are what it is filed under";
    cCut->SetCategoryText(L"Pop/Rock");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(EditingTest, AReloadInTheMiddleOfADeletionLeavesTheNewTreeAlone)
{
    AddMany(60, L"k", L"Rock", 1);
    Start();
    bool bDone = false;
    cPorts.cHostLoop.OnPump = [&] {
        if (!std::exchange(bDone, true))
            cLib.Populate();
    };
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(Order(L"Rock", 1).size(), 10u) << "what stood in it at the reload stands in it still";
    for (const std::shared_ptr<Cut>& cCut : *Level(L"Rock", 1)->SchedCuts())
        EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(said.back(), colDeleted.front());
}

// ---- a database with batches

class BatchTest : public StationTest
{
protected:
    BatchTest()
    {
        for (int lCut = 1; lCut <= 110; ++lCut)
            cBatching->cInner.Add(L"k" + std::to_wstring(lCut), L"Rock", 1);
        cBatching->cInner.Add(L"p", L"Pop", 2);
        cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
        Forget();
    }
    void ExpectNoBatchOpenWhenOthersRun()
    {
        cLib.cHost.OnEvent = [this](const std::wstring&) { EXPECT_FALSE(cBatching->bOpen); };
        cPorts.cHostLoop.OnPump = [this] { EXPECT_FALSE(cBatching->bOpen); };
        cPorts.cHostLoop.OnSleep = [this](std::uint32_t) { EXPECT_FALSE(cBatching->bOpen); };
        cPorts.cMessages.OnShown = [this] { EXPECT_FALSE(cBatching->bOpen); };
    }
    Cuts RockCuts() const
    {
        const auto colCuts = Level(L"Rock", 1)->SchedCuts();
        return {colCuts->begin(), colCuts->end()};
    }
    std::shared_ptr<BatchingDataBase> cBatching = std::make_shared<BatchingDataBase>();
};

TEST_F(BatchTest, DeletingCommitsBeforeAnythingThatLetsOthersRun)
{
    ExpectNoBatchOpenWhenOthersRun();
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(cBatching->lBegun, 3);
    EXPECT_EQ(cBatching->lCommitted, 3);
}

TEST_F(BatchTest, MovingAndCopyingCommitBeforeAnythingThatLetsOthersRun)
{
    ExpectNoBatchOpenWhenOthersRun();
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eCopyHere, {Level(L"Rock", 1)}, MainCat(L"Pop"), RockCuts(), bCreated);
    EXPECT_EQ(cBatching->lCommitted, 2);
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), RockCuts(), bCreated);
    EXPECT_EQ(cBatching->lCommitted, 5);
    EXPECT_EQ(cBatching->lBegun, 5);
    EXPECT_EQ(Order(L"Pop", 2).size(), 111u);
    EXPECT_EQ(Order(L"Rock", 1), Keys());
}

TEST_F(BatchTest, CutsOfARefusedBatchStandAgainWhereTheDatabaseHasThem)
{
    cBatching->bRefusesCommit = true;
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), RockCuts(), bCreated);
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"p"}));
    EXPECT_EQ(Order(L"Rock", 1).size(), 110u);
    EXPECT_EQ(TotalOf(L"Rock", 1), 110 * 180'000);
    EXPECT_EQ(TotalOf(L"Pop", 2), 180'000);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DoMassCatChange [cSchedMan]", CriticalText(61))}));
    EXPECT_EQ(Written(), Lines()) << "nothing has changed";
    Forget();
    cBatching->cInner.Announce(&DataBaseEvents::CutsModified, RockCuts());
    EXPECT_EQ(Written(), Lines()) << "tree and database agree";
}

TEST_F(BatchTest, CutsOfARefusedBatchStandAgainAtTheirPlacesInEveryLevel)
{
    cBatching->cInner.Add(L"q", L"Pop", 2);
    cBatching->cInner.Add(L"r", L"Pop", 2);
    cBatching->cInner.colCuts[4]->SetCategoryText(L"Rock/Jazz");
    cBatching->cInner.colCuts[7]->SetCategoryText(L"Rock/Jazz");
    cBatching->cInner.colCuts[9]->SetCategoryText(L"Jazz/Rock");
    cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock"), MainCat(L"Jazz")});
    const Keys rock = Order(L"Rock", 1);
    const Keys jazz = Order(L"Jazz", 1);
    const Keys pop = Order(L"Pop", 2);
    const Cuts colRock = RockCuts();
    Cuts colSome{cBatching->cInner.colCuts[9],
                 cBatching->cInner.colCuts[111]}; // from the middle, in any order
    for (const std::size_t at : {70u, 3u, 40u, 109u, 0u, 71u, 4u})
        colSome.push_back(colRock[at]);
    cBatching->bRefusesCommit = true;
    bool bCreated = false;
    for (const Cuts& colCuts : {colRock, colSome})
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere, eCopyHere})
        {
            SCOPED_TRACE(static_cast<int>(eOption));
            cLib.cSchedMan->DoMassCatChange(eOption, {Level(L"Rock", 1)}, Level(L"Pop", 2), colCuts,
                                            bCreated);
            EXPECT_EQ(Order(L"Rock", 1), rock);
            EXPECT_EQ(Order(L"Jazz", 1), jazz);
            EXPECT_EQ(Order(L"Pop", 2), pop);
        }
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(Order(L"Rock", 1), rock);
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : colSome)
        colRemovals.push_back({cCut, nullptr, 0});
    cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    EXPECT_EQ(Order(L"Rock", 1), rock);
    EXPECT_EQ(Order(L"Jazz", 1), jazz);
    EXPECT_EQ(Order(L"Pop", 2), pop);
    cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
    cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
    EXPECT_EQ(Order(L"Rock", 1), rock) << "the files say the same";
}

TEST_F(BatchTest, ARefusedDeletionLeavesWhatIsNotAnnouncedToItsAnnouncement)
{
    const std::shared_ptr<Cut> cCut = RockCuts()[3];
    cCut->SetCategoryText(L"Rock/Pop"); // which nobody has announced yet
    cBatching->bRefusesCommit = true;
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(Order(L"Rock", 1)[3], L"k4");
    EXPECT_EQ(Level(L"Pop", 1), nullptr);
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    cBatching->cInner.Announce(&DataBaseEvents::CutsModified, Cuts{cCut});
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"k4"}));
    EXPECT_EQ(File(L"Pop"), SifCut("k4", 1) + SifCut("p", 2));
}

TEST_F(BatchTest, ALevelWhoseDeletionTheDatabaseRefusesStays)
{
    cBatching->bRefusesCommit = true;
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(Order(L"Rock", 1).size(), 110u);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(61))}));
    EXPECT_EQ(File(L"Rock").size(), 110 * HistoryFiles::recordSize);
}

TEST_F(BatchTest, BatchThatCannotBeginIsReportedAndChangesGoSingly)
{
    cBatching->bRefusesBegin = true;
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Pop"})) << "all is done";
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(57))}));
}

// ---- re-ordering

class MoveCutsTest : public EditingTest
{
protected:
    MoveCutsTest()
    {
        AddMany(9, L"", L"Rock", 1);
        Add(L"x", L"Rock", 2);
        Start();
    }
    // The order as digits after the cuts with those numbers were moved to PosInto.
    std::string Move(const std::string& sCuts, std::int32_t lPosInto)
    {
        Cuts colCuts;
        for (const char c : sCuts)
            colCuts.push_back(cLib.cDataBase->CutByKey(TextKey(std::wstring(1, static_cast<wchar_t>(c)))));
        cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock", 1), colCuts, lPosInto);
        std::string sOrder;
        for (const std::wstring& sKey : Order(L"Rock", 1))
            sOrder += static_cast<char>(sKey[0]);
        return sOrder;
    }
};

TEST_F(MoveCutsTest, CutsComeToStandBeforeTheOneThatWasAtThePosition)
{
    struct Case
    {
        const char* sCuts;
        std::int32_t lPosInto;
        const char* sOrder;
    };
    for (const Case& c : {
             Case{"456", 8, "123745689"}, // 5 to 7 when all is done
             Case{"4", 5, "123456789"}, Case{"4", 4, "123456789"}, Case{"456", 4, "123456789"},
             Case{"456", 5, "123456789"}, Case{"456", 7, "123456789"}, Case{"456", 2, "145623789"},
             Case{"9", 1, "912345678"}, Case{"1", 10, "234567891"}, Case{"1", 1000, "234567891"},
             Case{"5", 0, "512346789"}, Case{"5", -7, "512346789"},
             Case{"31", 6, "245316789"},                                    // in the order given
             Case{"2468", 5, "132468579"},                                  // not together before
             Case{"987654321", 3, "987654321"}, Case{"55", 1, "512346789"}, // named twice
             Case{"5x", 1, "512346789"},                                    // of another level
         })
    {
        SCOPED_TRACE(std::string(c.sCuts) + " to " + std::to_string(c.lPosInto));
        Move("123456789", 1);
        Forget();
        EXPECT_EQ(Move(c.sCuts, c.lPosInto), c.sOrder);
        EXPECT_EQ(Written(), (Lines{L"Rock"}));
        EXPECT_EQ(boxes, Boxes());
    }
}

TEST_F(MoveCutsTest, EveryMoveAgreesWithTakingOutAndPuttingInByHand)
{
    for (int lFirst = 1; lFirst <= 9; ++lFirst)
        for (int lSecond = 1; lSecond <= 9; ++lSecond)
            for (int lInto = -1; lInto <= 12; ++lInto)
            {
                Move("123456789", 1);
                std::string sCuts{static_cast<char>('0' + lFirst)};
                if (lSecond != lFirst)
                    sCuts += static_cast<char>('0' + lSecond);
                std::string sExpected = "123456789|";
                std::size_t before = static_cast<std::size_t>(std::clamp(lInto, 1, 10)) - 1;
                while (sCuts.find(sExpected[before]) != std::string::npos)
                    ++before; // the next one that stays
                const char cBefore = sExpected[before];
                std::erase_if(sExpected, [&](char c) { return sCuts.find(c) != std::string::npos; });
                sExpected.insert(sExpected.find(cBefore), sCuts);
                sExpected.pop_back();
                ASSERT_EQ(Move(sCuts, lInto), sExpected) << sCuts << " to " << lInto;
            }
}

TEST_F(MoveCutsTest, OnlyTheOrderChanges)
{
    Move("456", 1);
    EXPECT_EQ(TotalOf(L"Rock", 1), 9 * 180'000);
    for (const std::shared_ptr<Cut>& cCut : *Level(L"Rock", 1)->SchedCuts())
    {
        const auto& cFake = static_cast<FakeCut&>(*cCut);
        EXPECT_EQ(cFake.CategoryText(), L"Rock");
        EXPECT_EQ(cFake.calls.count("RemoveCategoryName"), 0u);
    }
    EXPECT_EQ(File(L"Rock").substr(510, 1), "4");
}

TEST_F(MoveCutsTest, CutsTheLevelDoesNotHoldChangeNothingAndSaveNothing)
{
    EXPECT_EQ(Move("x", 3), "123456789");
    EXPECT_EQ(Move("", 3), "123456789");
    EXPECT_EQ(Written(), Lines());
}

TEST_F(MoveCutsTest, WithoutALevelItIsAnError)
{
    const Boxes colError{CriticalBox(L"Error in InsertCuts [cSchedMan]", CriticalText(5))};
    cLib.cSchedMan->MoveCutsInCategory(nullptr, {}, 1);
    EXPECT_EQ(boxes, colError);
    Forget();
    cLib.cSchedMan->MoveCutsInCategory(MainCat(L"Rock"), {cLib.cDataBase->colCuts[0]}, 1);
    EXPECT_EQ(boxes, colError);
}

TEST_F(MoveCutsTest, LevelFromBeforeAReloadMeansThePresentOne)
{
    const std::shared_ptr<clsCat> cOld = Level(L"Rock", 1);
    cLib.Populate();
    Forget();
    cLib.cSchedMan->MoveCutsInCategory(cOld, {cLib.cDataBase->colCuts[8]}, 1);
    EXPECT_EQ(Move("", 1), "912345678");
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(MoveCutsTest, ALevelThatIsGoneIsAnError)
{
    const std::shared_ptr<clsCat> cOld = Level(L"Rock", 1);
    cLib.cSchedMan->DeleteCats({cOld});
    Forget();
    cLib.cSchedMan->MoveCutsInCategory(cOld, {cLib.cDataBase->colCuts[8]}, 1);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in InsertCuts [cSchedMan]",
                                        L"5 The category to move cuts in does not exist any more")}));
    EXPECT_EQ(Written(), Lines());
}

TEST_F(MoveCutsTest, ACutThatCannotBeReadIsShownUnderItsOwnTitleAndNothingMoves)
{
    static_cast<FakeCut&>(*cLib.cDataBase->colCuts[4]).failing = {"Key"};
    cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock", 1),
                                       {cLib.cDataBase->colCuts[3], cLib.cDataBase->colCuts[4]}, 1);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in InsertCuts [cSchedMan]", CriticalText(91))}));
    static_cast<FakeCut&>(*cLib.cDataBase->colCuts[4]).failing.clear();
    EXPECT_EQ(Move("", 1), "123456789");
}

} // namespace
} // namespace ravlo::test
