// SPDX-License-Identifier: MIT
#include "ui/library/CutMenu.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sTop = L"To the &top\t  Alt+Home";
constexpr const wchar_t* sBottom = L"To the &bottom\t  Alt+End";
constexpr const wchar_t* sPosition = L"Move to &position...";

class CutMenuTest : public ShownLevelTest
{
protected:
    // The menu without what concerns columns, for these rows.
    Lines Menu(const Rows& colRows)
    {
        ChooseFromCuts(colRows, L"");
        Lines colMenu = cGridView.colMenu;
        const auto columns = std::find(colMenu.begin(), colMenu.end(), L"&Sort by");
        EXPECT_NE(columns, colMenu.end());
        colMenu.erase(columns, colMenu.end());
        return colMenu;
    }
    std::wstring Recent() const
    {
        return cPorts.cUserSettings.Get(sProgramTitle, L"Settings", L"RecentTargets", L"");
    }
};

TEST_P(CutMenuTest, WhatIsNotPossibleIsGrey)
{
    const Lines inLevel{L"-&Edit\t  Enter",
                        L"&Remove from Rock 1\t  Del",
                        L"&Move to",
                        L" C&hoose...",
                        L"&Copy to",
                        L" C&hoose...",
                        L"",
                        sTop,
                        sBottom,
                        sPosition,
                        L"",
                        L"-E&xplain",
                        L""};
    EXPECT_EQ(Menu({0, 2}), inLevel);
    const auto expectLines = [&](const Rows& colRows, const Lines& colExpected) {
        const Lines colMenu = Menu(colRows);
        for (const std::wstring& sLine : colExpected)
            EXPECT_NE(std::find(colMenu.begin(), colMenu.end(), sLine), colMenu.end());
    };
    const std::wstring sGrey = L"-";
    expectLines({1}, {L"&Edit\t  Enter"});
    expectLines({}, {L"-&Remove from Rock 1\t  Del", L"-&Move to", L"-&Copy to", sGrey + sTop,
                     sGrey + sBottom, sGrey + sPosition});
    cForm.Headings().Click(2);
    expectLines({1}, {sGrey + sTop, sGrey + sBottom, sGrey + sPosition});
    ShowNode(L"Rock", 0);
    expectLines({1}, {L"&Remove from Rock\t  Del", sGrey + sTop});
    ShowNode(sAllAudio, 0);
    expectLines({1}, {L"&Remove from all categories\t  Del", sGrey + sTop});
}

TEST_P(CutMenuTest, ItEditsAndRemovesAsTheKeysDo)
{
    ChooseFromCuts({1}, L"&Edit\t  Enter");
    EXPECT_EQ(Said().back(), L"Edit b");
    ChooseFromCuts({1}, L"&Remove from Rock 1\t  Del");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"c"}));
}

TEST_P(CutMenuTest, ItSortsByAColumnAsAClickOnItsHeadingDoes)
{
    for (const wchar_t* sMark : {L"Title up", L"Title down"})
    {
        ChooseFromCuts({}, L"&Sort by>Title");
        EXPECT_EQ(cGridView.sSortMark, sMark);
    }
    ChooseFromCuts({}, L"&Sort by>&Schedule order");
    EXPECT_EQ(cGridView.sSortMark, L"");
    EXPECT_NE(std::find(cGridView.colMenu.begin(), cGridView.colMenu.end(), L" *Title"),
              cGridView.colMenu.end());
    ChooseFromCuts({}, L"&Sort by>Album");
    EXPECT_EQ(cGridView.sSortMark, L"") << "it is hidden";
}

// ---- in the shown level

TEST_P(CutMenuTest, RowsThatStandApartMoveTogetherInTheirOrder)
{
    for (const wchar_t* sKey : {L"g", L"h", L"i"})
        Add(sKey, L"Rock", 1);
    cLibrary.Populate();
    const struct
    {
        const wchar_t* sItem;
        const wchar_t* sTyped;
        Keys colAfter;
    } cases[] = {
        {sTop, L"", {L"b", L"g", L"i", L"a", L"c", L"h"}},
        {sBottom, L"", {L"a", L"c", L"h", L"b", L"g", L"i"}},
        {sPosition, L"3", {L"a", L"c", L"b", L"g", L"i", L"h"}},
        {sPosition, L" 1 ", {L"b", L"g", L"i", L"a", L"c", L"h"}},
        {sPosition, L"6", {L"a", L"c", L"h", L"b", L"g", L"i"}},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(test.sTyped);
        Man().MoveCutsInCategory(Level(L"Rock", 1), DataBase().colCuts, 1); // a b c g h i
        ShowNode(L"Rock", 1);
        cPorts.cMessages.sDefaultTyped = test.sTyped;
        ChooseFromCuts({1, 3, 5}, test.sItem);
        EXPECT_EQ(Order(L"Rock", 1), test.colAfter);
        EXPECT_EQ(RowKeys(), test.colAfter);
        EXPECT_EQ(SelectedKeys(), (Keys{L"b", L"g", L"i"}));
        EXPECT_EQ(RowKeys()[cGridView.current.value()], L"b");
        EXPECT_TRUE(Shown().empty());
    }
}

