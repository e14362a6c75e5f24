// SPDX-License-Identifier: MIT
#include "ui/library/CategoryTreePresenter.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <utility>

namespace ravlo::test
{
namespace
{

using Node = CategoryTreePresenter::Node;

class CategoryTreeTest : public testing::Test
{
protected:
    // The tree as lines of text, children after their parent and indented; "*" ticked, "+" open.
    std::wstring Picture(Node lNode = 0, std::wstring sIndent = L"") const
    {
        if (cTree.Count() == 0)
            return L"";
        const CategoryTreePresenter::Entry& entry = cTree.At(lNode);
        std::wstring sText =
            sIndent + entry.sText + (entry.bChecked ? L"*" : L"") + (entry.bOpen ? L"+" : L"") + L"\n";
        for (const Node lChild : entry.colChildren)
            sText += Picture(lChild, sIndent + L" ");
        return sText;
    }
    std::vector<TreeNode> Nodes() const { return NodesOf(cLibrary.cSchedMan->colMainCats().get()); }
    void Populate()
    {
        cLibrary.Populate();
        cTree.Fill(Nodes());
    }
    Node At(const std::wstring& sName, std::int32_t lLevel) const
    {
        return cTree.Find(CategoryKey(sName, lLevel)).value();
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    CategoryTreePresenter cTree;
};

TEST_F(CategoryTreeTest, WithoutMainCategoriesItIsEmptyOrTheExpandedRoot)
{
    cTree.Fill(Nodes()); // of a station that was never populated
    EXPECT_EQ(cTree.Count(), 0u);
    Populate();
    EXPECT_EQ(Picture(), L"ALL AUDIO\n");
    EXPECT_EQ(cTree.At(0).sKey, L"ALL AUDIO\t0");
    EXPECT_TRUE(cTree.At(0).bExpanded);
}

TEST_F(CategoryTreeTest, CategoriesAreSortedIgnoringCaseWithoutOneCalledAllAudio)
{
    cLibrary.cDataBase->Add(L"a", L"Rock/blues", 10);
    cLibrary.cDataBase->Add(L"b", L"Rock", 2);
    cLibrary.cDataBase->Add(L"c", L"Rock/Charts", 1);
    cLibrary.cDataBase->Add(L"d", L"all Audio", 1);
    Populate();
    const std::wstring sAll = L"ALL AUDIO\n blues\n  10\n Charts\n  1\n Rock\n  1\n  10\n  2\n";
    EXPECT_EQ(Picture(), sAll);
    EXPECT_EQ(cTree.At(At(L"ROCK", 10)).sKey, L"Rock\t10");
    cTree.Check(0, true);
    Populate();
    EXPECT_EQ(Picture(), sAll) << "filled again, without ticks";
}

class FilledTreeTest : public CategoryTreeTest
{
protected:
    FilledTreeTest()
    {
        cLibrary.cDataBase->Add(L"a", L"Jazz/Rock", 1);
        cLibrary.cDataBase->Add(L"b", L"Rock", 2);
        Populate();
    }
};

TEST_F(FilledTreeTest, ATickTicksWhatIsBelow)
{
    const std::wstring sUnticked = L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2\n";
    const Node rock = At(L"Rock", 0), rock1 = At(L"Rock", 1), rock2 = At(L"Rock", 2);
    EXPECT_EQ(cTree.Check(0, true).size(), cTree.Count());
    EXPECT_EQ(Picture(), L"ALL AUDIO*\n Jazz*\n  1*\n Rock*\n  1*\n  2*\n");
    EXPECT_EQ(cTree.Checked(), (std::vector<Node>{At(L"Jazz", 0), At(L"Jazz", 1), rock, rock1, rock2}))
        << "in shown order, without the root";
    cTree.Check(0, false);
    EXPECT_EQ(Picture(), sUnticked);
    EXPECT_EQ(cTree.Check(rock2, true), (std::vector<Node>{rock2}));
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2*\n");
    EXPECT_EQ(cTree.Check(rock, true), (std::vector<Node>{rock, rock1, rock2}));
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock*\n  1*\n  2*\n");
    cTree.InvertChecks();
    EXPECT_EQ(Picture(), L"ALL AUDIO*\n Jazz*\n  1*\n Rock\n  1\n  2\n");
    cTree.InvertChecks();
    cTree.Check(rock, false);
    EXPECT_EQ(Picture(), sUnticked);
}

TEST_F(FilledTreeTest, TheShownNodeAndItsParentAreOpenAndNoOther)
{
    cTree.ShowAsOpen(L"rock\t2");
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock+\n  1\n  2+\n");
    cTree.ShowAsOpen(L"JAZZ\t0");
    EXPECT_EQ(Picture(), L"ALL AUDIO+\n Jazz+\n  1\n Rock\n  1\n  2\n");
    cTree.ShowAsOpen(L"Nothing\t0");
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2\n");
}

TEST_F(FilledTreeTest, TheRootCannotBeCollapsed)
{
    cTree.SetExpanded(0, false);
    cTree.SetExpanded(At(L"Rock", 0), true);
    EXPECT_EQ(cTree.ExpandedKeys(), (Keys{L"ALL AUDIO\t0", L"Rock\t0"}));
    cTree.SetExpanded(At(L"Rock", 0), false);
    EXPECT_EQ(cTree.ExpandedKeys(), (Keys{L"ALL AUDIO\t0"}));
}

TEST_F(FilledTreeTest, ANodeThatIsThereAlreadyOrHasNoParentIsLeftOut)
{
    std::vector<TreeNode> colNodes = Nodes();
    const std::size_t count = colNodes.size();
    colNodes.push_back({colNodes[0].sKey, L"ROCK\t0", L"again"});
    colNodes.push_back({L"Nowhere\t0", L"Nowhere\t1", L"1"});
    cTree.Fill(colNodes);
    EXPECT_EQ(cTree.Count(), count);
}

TEST(CategoryTreeOrderTest, OnlyTheChildrenOfANodeThatIsToBeSortedAreSorted)
{
    CategoryTreePresenter cTree;
    std::vector<TreeNode> colNodes{
        {L"", L"root", L"root"}, {L"root", L"sorted", L"sorted", true}, {L"root", L"as added", L"as added"}};
    for (const wchar_t* sParent : {L"sorted", L"as added"})
        for (const wchar_t* sText : {L"c", L"A", L"b", L"a"})
            colNodes.push_back({sParent, sParent + std::to_wstring(colNodes.size()), sText});
    cTree.Fill(colNodes);
    EXPECT_EQ(cTree.At(0).colChildren, (std::vector<Node>{1, 2}));
    EXPECT_EQ(cTree.At(1).colChildren, (std::vector<Node>{4, 6, 5, 3}));
    EXPECT_EQ(cTree.At(2).colChildren, (std::vector<Node>{7, 8, 9, 10}));
}

TEST_F(FilledTreeTest, ItHasTheSameNodesWhenKeysAndTextsAreInAnyOrder)
{
    std::vector<TreeNode> colNodes = Nodes();
    const auto Same = [&] { return cTree.HasSameNodes(colNodes); };
    EXPECT_FALSE(cTree.HasSameNodes({}));
    EXPECT_TRUE(Same());
    std::swap(colNodes[1], colNodes.back());
    EXPECT_TRUE(Same());
    colNodes[1].sText += L" another spelling";
    EXPECT_FALSE(Same());
    colNodes = Nodes();
    colNodes.push_back({colNodes[0].sKey, L"One\t9", L"9"});
    EXPECT_FALSE(Same()) << "one more";
    colNodes = Nodes();
    colNodes.pop_back();
    EXPECT_FALSE(Same()) << "one less";
}

} // namespace
} // namespace ravlo::test
