// SPDX-License-Identifier: MIT
#include "ui/library/CategoryTreePresenter.h"

#include "support/SchedulerTest.h"
#include "ui/library/LibraryFilling.h"

#include <gtest/gtest.h>

#include <functional>

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
    void Populate() { PopulateTreeView(cLibrary.cSchedMan->colMainCats().get(), cTree); }
    Node At(const std::wstring& sName, std::int32_t lLevel) const
    {
        return cTree.Find(CategoryKey(sName, lLevel)).value();
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    CategoryTreePresenter cTree;
};

TEST_F(CategoryTreeTest, WithoutMainCategoriesOfAnyKindItIsEmpty)
{
    Populate();
    EXPECT_EQ(cTree.Count(), 0u);
}

TEST_F(CategoryTreeTest, WithNoMainCategoryItIsTheExpandedRootAlone)
{
    cLibrary.Populate();
    Populate();
    EXPECT_EQ(Picture(), L"ALL AUDIO\n");
    EXPECT_EQ(cTree.At(0).sKey, L"ALL AUDIO\t0");
    EXPECT_TRUE(cTree.At(0).bExpanded);
    EXPECT_TRUE(cTree.At(0).bSorted);
}

TEST_F(CategoryTreeTest, CategoriesAndLevelsAreSortedByTextWhateverTheirCase)
{
    cLibrary.cDataBase->Add(L"a", L"Rock/blues", 10);
    cLibrary.cDataBase->Add(L"b", L"Rock", 2);
    cLibrary.cDataBase->Add(L"c", L"Rock/Charts", 1);
    cLibrary.Populate();
    Populate();
    EXPECT_EQ(Picture(), L"ALL AUDIO\n blues\n  10\n Charts\n  1\n Rock\n  1\n  10\n  2\n");
    EXPECT_EQ(cTree.At(At(L"ROCK", 10)).sKey, L"Rock\t10");
}

TEST_F(CategoryTreeTest, ACategoryCalledAllAudioInAnyCaseIsLeftOut)
{
    cLibrary.cDataBase->Add(L"a", L"all Audio", 1);
    cLibrary.cDataBase->Add(L"b", L"Rock", 1);
    cLibrary.Populate();
    Populate();
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Rock\n  1\n");
}

TEST_F(CategoryTreeTest, FillingItAgainForgetsWhatWasThere)
{
    cLibrary.cDataBase->Add(L"b", L"Rock", 1);
    cLibrary.Populate();
    Populate();
    cTree.Check(0, true);
    Populate();
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Rock\n  1\n");
}

class FilledTreeTest : public CategoryTreeTest
{
protected:
    FilledTreeTest()
    {
        cLibrary.cDataBase->Add(L"a", L"Jazz/Rock", 1);
        cLibrary.cDataBase->Add(L"b", L"Rock", 2);
        cLibrary.Populate();
        Populate();
    }
};

TEST_F(FilledTreeTest, TickingTheRootTicksEverythingAndUntickingClearsIt)
{
    EXPECT_EQ(cTree.Check(0, true).size(), cTree.Count());
    EXPECT_EQ(Picture(), L"ALL AUDIO*\n Jazz*\n  1*\n Rock*\n  1*\n  2*\n");
    cTree.Check(0, false);
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2\n");
}

TEST_F(FilledTreeTest, TickingAMainCategoryTicksItsLevels)
{
    EXPECT_EQ(cTree.Check(At(L"Rock", 0), true),
              (std::vector<Node>{At(L"Rock", 0), At(L"Rock", 1), At(L"Rock", 2)}));
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock*\n  1*\n  2*\n");
    cTree.Check(At(L"Rock", 0), false);
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2\n");
}

TEST_F(FilledTreeTest, TickingALevelChangesNothingElse)
{
    EXPECT_EQ(cTree.Check(At(L"Rock", 2), true), (std::vector<Node>{At(L"Rock", 2)}));
    EXPECT_EQ(Picture(), L"ALL AUDIO\n Jazz\n  1\n Rock\n  1\n  2*\n");
}

TEST_F(FilledTreeTest, InvertingFlipsEveryNodeTheRootIncluded)
{
    cTree.Check(At(L"Rock", 0), true);
    cTree.InvertChecks();
    EXPECT_EQ(Picture(), L"ALL AUDIO*\n Jazz*\n  1*\n Rock\n  1\n  2\n");
}

