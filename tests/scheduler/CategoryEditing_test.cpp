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

Keys Sorted(Keys colKeys)
{
    std::sort(colKeys.begin(), colKeys.end());
    return colKeys;
}

class EditingTest : public StationTest
{
protected:
    std::shared_ptr<clsCat> NewCat(const std::wstring& sName, std::int32_t lLevel = 0)
    {
        return std::make_shared<clsCat>(cLib.cMod, sName, lLevel);
    }
    // A main category of the tree without levels.
    std::shared_ptr<clsCat> AddMainCat(const std::wstring& sName)
    {
        const std::shared_ptr<clsCat> cMainCat = NewCat(sName);
        cLib.cSchedMan->colMainCats()->Add(TextKey(CategoryKey(sName, 0)), cMainCat);
        return cMainCat;
    }
    bool Delete(const Cats& colCats) { return cLib.cSchedMan->DeleteCats(colCats); }
    void Shuffle(const Cats& colCats, bool bAsk = false) { cLib.cSchedMan->ShuffleCategories(colCats, bAsk); }
};

// ---- the list of names

TEST_F(EditingTest, CategoriesAreListedByNameAndLevelsByNameAndNumber)
{
    const auto cRock = NewCat(L"Rock");
    const auto cPop2 = NewCat(L"Pop", 2);
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
    // The records that a category's levels make now.
    std::string Records(const std::wstring& sName) const
    {
        std::string bytes;
        for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
            for (const std::wstring& sKey : Order(sName, cSubCat->CatLevel()))
                bytes += SifCut(std::string(sKey.begin(), sKey.end()), cSubCat->CatLevel());
        return bytes;
    }
};

TEST_F(ShuffleTest, EachLevelIsShuffledInItselfAndItsMainCategorySavedOnce)
{
    const std::shared_ptr<CutCollection> colHeld = Level(L"Rock", 1)->SchedCuts(); // by a host
    const Keys colRock1 = Order(L"Rock", 1);
    const Keys colRock2 = Order(L"Rock", 2);
    const Keys colPop = Order(L"Pop", 1);
    Shuffle({Level(L"Rock", 1), Level(L"Rock", 2)});
    EXPECT_NE(Order(L"Rock", 1), colRock1);
    EXPECT_NE(Order(L"Rock", 2), colRock2);
    EXPECT_EQ(Sorted(Order(L"Rock", 1)), Sorted(colRock1));
    EXPECT_EQ(Sorted(Order(L"Rock", 2)), Sorted(colRock2));
    EXPECT_EQ(Order(L"Pop", 1), colPop);
    EXPECT_EQ(Written(), Lines{L"Rock"});
    EXPECT_EQ(File(L"Rock"), Records(L"Rock"));
    EXPECT_EQ(said, SaveSaid(L"Rock", 40));
    EXPECT_EQ(boxes, Boxes()) << "it asks on request only";
    EXPECT_EQ(cPorts.cRandom.lRandomized, 1);
    EXPECT_EQ(Level(L"Rock", 1)->SchedCuts(), colHeld);
    EXPECT_EQ(TotalOf(L"Rock", 1), 20 * 180'000);
    for (std::size_t at = 0; at < colHeld->Count(); ++at)
    {
        EXPECT_EQ(*colHeld->KeyAt(at), colHeld->At(at)->Key());
        EXPECT_EQ(colHeld->At(at)->CategoryText(), L"Rock");
    }
}

TEST_F(ShuffleTest, AMainCategoryMeansAllItsLevelsEachShuffledOnce)
{
    RadioPorts cOther; // with the same random numbers
    Library cLibrary(cOther);
    cLibrary.cDataBase->colCuts = cLib.cDataBase->colCuts;
    cLibrary.Populate();
    Shuffle({MainCat(L"Rock")});
    cLibrary.cSchedMan->ShuffleCategories(
        {cLibrary.Level(L"Rock", 2), cLibrary.MainCat(L"Rock"), cLibrary.Level(L"Rock", 2)});
    EXPECT_EQ(cLibrary.Tree(), Tree());
}

TEST_F(ShuffleTest, OnlyYesToItsQuestionShuffles)
{
    const Cats colCats{MainCat(L"Rock"), Level(L"Pop", 1)};
    for (const BoxAnswer eAnswer : {BoxAnswer::No, BoxAnswer::None, BoxAnswer::Yes})
    {
        Forget();
        const Keys colBefore = Order(L"Pop", 1);
        cPorts.cMessages.Answers = {eAnswer};
        Shuffle(colCats, true);
        EXPECT_EQ(boxes, (Boxes{{BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Confirm Shuffle.",
                                 L"Really shuffle these categories: Rock, Pop 1"}}));
        EXPECT_EQ(Order(L"Pop", 1) != colBefore, eAnswer == BoxAnswer::Yes);
        EXPECT_EQ(Written(), eAnswer == BoxAnswer::Yes ? (Lines{L"Rock", L"Pop"}) : Lines());
    }
}

TEST_F(ShuffleTest, TheQuestionListsThirtyCategories)
{
    const auto cMainCat = AddMainCat(L"X");
    for (std::int32_t lLevel = 1; lLevel <= 33; ++lLevel)
        cMainCat->AddSubCat(NewCat(L"X", lLevel));
    Shuffle({cMainCat->SubCats()->begin(), cMainCat->SubCats()->end()}, true);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_TRUE(boxes[0].sText.starts_with(L"Really shuffle these categories: X 1, X 2, "));
    EXPECT_TRUE(boxes[0].sText.ends_with(L", X 30... (+3)"));
}

TEST_F(ShuffleTest, ACategoryThatCannotBeSavedIsReportedAndTheOthersAreShuffled)
{
    SetReadOnly(L"Rock");
    Shuffle({MainCat(L"Rock"), MainCat(L"Pop")});
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::Exclamation, L"RavloScheduler",
                                  L"Failed to save cat history and ordering for: Rock")}));
    EXPECT_EQ(File(L"Pop"), Records(L"Pop"));
    EXPECT_EQ(cPorts.TemporaryFiles(), Lines());
}