TEST_P(CutMenuTest, TheTopIsTheTopAfterTheRotationMovedCuts)
{
    Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a")); // b c a, listed as a b c
    ChooseFromCuts({2}, sTop);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"c", L"b", L"a"}));
}

TEST_P(CutMenuTest, ATextThatIsNoPositionIsRefusedAndNothingMoves)
{
    for (const wchar_t* sTyped : {L"0", L"4", L"x", L""})
    {
        Shown().clear();
        cPorts.cMessages.sDefaultTyped = sTyped;
        ChooseFromCuts({1}, sPosition);
        EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Information, L"Move To Position",
                                        L"Type a whole number from 1 to 3.")}));
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
    }
    EXPECT_EQ(cPorts.cMessages.Inputs[0],
              (ShownInput{L"Move To Position", L"Position in Rock 1, from 1 to 3:", L"2"}));
}

TEST_P(CutMenuTest, NoPositionIsAskedForWhenTheListBecameSorted)
{
    cGridView.Select({1});
    cForm.Headings().Click(2);
    CutActions().AskForPosition();
    EXPECT_TRUE(cPorts.cMessages.Inputs.empty());
    EXPECT_EQ(cView.colStatus.back(), L"The list is sorted: return to schedule order to change it.|");
}

TEST_P(CutMenuTest, OutsideOfALevelTheKeysAreRefusedAsADragIs)
{
    ShowNode(L"Rock", 0);
    cGridView.Select({1});
    CutActions().MoveSelectedToTop();
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle,
              L"View Inside a Category Level to Enable Dragging and Dropping In The Grid.");
    ShowNode(L"Rock", 1);
    cForm.Headings().Click(2);
    cGridView.Select({1});
    CutActions().MoveSelectedToBottom();
    EXPECT_EQ(Shown().size(), 1u);
    EXPECT_EQ(cView.colStatus.back(), L"The list is sorted: return to schedule order to change it.|");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

// ---- into other levels

TEST_P(CutMenuTest, RecentTargetsAreOfferedTheLastOneFirst)
{
    cView.colChoices = {std::size_t{1}};
    cGridView.Select({0});
    DropOnNode(L"Jazz", 1); // moves a
    EXPECT_EQ(Recent(), L"Jazz:1|");
    cPorts.cUserSettings.Set(sProgramTitle, L"Settings", L"RecentTargets", L"Rock:2|gone:1|Jazz:1|Rock:1|");
    const Lines colMenu = Menu({0});
    EXPECT_EQ((Lines{colMenu.begin() + 2, colMenu.begin() + 8}),
              (Lines{L"&Move to", L" Rock 2", L" Jazz 1", L" -Rock 1", L" ", L" C&hoose..."}));
    ChooseFromCuts({0}, L"&Move to>Rock 2"); // b, without asking
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"d", L"b"}));
    ChooseFromCuts({0}, L"&Copy to>Jazz 1"); // c is there already
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"c"}));
    EXPECT_EQ(Recent(), L"Jazz:1|Rock:2|gone:1|Rock:1|");
    EXPECT_TRUE(Shown().empty());
}

TEST_P(CutMenuTest, OnlyTheShownTargetIsGreyNotOneOfTheSameCaption)
{
    Add(L"g", L"Rock 1", 1);
    Man().PopulateFromDataBase(cLibrary.cDataBase, Man().AppPath());
    cForm.ReloadAll();
    cPorts.cUserSettings.Set(sProgramTitle, L"Settings", L"RecentTargets", L"Rock 1:0|Rock:1|");
    const Lines colMenu = Menu({0});
    EXPECT_EQ((Lines{colMenu.begin() + 3, colMenu.begin() + 5}), (Lines{L" Rock 1", L" -Rock 1"}));
}

