// SPDX-License-Identifier: MIT
#include "ui/library/LibraryResults.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

TEST(LengthText, GrowsAnHourWhenThereIsOne)
{
    for (const auto& [milliseconds, sText] : {std::pair{std::int64_t{0}, L"0:00"},
                                              {59'999, L"0:59"},
                                              {2'590'000, L"43:10"},
                                              {3'599'000, L"59:59"},
                                              {3'600'000, L"1:00:00"},
                                              {360'000'000'000, L"100000:00:00"}})
        EXPECT_EQ(LengthText(milliseconds), sText);
}

// Every cut plays for a minute.
class LibraryResultsTest : public frmUILibTest
{
protected:
    LibraryResultsTest()
    {
        for (const std::shared_ptr<Cut>& cCut : DataBase().colCuts)
            cCut->SetDurationmS(60'000);
    }
    // The user selects rows, and the view calls back.
    void SelectRows(const Rows& colRows)
    {
        cGridView.Select(colRows);
        cForm.Results().SelectionChanged();
        LetViewAsk();
    }
    void LetViewAsk()
    {
        while (std::exchange(cView.bSelectionAsked, false))
            cForm.Results().ShowSelection();
    }
    // The result of a command, after the view's call as well.
    std::wstring ResultOf(LibraryCommand eCommand)
    {
        Do(eCommand);
        LetViewAsk();
        return cView.sResult;
    }
    void RecordQuestions()
    {
        cPorts.cMessages.OnShown = [this] { colConcerned.push_back(cView.sResult); };
    }

    Lines colConcerned;
};

TEST_P(LibraryResultsTest, TheSelectionShowsItsNumberAndLength)
{
    for (const auto& [colRows, sText] :
         {std::pair{Rows{0}, L"1 cut selected, 1:00"}, {Rows{1, 3}, L"2 cuts selected, 2:00"}, {Rows{}, L""}})
    {
        SelectRows(colRows);
        EXPECT_EQ(cView.sResult, sText);
    }
    EXPECT_EQ(ResultOf(mnuSelectAllGrid), L"6 cuts selected, 6:00");
}

TEST_P(LibraryResultsTest, LengthsOfManyCutsAreAddedPieceByPiece)
{
    for (int i = 0; i < 200; ++i)
    {
        const std::shared_ptr<FakeCut> cCut = Add(L"more" + std::to_wstring(i), L"", 1);
        cCut->SetDurationmS(60'000);
        cCut->OnCall = [this](std::string_view) { cPorts.cClock.Advance(1); };
    }
    Do(mnuReloadAll);
    Do(mnuSelectAllGrid);
    cView.bSelectionAsked = false;
    cForm.Results().ShowSelection();
    EXPECT_EQ(cView.sResult, L"206 cuts selected");
    EXPECT_TRUE(cView.bSelectionAsked);
    LetViewAsk();
    EXPECT_EQ(cView.sResult, L"206 cuts selected, 3:26:00");
}

TEST_P(LibraryResultsTest, ACommandSaysWhatItDidUntilTheUserActs)
{
    SelectRows({0});
    cPorts.cMessages.Typed = {L"Pop"};
    EXPECT_EQ(ResultOf(mnuCatNew), L"New category: Pop");
    cForm.RequestRefresh();
    LetViewAsk();
    EXPECT_EQ(cView.sResult, L"New category: Pop") << "a refresh is no action of the user";
    SelectRows({1});
    EXPECT_EQ(cView.sResult, L"1 cut selected, 1:00");
}

TEST_P(LibraryResultsTest, TheSameResultAgainSaysHowOften)
{
    for (const auto& [eCommand, sResult] : {std::pair{mnuSave, L"Saved 2 of 2 categories"},
                                            {mnuSave, L"Saved 2 of 2 categories (2 times)"},
                                            {mnuSave, L"Saved 2 of 2 categories (3 times)"},
                                            {mnuUndo, L"There is nothing to undo"},
                                            {mnuUndo, L"There is nothing to undo"},
                                            {mnuSave, L"Saved 2 of 2 categories"}})
        EXPECT_EQ(ResultOf(eCommand), sResult);
}

TEST_P(LibraryResultsTest, TheMenuOpensWithItsSelectionCounted)
{
    cGridView.Select({0, 1});
    cForm.Results().SelectionChanged();
    ChooseFromCuts({0, 1}, L"");
    EXPECT_EQ(cView.sResult, L"2 cuts selected, 2:00");
}

TEST_P(LibraryResultsTest, EveryCommandSaysWhatItDid)
{
    cPorts.cMessages.eDefaultAnswer = BoxAnswer::Yes;
    cPorts.cMessages.Typed = {L"3", L"Pop"};
    SelectNode(L"Rock", 0);
    Tick(L"Rock", 1);
    Tick(L"Jazz", 0);
    for (const auto& [eCommand, sResult] : {std::pair{mnuShuffle, L"Shuffled Jazz, Rock 1 (5 cuts)"},
                                            {mnuSpread, L"Spread Jazz, Rock 1 (5 cuts)"},
                                            {mnuSave, L"Saved 2 of 2 categories"},
                                            {mnuReloadAll, L"Read everything again"},
                                            {mnuCatLevelNew, L"New level: Rock 3"},
                                            {mnuCatNew, L"New category: Pop"},
                                            {mnuFairRotation, L"Fair rotation is on"},
                                            {mnuCatDelete, L"Deleted Jazz, Rock 1 (5 cuts)"}})
        EXPECT_EQ(ResultOf(eCommand), sResult);
}

TEST_P(LibraryResultsTest, CutsSayWhereTheyWent)
{
    ShowNode(L"Rock", 1);
    cView.colChoices = {1};
    cGridView.Select({0});
    DropOnNode(L"Jazz", 1);
    EXPECT_EQ(cView.sResult, L"Moved 1 cut into Jazz 1");
    cView.colChoices = {0, 2};
    cGridView.Select({0, 1});
    DropOnNode(L"Jazz", 0);
    EXPECT_EQ(cView.sResult, L"Moved 2 cuts into Jazz only");
    ShowNode(L"Jazz", 1);
    cGridView.Select({0, 1});
    CutActions().MoveSelected(false);
    EXPECT_EQ(cView.sResult, L"Moved 2 cuts to position 2");
    Remove({0, 1});
    EXPECT_EQ(cView.sResult, L"2 cuts taken out of Jazz 1");
}

TEST_P(LibraryResultsTest, AQuestionSaysHowManyCutsItConcerns)
{
    RecordQuestions();
    Tick(L"Rock", 0);
    EXPECT_EQ(ResultOf(mnuShuffle), L"");
    EXPECT_EQ(ResultOf(mnuSpread), L"");
    EXPECT_EQ(ResultOf(mnuCatDelete), L"");
    Remove({0, 5});
    EXPECT_EQ(colConcerned,
              (Lines{L"Concerns 4 cuts", L"Concerns 4 cuts", L"Concerns 4 cuts", L"Concerns 2 cuts"}));
    for (const ShownBox& box : Shown())
        EXPECT_EQ(box.eButtons, BoxButtons::YesNoDefaultNo);
}

TEST_P(LibraryResultsTest, ShufflingTakesATickedCategoryWhole)
{
    RecordQuestions();
    Tick(L"Rock", 0);
    cForm.Panes().NodeCheck(Node(L"Rock", 2), false);
    Do(mnuShuffle);
    Do(mnuCatDelete);
    EXPECT_EQ(colConcerned, (Lines{L"Concerns 4 cuts", L"Concerns 3 cuts"}));
}

INSTANTIATE_TEST_SUITE_P(Objects, LibraryResultsTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
