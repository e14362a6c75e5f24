// SPDX-License-Identifier: MIT
#include "ui/library/LibraryCuts.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

// ---- editing

TEST_P(frmUILibTest, ADoubleClickEditsTheCutAndShowsTheNodeUnlessCancelled)
{
    const auto expectEdit = [&](std::optional<std::int32_t> lAnswer, bool bShownAgain) {
        cView.colStatus.clear();
        cLibrary.cHost.lEditAnswer = lAnswer;
        CutActions().CellDblClick(2, 3);
        EXPECT_EQ(Said().back(), L"Edit b");
        EXPECT_EQ(!cView.colStatus.empty(), bShownAgain);
    };
    expectEdit(2, false);
    expectEdit(1, true);
    expectEdit(std::nullopt, true);
    cView.colStatus.clear();
    cLibrary.cHost.OnEvent = [&](const std::wstring&) { cForm.RequestRefresh(); };
    CutActions().CellDblClick(1, 1);
    const std::wstring sShown = L"Showing All Audio|Showing 6 total.";
    EXPECT_EQ(std::count(cView.colStatus.begin(), cView.colStatus.end(), sShown), 1)
        << "an edit that the database announces is shown once";
    Said().clear();
    CutActions().CellDblClick(0, 1); // no cell
    CutActions().CellDblClick(1, 0);
    CutActions().CellDblClick(7, 1);
    DataBase().colCuts.clear();
    CutActions().CellDblClick(1, 1); // no cut
    EXPECT_TRUE(Said().empty());
}

TEST_P(ShownLevelTest, ADoubleClickEditsItsCutThoughTheRowsHaveMoved)
{
    CutActions().Pressed(2, 1);
    Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a"));
    cForm.RequestRefresh();
    ASSERT_EQ(RowKeys(), (Keys{L"b", L"c", L"a"}));
    CutActions().EditPressed();
    EXPECT_EQ(Said().back(), L"Edit b");
    Said().clear();
    CutActions().EditPressed();
    EXPECT_TRUE(Said().empty());
}

// ---- removing

TEST_P(frmUILibTest, DeleteWithNothingSelectedSaysSo)
{
    CutActions().GridDelete();
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"First Select Some Items In The Grid!",
                                    L"There are no items selected to be remove category from!")}));
}