TEST_F(FilledTreeTest, TickedNodesComeInShownOrderWithoutTheRoot)
{
    cTree.Check(0, true);
    EXPECT_EQ(cTree.Checked(), (std::vector<Node>{At(L"Jazz", 0), At(L"Jazz", 1), At(L"Rock", 0),
                                                  At(L"Rock", 1), At(L"Rock", 2)}));
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
    const std::size_t count = cTree.Count();
    cTree.AddNode(CategoryKey(sAllAudio, 0), L"ROCK\t0", L"again", sImageClosed);
    cTree.AddNode(L"Nowhere\t0", L"Nowhere\t1", L"1", sImageClosed);
    EXPECT_EQ(cTree.Count(), count);
}

TEST(CategoryTreeOrderTest, OnlyTheChildrenOfANodeThatIsToBeSortedAreSorted)
{
    CategoryTreePresenter cTree;
    cTree.SetSorted(); // there is none yet
    cTree.AddNode(L"", L"root", L"root", sImageClosed);
    cTree.AddNode(L"root", L"sorted", L"sorted", sImageClosed);
    cTree.SetSorted();
    cTree.AddNode(L"root", L"as added", L"as added", sImageClosed);
    for (const wchar_t* sParent : {L"sorted", L"as added"})
        for (const wchar_t* sText : {L"c", L"A", L"b"})
            cTree.AddNode(sParent, sParent + std::wstring(sText), sText, sImageClosed);
    EXPECT_EQ(cTree.At(0).colChildren, (std::vector<Node>{1, 2}));
    EXPECT_EQ(cTree.At(1).colChildren, (std::vector<Node>{4, 5, 3}));
    EXPECT_EQ(cTree.At(2).colChildren, (std::vector<Node>{6, 7, 8}));
}

TEST_F(FilledTreeTest, TwoTreesHaveTheSameNodesWhenKeysAndTextsAre)
{
    CategoryTreePresenter cOther;
    EXPECT_FALSE(cTree.HasSameNodes(cOther));
    for (std::size_t lNode = 0; lNode < cTree.Count(); ++lNode)
        cOther.AddNode(lNode == 0 ? L"" : cTree.At(0).sKey, cTree.At(lNode).sKey, cTree.At(lNode).sText,
                       sImageClosed);
    EXPECT_TRUE(cTree.HasSameNodes(cOther));
    cOther.AddNode(cTree.At(0).sKey, L"One\t9", L"", sImageClosed);
    EXPECT_FALSE(cTree.HasSameNodes(cOther));
    cTree.AddNode(cTree.At(0).sKey, L"Another\t9", L"", sImageClosed);
    EXPECT_FALSE(cTree.HasSameNodes(cOther));
}

TEST_F(FilledTreeTest, AnotherSpellingOfANameIsAnotherNode)
{
    CategoryTreePresenter cUpper;
    CategoryTreePresenter cLower;
    cUpper.AddNode(L"", L"Rock\t0", L"Rock", sImageClosed);
    cLower.AddNode(L"", L"rock\t0", L"rock", sImageClosed);
    EXPECT_FALSE(cUpper.HasSameNodes(cLower));
}

// A host's tree, which edits categories from within its Nodes.Add.
class EditingTree final : public TreeTarget
{
public:
    std::function<void()> OnAdd;
    std::vector<std::wstring> colKeys;

    void Clear() override { Edit(); }
    void AddNode(const std::wstring&, const std::wstring& sKey, const std::wstring&, const wchar_t*) override
    {
        colKeys.push_back(sKey);
        Edit();
    }
    void SetSorted() override { Edit(); }
    void ExpandFirst() override {}

private:
    void Edit()
    {
        if (const auto edit = OnAdd)
            edit();
    }
};

TEST_F(CategoryTreeTest, AHostsTreeMayEditCategoriesWhileItIsFilled)
{
    cLibrary.cDataBase->Add(L"a", L"Rock/Jazz/Pop", 1);
    cLibrary.cDataBase->Add(L"b", L"Rock", 2);
    cLibrary.Populate();
    EditingTree cEditing;
    cEditing.OnAdd = [&] {
        const std::shared_ptr<CatCollection> colMainCats = cLibrary.cSchedMan->colMainCats();
        if (!colMainCats->Empty())
            cLibrary.cSchedMan->DeleteCats({colMainCats->At(0)});
        if (const auto cPop = cLibrary.MainCat(L"Pop"))
            cPop->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, L"Pop", cPop->TotalCuts() + 5));
    };
    PopulateTreeView(cLibrary.cSchedMan->colMainCats().get(), cEditing);
    EXPECT_EQ(cEditing.colKeys,
              (std::vector<std::wstring>{L"ALL AUDIO\t0", L"Rock\t0", L"Rock\t1", L"Rock\t2", L"Jazz\t0",
                                         L"Jazz\t1", L"Pop\t0", L"Pop\t1"}))
        << "as it was at the call";
    EXPECT_EQ(cLibrary.MainCat(L"Rock"), nullptr);
}

} // namespace
} // namespace ravlo::test