TEST_F(ShuffleTest, WhatHasNoLevelsOrDoesNotExistIsSkipped)
{
    const auto cDead = Level(L"Pop", 1);
    Delete({cDead});
    Forget();
    Shuffle({AddMainCat(L"Empty")});
    Shuffle({cDead, NewCat(L"Gone")}, true);
    EXPECT_EQ(boxes, Boxes()) << "nothing to ask about";
    EXPECT_EQ(Written(), Lines());
}

TEST_F(ShuffleTest, ACategoryFromBeforeAReloadIsShuffledByItsName)
{
    const Cats colOld{MainCat(L"Rock"), Level(L"Pop", 1)};
    const Keys colBefore = Order(L"Pop", 1);
    cLib.Populate();
    Forget();
    cPorts.cMessages.Answers = {BoxAnswer::Yes};
    Once(cPorts.cMessages.OnShown, [&] { cLib.Populate(); }); // once more while the question is open
    Shuffle(colOld, true);
    EXPECT_NE(Order(L"Pop", 1), colBefore);
    EXPECT_EQ(Sorted(Order(L"Pop", 1)), Sorted(colBefore));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    const std::wstring sShuffled = Tree();
    cLib.Restart();
    EXPECT_EQ(Tree(), sShuffled);
}

// ---- deleting

const Lines colDeleted{L"Done: Categories Deleted."};

TEST_F(EditingTest, ADeletedLevelLosesItsCutsAndItsMainCategoryIsSaved)
{
    const auto cGone = Start(L"Rock 1: a | Pop 1: a | Rock 2: b");
    const auto cDead = Level(L"Rock", 1);
    EXPECT_TRUE(Delete({cDead}));
    EXPECT_EQ(Tree(), L"Rock 2: b | Pop 1: a");
    EXPECT_EQ(cGone->CategoryText(), L"Pop");
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1"},
                            SaveSaid(L"Rock", 1),
                            colDeleted}));
    EXPECT_EQ(Written(), Lines{L"Rock"});
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cDead->TotalCuts(), 0);
}

