// SPDX-License-Identifier: MIT
#include "ui/library/LibraryRename.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

class LibraryRenameTest : public ShownLevelTest
{
protected:
    // Edits the selected node's name; nothing: gives up.
    void Rename(const std::optional<std::wstring>& sTo)
    {
        Do(mnuRename);
        cForm.Renaming().Edited(sTo);
    }
};

TEST_P(LibraryRenameTest, ARenamedCategoryKeepsTicksExpansionAndWhatIsShown)
{
    Tick(L"Rock", 2);
    SelectNode(L"Rock", 0);
    cForm.Panes().NodeExpanded(Node(L"Rock", 0), true);
    Do(mnuRename);
    EXPECT_EQ(cTreeView.edited, Node(L"Rock", 0));
    cForm.Renaming().Edited(L"Blues");
    EXPECT_FALSE(InTree(L"Rock\t0"));
    EXPECT_EQ(SelectedNode(), L"Blues\t0");
    EXPECT_EQ(Ticked(), (Keys{L"Blues\t2"}));
    EXPECT_TRUE(Tree().At(Node(L"Blues", 0)).bExpanded);
    EXPECT_EQ(cForm.Panes().ShownKey(), L"Blues\t1");
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(cView.sResult, L"Renamed Rock to Blues (4 cuts)");
    ExpectIdle();
}

TEST_P(LibraryRenameTest, AnUndoneRenamingIsShown)
{
    SelectNode(L"Jazz", 0);
    Rename(L"Swing");
    Do(mnuUndo);
    EXPECT_TRUE(InTree(L"Jazz\t1"));
    EXPECT_FALSE(InTree(L"Swing\t1"));
}

TEST_P(LibraryRenameTest, OnlyACategoryCanBeRenamed)
{
    for (const auto& [sName, lLevel, sResult] :
         {std::tuple{L"ALL AUDIO", 0, L"Select the category to rename"},
          {L"Rock", 2, L"A level keeps its number; select its category to rename that"}})
    {
        SelectNode(sName, lLevel);
        EXPECT_FALSE(cForm.ItemOf(mnuRename).bEnabled);
        Rename(L"Blues");
        EXPECT_EQ(cView.sResult, sResult);
        EXPECT_FALSE(cTreeView.edited);
    }
    SelectNode(L"Rock", 0);
    EXPECT_TRUE(cForm.ItemOf(mnuRename).bEnabled);
    EXPECT_TRUE(InTree(L"Rock\t0"));
}

TEST_P(LibraryRenameTest, GivingUpOrBeingRefusedChangesNothing)
{
    SelectNode(L"Rock", 0);
    Rename(std::nullopt);
    EXPECT_TRUE(Shown().empty());
    Rename(L"Jazz");
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"Rename Category",
                                    L"There is already a category named Jazz.")}));
    EXPECT_TRUE(InTree(L"Rock\t0"));
    ExpectIdle();
}

TEST_P(LibraryRenameTest, TheTreeStaysDuringAnEdit)
{
    SelectNode(L"Rock", 0);
    Do(mnuRename);
    cTreeView.lShown = 0;
    AddLevel(L"Rock", 9);
    cForm.RequestRefresh();
    Do(mnuSave);
    EXPECT_EQ(cTreeView.lShown, 0);
    cForm.Renaming().Edited(std::nullopt);
    EXPECT_TRUE(InTree(L"Rock\t9"));
}

INSTANTIATE_TEST_SUITE_P(Objects, LibraryRenameTest, testing::Bool(), ObjectsOf);

// ---- the tree

TEST_P(ShownLevelTest, TicksOfSomeLevelsShowAtTheCategory)
{
    using enum CategoryTreePresenter::Ticks;
    const auto TicksOfRock = [&] { return Tree().TicksOf(Node(L"Rock", 0)); };
    EXPECT_EQ(TicksOfRock(), None);
    Tick(L"Rock", 2);
    EXPECT_EQ(TicksOfRock(), Some);
    Tick(L"Rock", 1);
    EXPECT_EQ(TicksOfRock(), Some) << "the category itself does not count";
    Tick(L"Rock", 0);
    EXPECT_EQ(TicksOfRock(), All);
    cForm.Panes().NodeCheck(Node(L"Rock", 1), false);
    EXPECT_EQ(TicksOfRock(), Some);
    cForm.Panes().NodeCheck(Node(L"Rock", 2), false);
    EXPECT_EQ(TicksOfRock(), All) << "a category without levels in the list counts whole";
    EXPECT_EQ(Tree().TicksOf(0), None);
}

TEST_P(ShownLevelTest, TicksStayWhenEverythingIsReadAgain)
{
    Tick(L"Rock", 2);
    Tick(L"ALL AUDIO", 0);
    cForm.Panes().NodeCheck(Node(L"Jazz", 1), false);
    const Keys colTicked = Ticked();
    Do(mnuReloadAll);
    EXPECT_EQ(Ticked(), colTicked);
    EXPECT_TRUE(Tree().At(0).bChecked);
    EXPECT_TRUE(cTreeView.bChecked[Node(L"Rock", 2)]);
}

TEST_P(frmUILibTest, EveryNodeKnowsItsNumberOfCuts)
{
    const auto Counts = [&] {
        std::vector<std::size_t> counts;
        for (const auto& [sName, lLevel] :
             {std::pair{L"ALL AUDIO", 0}, {L"Jazz", 0}, {L"Rock", 0}, {L"Rock", 1}})
            counts.push_back(Tree().At(Node(sName, lLevel)).cuts.value_or(999));
        return counts;
    };
    EXPECT_EQ(Counts(), (std::vector<std::size_t>{6, 2, 4, 3}));
    ShowNode(L"Rock", 1);
    cTreeView.lCounted = 0;
    Remove({0});
    EXPECT_EQ(Counts(), (std::vector<std::size_t>{6, 2, 3, 2}));
    EXPECT_GT(cTreeView.lCounted, 0);
    cTreeView.lCounted = 0;
    ShowNode(L"Rock", 1);
    EXPECT_EQ(cTreeView.lCounted, 0) << "nothing has changed";
    Do(mnuReloadAll);
    EXPECT_EQ(Counts()[0], 999u) << "not known before all audio is listed again";
}

} // namespace
} // namespace ravlo::test