TEST_P(ShownLevelTest, InALevelDeleteRemovesTheCutsFromItAndSaves)
{
    ForgetSifs();
    Remove({0, 2});
    EXPECT_TRUE(Shown().empty());
    ExpectOrders({L"b"}, {L"c", L"e"});
    EXPECT_EQ(RowKeys(), (Keys{L"b"}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_FALSE(SifSaved(L"Jazz"));
    EXPECT_EQ(cView.bBusy.back(), false);
}

TEST_P(NewLibraryTest, DeleteGoesByTheLevelThatContainsACutAndNotByItsNumber)
{
    for (const wchar_t* sShown : {L"Rock", sAllAudio})
    {
        ScreenLibrary fresh(GetParam());
        Fill(fresh);
        fresh.Show();
        const std::shared_ptr<Cut> cCut = fresh.DataBase().colCuts[3]; // d, which is in Rock 2
        cCut->SetCatLevel(1);
        fresh.ShowNode(sShown, 0);
        fresh.Answers({BoxAnswer::Yes});
        fresh.Remove({3});
        EXPECT_TRUE(fresh.Order(L"Rock", 2).empty());
        EXPECT_EQ(fresh.Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(cCut->CategoryText(), L"");
    }
}

TEST_P(frmUILibTest, InAllAudioDeleteAsksAndRemovesTheCutsFromEverything)
{
    Remove({2});
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?"}}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
    Answers({BoxAnswer::Yes});
    ForgetSifs();
    Remove({2});
    ExpectOrders({L"a", L"b"}, {L"e"});
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_TRUE(SifSaved(L"Jazz"));
}

TEST_P(frmUILibTest, AfterAHostsPopulationDeleteRemovesFromTheCurrentLevel)
{
    const auto expectLeft = [&](std::int32_t lLevel, const Keys& colLeft) {
        ShowNode(L"Rock", lLevel);
        cLibrary.Populate();
        Remove({0});
        EXPECT_EQ(Order(L"Rock", 1), colLeft);
    };
    expectLeft(1, {L"b", L"c"});
    expectLeft(0, {L"c"});
}

TEST_P(NewLibraryTest, ACutInTwoLevelsIsSelectedInTheLevelItWas)
{
    Add(L"twice", L"Rock", 2);
    Show();
    bool bCreated = false;
    const auto cCut = DataBase().colCuts.back();
    cCut->SetCatLevel(1);
    Level(L"Rock", 1)->AddCut(cCut, bCreated);
    ShowNode(L"Rock", 0);
    ASSERT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d", L"twice"}));
    cGridView.Select({5});
    cGridView.current = 5;
    cForm.RequestRefresh();
    EXPECT_EQ(Grid().SelectedRows(), (Rows{5}));
    EXPECT_EQ(cGridView.current, 5u);
    CutActions().GridDelete();
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d"}));
    EXPECT_TRUE(Grid().SelectedRows().empty()) << "the other row was not selected";
}

TEST_P(NewLibraryTest, RemovingManyCutsReportsAndContinuesPastAFailure)
{
    for (int lCut = 0; lCut < 120; ++lCut)
        Add(L"m" + std::to_wstring(lCut), L"Many", 1);
    Show();
    ShowNode(L"Many", 1);
    CutInRow(5).failing = {"RemoveCategoryName"};
    cGridView.SelectAll(true);
    cView.colStatus.clear();
    CutActions().GridDelete();
    EXPECT_EQ(Order(L"Many", 1), (Keys{L"m5"}));
    EXPECT_EQ((Lines{cView.colStatus.begin(), cView.colStatus.begin() + 3}),
              (Lines{L"Removing from category...|", L"Removed 50 of 120|", L"Removed 100 of 120|"}));
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"Error in RemoveCutFromCategory [cSchedMan]");
}

// ---- drag and drop into the tree, copy and paste

class DropTest : public frmUILibTest
{
protected:
    using Choices = std::deque<std::optional<std::size_t>>;
    struct Target
    {
        const wchar_t* sName;
        std::int32_t lLevel;
    };
    // Shows a node, selects rows and drops them.
    static void Drop(ScreenLibrary& in, Target from, const Rows& colRows, Target to, Choices colChoices)
    {
        in.ShowNode(from.sName, from.lLevel);
        in.cGridView.Select(colRows);
        in.cView.colChoices = std::move(colChoices);
        in.DropOnNode(to.sName, to.lLevel);
    }
    void Drop(Target from, const Rows& colRows, Target to, Choices colChoices)
    {
        Drop(*this, from, colRows, to, std::move(colChoices));
    }
    // Shows Rock 1, keeps its first cut for a Paste and selects Jazz 1.
    void CopyFirstOfRock()
    {
        Show();
        ShowNode(L"Rock", 1);
        cGridView.Select({0});
        CutActions().CopySelection();
    }
    void PasteInto(const std::wstring& sName, std::int32_t lLevel, std::size_t choice)
    {
        SelectNode(sName, lLevel);
        cView.colChoices = {choice};
        CutActions().Paste();
    }
    const Target allAudio{sAllAudio, 0}, rock{L"Rock", 0}, rock1{L"Rock", 1}, rock2{L"Rock", 2},
        jazz{L"Jazz", 0}, jazz1{L"Jazz", 1};
    const LibraryCuts::Drop ontoJazz1{true, L"Jazz\t1", std::nullopt, sGridPayload};
    const Keys colJazzWithA{L"c", L"e", L"a"};
    const ShownBox refusal = OkBox(
        BoxIcon::Information, L"Multiple Category Levels Not Allowed!",
        L"Items can only be in one category level,even though they may be in multiple categories.\r\n\r\n"
        L"Copying the items to this level is therefore not permitted.\r\n\r\n"
        L"You DO have the option to move the items to this level,\r\n"
        L"in which case this will change the level for EVERY category the items are in.");
    enum Choice : std::size_t
    {
        eCopy,
        eMove,
        eExclusive,
        eGiveUp
    };
};

TEST_P(DropTest, PopUpsNameTheTargetAndAMainCategorysLevelIsChosenFirst)
{
    const Items levels{L"Drop Into: Rock, keeping levels the same", L"Drop Into Rock Level 1",
                       L"Drop Into Rock Level 2"};
    const Items intoLevel{L"Copy Into Rock 2", L"Move Into Rock 2", L"Move Exclusive Into Rock 2", L"Cancel"};
    const Items intoMain{L"Copy Into Rock", L"Move Into Rock", L"Move Exclusive Into Rock", L"Cancel"};
    const auto expectPopUps = [&](Target to, Choices colChoices, const std::vector<Items>& colExpected) {
        cView.colPopUps.clear();
        Drop(rock1, {0}, to, std::move(colChoices));
        EXPECT_EQ(cView.colPopUps, colExpected);
    };
    expectPopUps(rock2, {}, {intoLevel});
    expectPopUps(rock, {2, std::nullopt}, {levels, intoLevel});
    expectPopUps(rock, {0, std::nullopt}, {levels, intoMain});
}

TEST_P(DropTest, EachChoiceCopiesOrMovesUnderItsRules)
{
    const auto expect = [&](const char* what, Target from, const Rows& colRows, Target to,
                            const Choices& colChoices, const Keys& inRock1, const Keys& inRock2,
                            const Keys& inJazz1, const Keys& inJazz2, const Boxes& said = {}) {
        SCOPED_TRACE(what);
        ScreenLibrary fresh(GetParam());
        Fill(fresh);
        fresh.Show();
        Drop(fresh, from, colRows, to, colChoices);
        fresh.ExpectOrders(inRock1, inJazz1);
        EXPECT_EQ(fresh.Order(L"Rock", 2), inRock2);
        EXPECT_EQ(fresh.Order(L"Jazz", 2), inJazz2);
        EXPECT_EQ(fresh.Shown(), said);
        const std::shared_ptr<clsCat> cShown = fresh.Grid().CurrentCatViewing();
        EXPECT_EQ(fresh.RowKeys().size(), cShown ? static_cast<std::size_t>(cShown->TotalCuts()) : 6u)
            << "the shown node again";
        EXPECT_FALSE(fresh.cView.Busy());
    };
    const Keys abc{L"a", L"b", L"c"}, ab{L"a", L"b"}, d{L"d"}, dc{L"d", L"c"}, ce{L"c", L"e"};
    const Boxes no{refusal};
    expect("levels kept", rock, {0, 3}, jazz, {0, eCopy}, abc, d, {L"c", L"e", L"a"}, d);
    expect("copied into the same number", rock1, {1}, jazz1, {eCopy}, abc, d, {L"c", L"e", L"b"}, {});
    expect("copied into another number", rock1, {2}, rock2, {eCopy}, abc, d, ce, {}, no);
    expect("copied from several levels", rock, {0, 3}, jazz1, {eCopy}, abc, d, ce, {}, no);
    expect("moved: in every category", rock1, {2}, rock2, {eMove}, ab, dc, {L"e"}, {L"c"});
    expect("moved out of all audio: out of all its levels", allAudio, {2}, rock2, {eMove}, ab, dc, {L"e"},
           {});
    expect("moved exclusively", rock1, {2}, rock2, {eExclusive}, ab, dc, {L"e"}, {});
    expect("of no category, another number", allAudio, {5}, rock2, {eCopy}, abc, d, ce, {}, no);
    expect("of no category, its own number", allAudio, {5}, jazz1, {eCopy}, abc, d, {L"c", L"e", L"f"}, {});
    expect("of no category, moved", allAudio, {5}, rock2, {eMove}, abc, {L"d", L"f"}, ce, {});
    expect("the first pop-up dismissed", rock1, {0}, jazz, {std::nullopt}, abc, d, ce, {});
    expect("the second pop-up dismissed", rock1, {0}, jazz, {1, std::nullopt}, abc, d, ce, {});
    expect("cancelled", rock1, {0}, jazz, {1, eGiveUp}, abc, d, ce, {});
}

TEST_P(DropTest, ALevelThatADropMakesIsBroughtIntoView)
{
    Drop(rock, {0, 3}, jazz, {0, eCopy});
    EXPECT_EQ(cTreeView.colBrought, (std::vector{Node(L"Jazz", 2)}));
    EXPECT_TRUE(Tree().At(Node(L"Jazz", 0)).bExpanded);
    EXPECT_EQ(cTreeView.colExpanded.back(), Node(L"Jazz", 0));
    EXPECT_EQ(SelectedNode(), L"Rock\t0");
}

TEST_P(DropTest, ADropLeavesTheTreeAndTheSelectionOfAllAudioWhereTheyAre)
{
    Drop(rock1, {2}, rock2, {eMove}); // c is in Jazz as well
    EXPECT_TRUE(InTree(L"Jazz\t2"));
    EXPECT_TRUE(cTreeView.colBrought.empty());
    EXPECT_FALSE(Tree().At(Node(L"Jazz", 0)).bExpanded);
    Drop(allAudio, {2}, rock1, {eMove});
    EXPECT_EQ(SelectedKeys(), (Keys{L"c"}));
}

TEST_P(DropTest, AllAudioIsNoTargetAndNextToTheNodesNothingHappens)
{
    StartDrag({0});
    CutActions().DragCompleted(LibraryCuts::Drop{true, L"", std::nullopt, sGridPayload});
    CutActions().Dropped({true, L"", std::nullopt, sGridPayload});
    EXPECT_TRUE(Shown().empty());
    Drop(rock1, {0}, allAudio, {});
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"Invalid Drop!",
                                    L"It's not valid to drop into 'ALL AUDIO'")}));
    EXPECT_TRUE(cView.colPopUps.empty());
}