TEST_F(EditingTest, ACutInTwoLevelsOfOneMainCategoryKeepsTheName)
{
    const auto cCut = Start(L"Rock 1: a | Rock 2: b");
    PlaceToo(cCut, L"Rock", 2);
    EXPECT_TRUE(Delete({Level(L"Rock", 2)}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(Tree(), L"Rock 1: a");
}

TEST_F(EditingTest, WithItsLastLevelTheFileGoesAndTheMainCategoryStays)
{
    Start(L"Rock 1: a");
    ASSERT_NE(File(L"Rock"), "none");
    EXPECT_TRUE(Delete({Level(L"Rock", 1)}));
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1"}, colDeleted}));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock") << "the level does not come back";
    EXPECT_TRUE(Delete({MainCat(L"Rock")}));
    EXPECT_EQ(Tree(), L"");
}

TEST_F(EditingTest, ADeletedMainCategoryTakesLevelsFileAndListedName)
{
    const std::wstring sRules = L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls";
    const auto cCut = Start(L"Rock 1: a | Pop 1: a | Rock 2: b");
    cPorts.cFiles.Put(sRules, "rules");
    EXPECT_TRUE(Delete({MainCat(L"Rock")}));
    EXPECT_EQ(Tree(), L"Pop 1: a");
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nPop");
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(said, Joined({{L"Start 1: Deleting Category: Rock 1", L"Done: Deleted Rock 1",
                             L"Start 1: Deleting Category: Rock 2", L"Done: Deleted Rock 2"},
                            colDeleted}));
    EXPECT_TRUE(cPorts.cFiles.FileExists(sRules)) << "rules stay";
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Pop 1: a");
}

TEST_F(EditingTest, AMainCategoryListedWithSomeOfItsLevelsStaysWhileOneIsLeft)
{
    Start(L"Rock 1: a | Rock 2: b | Rock 3: c");
    EXPECT_TRUE(Delete({MainCat(L"Rock"), Level(L"Rock", 1), Level(L"Rock", 2)}));
    EXPECT_EQ(Tree(), L"Rock 3: c");
    EXPECT_EQ(File(L"Rock"), SifCut("c", 3));
    EXPECT_TRUE(Delete({Level(L"Rock", 3), MainCat(L"Rock")})) << "in any order";
    EXPECT_EQ(Tree(), L"");
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "");
}

TEST_F(EditingTest, DeletingReportsEveryFiftiethCutAndPumps)
{
    AddMany(120, L"k", L"Rock", 1);
    Add(L"x", L"Rock", 2);
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    EXPECT_TRUE(Delete({Level(L"Rock", 1)}));
    colTrace.resize(6);
    EXPECT_EQ(
        colTrace,
        (Lines{L"Start 120: Deleting Category: Rock 1", L"Progress 50/120: Removed 50 from: Rock 1", L"pump",
               L"Progress 100/120: Removed 100 from: Rock 1", L"pump", L"Done: Deleted Rock 1"}));
}

TEST_F(EditingTest, OnlyWhatExistsIsDeleted)
{
    Start(L"Rock 1: a | Rock 2: b");
    EXPECT_TRUE(Delete({}));
    EXPECT_EQ(said, colDeleted);
    Forget();
    EXPECT_FALSE(Delete({NewCat(L"Rock", 7), nullptr, NewCat(L"Gone")}));
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 2: b");
    EXPECT_FALSE(Delete({NewCat(L"Gone"), Level(L"Rock", 1)}));
    EXPECT_EQ(Tree(), L"Rock 2: b");
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
}

