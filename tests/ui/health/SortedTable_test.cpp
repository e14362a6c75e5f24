// SPDX-License-Identifier: MIT
#include "ui/health/SortedTable.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

using Texts = std::vector<std::wstring>;

struct SortedTableTest : testing::Test
{
    Texts Names() const
    {
        Texts colTexts;
        for (std::size_t row = 0; row < table.Rows(); ++row)
            colTexts.push_back(table.Text(row, 0));
        return colTexts;
    }

    Texts colNames{L"blur", L"Abba", L"cream", L"Abba 2"};
    std::vector<double> values{10, 9, 10, 2};
    SortedTable table{{{L"Name", 100, false, [this](std::size_t item) { return TableCell{colNames[item]}; }},
                       {L"Value", 50, true,
                        [this](std::size_t item) {
        return TableCell{std::to_wstring(values[item]), values[item]};
                        },
                        true}}};
};

TEST_F(SortedTableTest, KeepsTheOrderOfTheItemsAtFirst)
{
    table.SetItems(4);
    EXPECT_EQ(Names(), colNames);
    EXPECT_EQ(table.SortedBy(), std::nullopt);
}

TEST_F(SortedTableTest, SortsTextsWithoutRegardToCase)
{
    table.SetItems(4);
    table.SortBy(0);
    EXPECT_EQ(Names(), (Texts{L"Abba", L"Abba 2", L"blur", L"cream"}));
    table.SortBy(0);
    EXPECT_EQ(Names(), (Texts{L"cream", L"blur", L"Abba 2", L"Abba"}));
    EXPECT_EQ(table.RowOf(1), 3u);
    EXPECT_EQ(table.ItemAt(3), 1u);
}

TEST_F(SortedTableTest, SortsNumbersByValueAndEqualOnesByItem)
{
    table.SetItems(4);
    table.SortBy(1);
    EXPECT_EQ(Names(), (Texts{L"blur", L"cream", L"Abba", L"Abba 2"})) << "the most first";
    table.SortBy(1);
    EXPECT_EQ(Names(), (Texts{L"Abba 2", L"Abba", L"blur", L"cream"}));
}

TEST_F(SortedTableTest, NewItemsAreSortedAsThoseBefore)
{
    table.SetItems(2);
    table.SortBy(0);
    table.SetItems(3);
    EXPECT_EQ(Names(), (Texts{L"Abba", L"blur", L"cream"}));
}

TEST_F(SortedTableTest, FindsTheNextRowThatBeginsWithAText)
{
    table.SetItems(4);
    EXPECT_EQ(table.Find(L"ab", 0), 1u);
    EXPECT_EQ(table.Find(L"ab", 2), 3u);
    EXPECT_EQ(table.Find(L"BL", 2), 0u) << "and then from the top";
    EXPECT_EQ(table.Find(L"10", 0), std::nullopt) << "not in numbers";
    table.SetItems(0);
    EXPECT_EQ(table.Find(L"ab", 0), std::nullopt);
}

} // namespace
} // namespace ravlo::test
