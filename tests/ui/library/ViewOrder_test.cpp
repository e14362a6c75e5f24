// SPDX-License-Identifier: MIT
#include "ui/library/ViewOrder.h"

#include "LibraryFakes.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

Rows Shown(const ViewOrder& cOrder)
{
    Rows colRows;
    for (std::size_t row = 0; row < cOrder.Count(); ++row)
        colRows.push_back(cOrder.Listed(row));
    return colRows;
}

TEST(ViewOrderTest, SortedAndNarrowedViewsCombineInEitherOrder)
{
    ViewOrder cOrder;
    cOrder.Reset(4);
    EXPECT_EQ(Shown(cOrder), (Rows{0, 1, 2, 3}));
    EXPECT_TRUE(cOrder.IsSchedule());
    cOrder.Narrow({true, false, true, true});
    EXPECT_EQ(Shown(cOrder), (Rows{0, 2, 3}));
    cOrder.Sort({3, 1, 2, 0});
    EXPECT_EQ(Shown(cOrder), (Rows{3, 2, 0}));
    EXPECT_TRUE(cOrder.IsSorted() && cOrder.IsNarrowed() && !cOrder.IsSchedule());
    cOrder.Widen();
    EXPECT_EQ(Shown(cOrder), (Rows{3, 1, 2, 0}));
    cOrder.Narrow({false, false, false, false});
    EXPECT_EQ(Shown(cOrder), Rows());
    cOrder.Reset(2);
    EXPECT_EQ(Shown(cOrder), (Rows{0, 1}));
    EXPECT_TRUE(cOrder.IsSchedule());
}

// Rock 1 has the cuts a to f, and shows b, d and f, those with true.
class RearrangeTest : public ScreenLibraryTest
{
protected:
    RearrangeTest()
    {
        for (const wchar_t* sKey : {L"a", L"b", L"c", L"d", L"e", L"f"})
            Add(sKey, L"Rock", 1);
        Show();
        ShowNode(L"Rock", 1);
    }
    void Narrow() { Narrow({false, true, false, true, false, true}); }
    void Narrow(const std::vector<bool>& bKept)
    {
        Grid().Rearrange([&](ViewOrder& cOrder) { cOrder.Narrow(bKept); });
    }
    void Widen()
    {
        Grid().Rearrange([](ViewOrder& cOrder) { cOrder.Widen(); });
    }
};

TEST_P(RearrangeTest, CommandsActOnTheRowsThatAreShown)
{
    Narrow();
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"d", L"f"}));
    EXPECT_EQ(Grid().KeyAt(1).Text(), L"d");
    EXPECT_EQ(Grid().LevelAt(2), Level(L"Rock", 1));
    EXPECT_EQ(Grid().CellText(1, 0), L"4") << "its place in the schedule";
    EXPECT_EQ(Grid().CellText(3, 0), L"");
    Grid().SelectAll();
    EXPECT_EQ(SelectedKeys(), (Keys{L"b", L"d", L"f"}));
    Remove({0, 2});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"c", L"d", L"e"}));
}

TEST_P(RearrangeTest, SelectedAndCurrentRowStayWhileTheyAreShown)
{
    cGridView.Select({0, 1, 3});
    cGridView.current = 3;
    cGridView.top = 2;
    Narrow();
    EXPECT_EQ(SelectedKeys(), (Keys{L"b", L"d"}));
    EXPECT_EQ(cGridView.current, 1u);
    EXPECT_EQ(cGridView.top, 0u) << "one row above it, as before";
    Widen();
    EXPECT_EQ(SelectedKeys(), (Keys{L"a", L"b", L"d"}));
    EXPECT_EQ(cGridView.current, 3u);
    EXPECT_EQ(cGridView.top, 2u);
}

TEST_P(RearrangeTest, TheWholeListReturnsToItsPlaceOrTheNewRow)
{
    cGridView.current = 4;
    cGridView.top = 3;
    Narrow();
    EXPECT_EQ(cGridView.current, std::nullopt);
    Narrow({true, false, false, false, false, false});
    Widen();
    EXPECT_EQ(cGridView.current, 4u);
    EXPECT_EQ(cGridView.top, 3u);
    Narrow();
    cGridView.current = 2; // f
    Widen();
    EXPECT_EQ(cGridView.current, 5u);
    EXPECT_EQ(cGridView.colEnsured.back(), 5u);
}

TEST_P(RearrangeTest, ANarrowedOrSortedViewIsNotReOrdered)
{
    const struct
    {
        void (*Change)(ViewOrder& cOrder);
        const wchar_t* sWhy;
    } cases[] =
        {
            {[](ViewOrder& cOrder) {
        cOrder.Narrow({true, true, true, true, true, true});
             },
             L"The list is narrowed: clear Find to change the order.|"},
            {[](ViewOrder& cOrder) {
        cOrder.Sort({5, 4, 3, 2, 1, 0});
             },
             L"The list is sorted: return to schedule order to change it.|"},
      };
    for (const auto& test : cases)
    {
        Grid().Rearrange([&](ViewOrder& cOrder) { cOrder.Reset(6); });
        Grid().Rearrange(test.Change);
        StartDrag({0});
        EXPECT_FALSE(Grid().DropWouldMove(3));
        CutActions().DragCompleted(LibraryCuts::Drop{false, L"", 3, sGridPayload});
        EXPECT_EQ(cView.colStatus.back(), test.sWhy);
        cView.colStatus.clear();
        CutActions().MoveSelected(false);
        EXPECT_EQ(cView.colStatus.back(), test.sWhy);
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
        EXPECT_TRUE(Shown().empty());
    }
}

TEST_P(RearrangeTest, ArrangersSortAndNarrowEveryListBeforeItIsShown)
{
    std::vector<std::size_t> colListed;
    Grid().Arrangers.push_back([&](ViewOrder& cOrder, const EarlierRows&) {
        colListed.push_back(cOrder.ListedCount());
        cOrder.Sort({5, 4, 3, 2, 1, 0});
    });
    Grid().Arrangers.push_back([](ViewOrder& cOrder, const EarlierRows&) {
        cOrder.Narrow({true, true, false, false, false, false});
    });
    ShowNode(L"Rock", 1);
    EXPECT_EQ(colListed, (std::vector<std::size_t>{6}));
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"a"}));
    EXPECT_EQ(cGridView.bSelected.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(Objects, RearrangeTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