TEST_F(EditingTest, ACategoryFromBeforeAReloadIsDeletedByItsName)
{
    Start(L"Rock 1: a | Rock 2: b | Pop 1: p");
    const Cats colOld{Level(L"Rock", 1), MainCat(L"Pop")};
    cLib.Populate();
    Forget();
    EXPECT_TRUE(Delete({colOld[0], colOld[1], Level(L"Rock", 1)}));
    EXPECT_EQ(Tree(), L"Rock 2: b");
    EXPECT_EQ(said.back(), colDeleted.front());
    EXPECT_EQ(File(L"Rock"), SifCut("b", 2));
    EXPECT_EQ(File(L"Pop"), "none");
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 2: b");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(EditingTest, ACutThatRefusesKeepsItsLevelAndIsReportedOnce)
{
    const auto cBad = Start(L"Rock 1: bad good | Rock 2: x");
    cBad->failing = {"RemoveCategoryName"};
    EXPECT_FALSE(Delete({Level(L"Rock", 1), Level(L"Rock", 2)}));
    EXPECT_EQ(Tree(), L"Rock 1: bad");
    EXPECT_EQ(TotalOf(L"Rock", 1), 180'000);
    EXPECT_EQ(CutOf(L"good")->CategoryText(), L"");
    EXPECT_EQ(cBad->CategoryText(), L"Rock");
    EXPECT_EQ(File(L"Rock"), SifCut("bad", 1));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]",
                                        CriticalText(91) + L" (1 cuts could not be handled)")}));
}

TEST_F(EditingTest, AFileThatCannotBeDeletedIsShownAndTheCategoryIsGone)
{
    Start(L"Rock 1: a");
    SetReadOnly(L"Rock");
    EXPECT_FALSE(Delete({MainCat(L"Rock")}));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(75))}));
    EXPECT_EQ(Tree(), L"");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "");
}

TEST_F(EditingTest, ARunTimeOutOfRangeIsNoReasonToKeepALevel)
{
    constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2, lLongest);
    Add(L"c", L"Rock", 3, lLongest);
    Start();
    EXPECT_TRUE(Delete({Level(L"Rock", 1)}));
    EXPECT_EQ(Tree(), L"Rock 2: b | Rock 3: c");
    EXPECT_EQ(boxes, Boxes()) << "the figure is not shown anywhere";
    EXPECT_EQ(Logged(L"DISPLAYERROR, RemoveSubCat 6 " + StandardText(6)), 1);
}

TEST_F(EditingTest, CutsOfADeletedLevelMayBeAnnouncedAgain)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: a");
    Delete({Level(L"Rock", 1)});
    Forget();
    Modified({cCut});
    EXPECT_EQ(Written(), Lines()) << "it is placed by its new names";
    cCut->SetCategoryText(L"Pop/Rock");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
}

TEST_F(EditingTest, AReloadInTheMiddleOfADeletionLeavesTheNewTreeAlone)
{
    AddMany(60, L"k", L"Rock", 1);
    Start();
    Once(cPorts.cHostLoop.OnPump, [&] { cLib.Populate(); });
    EXPECT_FALSE(Delete({MainCat(L"Rock")}));
    EXPECT_EQ(Order(L"Rock", 1).size(), 10u) << "those not yet deleted at the reload";
    for (const std::shared_ptr<Cut>& cCut : CutsOf(L"Rock"))
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
        Populate();
        Forget();
    }
    void Populate() { cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio); }
    bool DeleteRock() { return cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}); }
    void ChangeRock(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cTo)
    {
        cLib.Change(eOption, Level(L"Rock", 1), cTo, CutsOf(L"Rock"));
    }

    std::shared_ptr<BatchingDataBase> cBatching = std::make_shared<BatchingDataBase>();
};

TEST_F(BatchTest, OperationsCommitBeforeAnythingThatLetsOthersRun)
{
    const auto isClosed = [this] { EXPECT_FALSE(cBatching->bOpen); };
    cLib.cHost.OnEvent = [&](const std::wstring&) { isClosed(); };
    cPorts.cHostLoop.OnPump = isClosed;
    cPorts.cHostLoop.OnSleep = [&](std::uint32_t) { isClosed(); };
    cPorts.cMessages.OnShown = isClosed;
    ChangeRock(eCopyHere, MainCat(L"Pop"));
    EXPECT_EQ(cBatching->lCommitted, 2);
    ChangeRock(eMoveHere, Level(L"Pop", 2));
    EXPECT_EQ(cBatching->lCommitted, 5);
    EXPECT_EQ(Order(L"Pop", 2).size(), 111u);
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Pop", 2)}));
    EXPECT_EQ(cBatching->lCommitted, 8);
    EXPECT_EQ(cBatching->lBegun, 8);
    cLib.cHost.OnEvent = nullptr;
}