TEST_P(DropTest, ADragFromElsewhereIsRefusedWithAnyText)
{
    ShowNode(L"Rock", 1);
    cGridView.Select({0});
    for (const wchar_t* sText : {sGridPayload, L"something else"})
        for (const bool bOnTree : {true, false})
        {
            Shown().clear();
            CutActions().Dropped({bOnTree, bOnTree ? L"Jazz\t1" : L"", std::nullopt, sText});
            EXPECT_EQ(Shown(),
                      (Boxes{OkBox(BoxIcon::None, L"Scheduler Grid", L"Unrecognized Source for dragdrop!")}));
        }
    EXPECT_TRUE(cView.colPopUps.empty());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

TEST_P(DropTest, APastedCutIsComparedByItsCurrentNumber)
{
    CopyFirstOfRock();
    const std::shared_ptr<Cut> cCut = DataBase().colCuts[0];
    cCut->SetCatLevel(2);
    Announce(&DataBaseEvents::CutsModified, cCut);
    ASSERT_EQ(Order(L"Rock", 2), (Keys{L"d", L"a"}));
    PasteInto(L"Jazz", 1, eCopy);
    EXPECT_EQ(Shown(), (Boxes{refusal}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, ASecondMoveByPasteLeavesTheTargetOfTheFirst)
{
    CopyFirstOfRock();
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA);
    PasteInto(L"Rock", 2, eMove);
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"d", L"a"}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, TheCutsAreThoseSelectedBeforeThePopUpsOpened)
{
    cView.OnPopUp = [&] {
        cGridView.Select({1});
        cLibrary.Populate(); // a host may do that
    };
    Drop(rock1, {0}, jazz1, {eMove});
    EXPECT_TRUE(Shown().empty());
    ExpectOrders({L"b", L"c"}, colJazzWithA);
}

TEST_P(DropTest, AFailureWhileGatheringTheLevelsEndsTheDropWithAReport)
{
    cView.OnPopUp = [] { ADD_FAILURE(); };
    StartDrag({0});
    cGridView.OnSelectedRows = [] { throw RuntimeError(error::InvalidProcedureCall); };
    CutActions().DragCompleted(ontoJazz1);
    EXPECT_EQ(Shown(), (Boxes{HandledError(L"Error occurred in dragdrop",
                                           L"Invalid procedure call or argument", L"5")}));
}

TEST_P(DropTest, AnUnexpectedFailureIsReportedAndTheBusyStateIsCleared)
{
    cView.OnPopUp = [] { throw RuntimeError(error::DeviceIo); };
    Drop(rock1, {0}, jazz1, {});
    EXPECT_EQ(Shown(), (Boxes{CriticalBox(L"RavloScheduler", L"An Error occurred.")}));
    ExpectIdle();
}

TEST_P(DropTest, ACategoryDeletedWhileThePopUpIsOpenIsNotPlacedInto)
{
    cView.OnPopUp = [&] { Man().DeleteCats({MainCat(L"Jazz")}); };
    Drop(rock1, {0}, jazz1, {eCopy});
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"Error in DoMassCatChange [cSchedMan]");
    EXPECT_EQ(DataBase().colCuts[0]->CategoryText(), L"Rock");
}