TEST_P(CutMenuTest, ATargetThatNoCutReachedIsNotOffered)
{
    CategoryWindows windows(Man());
    windows.lAnswer = lChosen;
    windows.OnCategory = [&](CategoryRequest& request) { request.cMainCatChosen = MainCat(L"Jazz"); };
    CutInRow(0).failing = {"AddCategoryName", "SetCategoryText"};
    ChooseFromCuts({0}, L"&Move to>C&hoose...");
    EXPECT_EQ(Recent(), L"");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

TEST_P(CutMenuTest, ChooseTakesTheCutsBeforeTheCategoryWindowOpens)
{
    CategoryWindows windows(Man());
    std::shared_ptr<clsCat> cLevel;
    windows.OnCategory = [&](CategoryRequest& request) {
        EXPECT_EQ(request.sCaption, L"Move To");
        EXPECT_TRUE(request.bAllowNew);
        EXPECT_FALSE(request.bAllowMultiSelect);
        request.cMainCatChosen = MainCat(L"Jazz");
        request.cSubCatChosen = cLevel;
        cGridView.Select({1});
    };
    ChooseFromCuts({0}, L"&Move to>C&hoose...");
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"})) << "cancelled";
    windows.lAnswer = lChosen;
    cLevel = Level(L"Jazz", 1);
    ChooseFromCuts({0}, L"&Move to>C&hoose...");
    ExpectOrders({L"b", L"c"}, {L"c", L"e", L"a"});
    cLevel = nullptr; // all levels: each cut keeps its own
    ShowNode(L"Rock", 2);
    ChooseFromCuts({0}, L"&Move to>C&hoose...");
    EXPECT_EQ(Order(L"Jazz", 2), (Keys{L"d"}));
}

TEST_P(CutMenuTest, FiveTargetsAreRememberedWithoutNamesThatCannotBeStored)
{
    RecentTargets recent(cPorts.cUserSettings);
    for (const wchar_t* sKey : {L"A\t1", L"B\t0", L"C\t1", L"D\t2", L"E\t1", L"b\t0", L"x:y\t1", L"F\t1"})
        recent.Add(sKey);
    EXPECT_EQ(recent.Keys(), (Lines{L"F\t1", L"b\t0", L"E\t1", L"D\t2", L"C\t1"}));
}

TEST_P(CutMenuTest, CopyingIntoAnotherNumberIsRefusedAsADropIs)
{
    CutActions().SendTo(eCopyHere, L"Rock\t2");
    EXPECT_TRUE(Shown().empty()) << "nothing is selected";
    cGridView.Select({0});
    CutActions().SendTo(eCopyHere, L"Rock\t2");
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"Multiple Category Levels Not Allowed!");
    CutActions().SendTo(eMoveHere, L"Gone\t1");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

TEST_P(CutMenuTest, EachCommandIsOneStepToUndo)
{
    for (const wchar_t* sItem : {sTop, L"&Remove from Rock 1\t  Del", L"&Move to>Jazz 1"})
    {
        cPorts.cUserSettings.Set(sProgramTitle, L"Settings", L"RecentTargets", L"Jazz:1|");
        EXPECT_FALSE(Man().CanUndo());
        ChooseFromCuts({0, 2}, sItem);
        EXPECT_NE(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"})) << sItem;
        Man().Undo();
        ExpectOrders({L"a", L"b", L"c"}, {L"c", L"e"});
        EXPECT_FALSE(Man().CanUndo()) << sItem;
        ShowNode(L"Rock", 1);
    }
}

// ---- explained

TEST_P(CutMenuTest, ExplainShowsTheCutInTheLevelThatContainsIt)
{
    Lines colExplained;
    LibraryDialogs dialogs;
    dialogs.ShowExplanation = [&](clsSchedMan&, const std::wstring& sLevelKey, const TextKey& cKey) {
        colExplained.push_back(sLevelKey + L" " + cKey.Text());
    };
    cForm.Rotation().SetDialogs(dialogs);
    ChooseFromCuts({1}, L"E&xplain");
    ShowNode(L"Rock", 0);
    ChooseFromCuts({3}, L"E&xplain");
    ShowNode(sAllAudio, 0);
    ChooseFromCuts({4}, L"E&xplain");
    ChooseFromCuts({5}, L"E&xplain"); // in no level
    EXPECT_EQ(colExplained, (Lines{L"Rock\t1 b", L"Rock\t2 d", L"Jazz\t1 e"}));
}

// ---- cut and pasted

TEST_P(CutMenuTest, CutsAreShownPaleUntilTheyArePasted)
{
    const auto Pale = [&] {
        Rows colRows;
        for (std::size_t row = 0; row < Grid().RowCount(); ++row)
            if (Grid().IsPale(row))
                colRows.push_back(row);
        return colRows;
    };
    cGridView.Select({0, 2});
    CutActions().CutSelection();
    EXPECT_EQ(Pale(), (Rows{0, 2}));
    ShowNode(sAllAudio, 0);
    EXPECT_EQ(Pale(), (Rows{0, 2})) << "wherever they are listed";
    SelectNode(L"Jazz", 1);
    CutActions().Paste(); // the pop-up is dismissed
    EXPECT_EQ(Pale().size(), 2u);
    cView.colChoices = {std::size_t{1}};
    CutActions().Paste();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b"}));
    EXPECT_TRUE(Pale().empty());
    EXPECT_FALSE(CutActions().CancelCut());

    cGridView.Select({1});
    CutActions().CutSelection();
    CutActions().CopySelection();
    EXPECT_TRUE(Pale().empty()) << "a copy is not cut";
    CutActions().CutSelection();
    EXPECT_TRUE(CutActions().CancelCut());
    EXPECT_TRUE(Pale().empty());
    cView.colPopUps.clear();
    CutActions().Paste();
    EXPECT_TRUE(cView.colPopUps.empty()) << "nothing left to paste";
}

TEST_P(CutMenuTest, ADragSaysHowManyCutsItCarries)
{
    for (const auto& [colRows, sText] : {std::pair{Rows{1}, L"1 cut"}, {Rows{0, 1, 2}, L"3 cuts"}})
    {
        StartDrag(colRows);
        EXPECT_EQ(Grid().DraggedText(), sText);
        GiveUpDrag();
    }
}

INSTANTIATE_TEST_SUITE_P(Objects, CutMenuTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