TEST_F(BatchTest, ARefusedMoveChangesNothing)
{
    const std::wstring sTree = Tree();
    cBatching->bRefusesCommit = true;
    ChangeRock(eMoveHere, Level(L"Pop", 2));
    EXPECT_EQ(Tree(), sTree);
    EXPECT_EQ(TotalOf(L"Rock", 1), 110 * 180'000);
    EXPECT_EQ(TotalOf(L"Pop", 2), 180'000);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DoMassCatChange [cSchedMan]", CriticalText(61))}));
    EXPECT_EQ(Written(), Lines());
    cBatching->cInner.Announce(&DataBaseEvents::CutsModified, CutsOf(L"Rock"));
    EXPECT_EQ(Written(), Lines()) << "tree and database agree";
}

TEST_F(BatchTest, CutsOfARefusedBatchGetTheirPlacesBackInEveryLevel)
{
    Cuts& colAll = cBatching->cInner.colCuts;
    cBatching->cInner.Add(L"q", L"Pop", 2);
    cBatching->cInner.Add(L"r", L"Pop", 2);
    colAll[4]->SetCategoryText(L"Rock/Jazz");
    colAll[7]->SetCategoryText(L"Rock/Jazz");
    colAll[9]->SetCategoryText(L"Jazz/Rock");
    Populate();
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock"), MainCat(L"Jazz")});
    const std::wstring sTree = Tree();
    const Cuts colRock = CutsOf(L"Rock");
    Cuts colSome{colAll[9], colAll[111]}; // from the middle, in any order
    for (const std::size_t at : {70u, 3u, 40u, 109u, 0u, 71u, 4u})
        colSome.push_back(colRock[at]);
    cBatching->bRefusesCommit = true;
    for (const Cuts& colCuts : {colRock, colSome})
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere, eCopyHere})
        {
            cLib.Change(eOption, Level(L"Rock", 1), Level(L"Pop", 2), colCuts);
            EXPECT_EQ(Tree(), sTree) << eOption;
        }
    EXPECT_FALSE(DeleteRock());
    EXPECT_EQ(Tree(), sTree);
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : colSome)
        colRemovals.push_back({cCut, nullptr, 0});
    cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    EXPECT_EQ(Tree(), sTree);
    cLib.SaveAll();
    Populate();
    EXPECT_EQ(Tree(), sTree) << "the files contain the same";
}

TEST_F(BatchTest, ARefusedDeletionLeavesWhatIsNotAnnouncedToItsAnnouncement)
{
    const std::shared_ptr<Cut> cCut = CutsOf(L"Rock")[3];
    cCut->SetCategoryText(L"Rock/Pop"); // not announced yet
    cBatching->bRefusesCommit = true;
    EXPECT_FALSE(DeleteRock());
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(61))}));
    EXPECT_EQ(Order(L"Rock", 1)[3], L"k4");
    EXPECT_EQ(File(L"Rock").size(), 110 * HistoryFiles::recordSize);
    EXPECT_EQ(Level(L"Pop", 1), nullptr);
    EXPECT_EQ(Written(), Lines{L"Rock"});
    cBatching->cInner.Announce(&DataBaseEvents::CutsModified, Cuts{cCut});
    EXPECT_EQ(Order(L"Pop", 1), Keys{L"k4"});
    EXPECT_EQ(File(L"Pop"), SifCut("k4", 1) + SifCut("p", 2));
}

TEST_F(BatchTest, ABatchThatCannotBeginIsReportedAndEachCutChangesByItself)
{
    cBatching->bRefusesBegin = true;
    EXPECT_FALSE(DeleteRock());
    EXPECT_EQ(Tree(), L"Pop 2: p") << "all is done";
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(57))}));
}