TEST_P(DropTest, ACutThatLeavesTheDatabaseIsNotPlacedAgain)
{
    CopyFirstOfRock();
    cView.OnPopUp = [&] {
        const std::shared_ptr<Cut> cCut = DataBase().colCuts[0];
        DataBase().Remove(*cCut);
        Announce(&DataBaseEvents::CutsRemoved, cCut);
        cView.OnPopUp = nullptr;
    };
    Drop(rock1, {0, 1}, jazz1, {eCopy});
    ExpectOrders({L"b", L"c"}, {L"c", L"e", L"b"});
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e", L"b"}));
}

TEST_P(DropTest, APasteMovesWhatWasCopiedFromItsCurrentLevels)
{
    CopyFirstOfRock();
    cGridView.Select({1});
    PasteInto(L"Jazz", 1, eCopy);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA) << "not what is selected now";
    CopyFirstOfRock();
    Do(mnuReloadAll);
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c"})) << "after a reload";
    Man().DeleteCats({MainCat(L"Rock")});
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA) << "with its level gone";
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Jazz"}));
}

TEST_P(DropTest, NothingSelectedOrCopiedIsNothingToDragOrPaste)
{
    CutActions().Paste();
    EXPECT_TRUE(cView.colPopUps.empty());
    EXPECT_FALSE(CutActions().DragStarted());
    StartDrag({0});
    EXPECT_FALSE(CutActions().DragStarted());
    GiveUpDrag();
}

TEST_P(DropTest, ARefreshRequestedDuringTheDragRunsAfterTheDrop)
{
    ShowNode(L"Rock", 1);
    cGridView.lFilled = 0;
    StartDrag({0});
    cForm.RequestRefresh();
    cView.colChoices = {eCopy};
    cView.OnPopUp = [&] { EXPECT_EQ(cGridView.lFilled, 0); };
    CutActions().DragCompleted(ontoJazz1);
    EXPECT_EQ(cGridView.lFilled, 2);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA);
}

INSTANTIATE_TEST_SUITE_P(Objects, DropTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