// ---- re-ordering

class MoveCutsTest : public EditingTest
{
protected:
    MoveCutsTest() { Start(L"Rock 1: 1 2 3 4 5 6 7 8 9 | Rock 2: x"); }
    // The order as digits after the cuts with those numbers were moved to PosInto.
    std::string Move(const std::string& sCuts, std::int32_t lPosInto)
    {
        Cuts colCuts;
        for (const char c : sCuts)
            colCuts.push_back(CutOf(std::wstring(1, static_cast<wchar_t>(c))));
        cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock", 1), colCuts, lPosInto);
        std::string sOrder;
        for (const std::wstring& sKey : Order(L"Rock", 1))
            sOrder += static_cast<char>(sKey[0]);
        return sOrder;
    }
};

TEST_F(MoveCutsTest, CutsAreInsertedBeforeTheOneAtThePosition)
{
    struct Case
    {
        const char* sCuts;
        std::int32_t lPosInto;
        const char* sOrder;
    };
    for (const Case& c : {
             Case{"456", 8, "123745689"}, // at 5 to 7 in the end
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
        CutOf(L"4")->calls.clear();
        Move("123456789", 1);
        Forget();
        EXPECT_EQ(Move(c.sCuts, c.lPosInto), c.sOrder);
        EXPECT_EQ(Written(), Lines{L"Rock"});
        EXPECT_EQ(File(L"Rock").substr(510, 1), std::string(1, c.sOrder[0]));
        EXPECT_EQ(TotalOf(L"Rock", 1), 9 * 180'000);
        EXPECT_EQ(CutOf(L"4")->calls.count("RemoveCategoryName"), 0u) << "only the order changes";
        EXPECT_EQ(boxes, Boxes());
    }
}

TEST_F(MoveCutsTest, EveryMoveAgreesWithRemovingAndInsertingByHand)
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

TEST_F(MoveCutsTest, CutsOfAnotherLevelChangeAndSaveNothing)
{
    EXPECT_EQ(Move("x", 3), "123456789");
    EXPECT_EQ(Move("", 3), "123456789");
    EXPECT_EQ(Written(), Lines());
}

TEST_F(MoveCutsTest, ACategoryThatIsNoLevelOrGoneIsAnError)
{
    const std::shared_ptr<clsCat> cGone = Level(L"Rock", 1);
    const Cuts colCuts{CutOf(L"9")};
    const auto expectError = [&](const std::shared_ptr<clsCat>& cCat, const std::wstring& sText) {
        Forget();
        cLib.cSchedMan->MoveCutsInCategory(cCat, colCuts, 1);
        EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in InsertCuts [cSchedMan]", sText)});
        EXPECT_EQ(Written(), Lines());
    };
    expectError(nullptr, CriticalText(5));
    expectError(MainCat(L"Rock"), CriticalText(5));
    cLib.cSchedMan->DeleteCats({cGone});
    expectError(cGone, L"5 The category to move cuts in does not exist any more");
}

TEST_F(MoveCutsTest, ALevelFromBeforeAReloadMeansThePresentOne)
{
    const std::shared_ptr<clsCat> cOld = Level(L"Rock", 1);
    cLib.Populate();
    Forget();
    cLib.cSchedMan->MoveCutsInCategory(cOld, {CutOf(L"9")}, 1);
    EXPECT_EQ(Move("", 1), "912345678");
    EXPECT_EQ(Written(), Lines{L"Rock"});
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(MoveCutsTest, ACutThatCannotBeReadIsShownAndNothingMoves)
{
    CutOf(L"5")->failing = {"Key"};
    cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock", 1), {CutOf(L"4"), CutOf(L"5")}, 1);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in InsertCuts [cSchedMan]", CriticalText(91))}));
    CutOf(L"5")->failing.clear();
    EXPECT_EQ(Move("", 1), "123456789");
}

} // namespace
} // namespace ravlo::test
