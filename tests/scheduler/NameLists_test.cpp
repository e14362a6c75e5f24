// SPDX-License-Identifier: MIT
#include "scheduler/NameLists.h"

#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

class NameListsTest : public testing::Test
{
protected:
    const NameLists::Names& Of(const std::wstring& sCategoryText)
    {
        return cLists.Of(*cDataBase.Add(std::to_wstring(++m_lCuts), sCategoryText, 1));
    }
    static std::vector<std::wstring> Texts(const NameLists::Names& names)
    {
        std::vector<std::wstring> colTexts;
        for (const NameLists::Name& name : names.colNames)
        {
            colTexts.push_back(name.sName);
            EXPECT_EQ(name.cKey.Text(), name.sName + L"\t0") << "the key of the main category";
        }
        return colTexts;
    }

    FakeDataBase cDataBase;
    PlacedCuts cPlaced;
    NameLists cLists{cPlaced};

private:
    int m_lCuts = 0;
};

TEST_F(NameListsTest, NamesComeInOrderEachOnceWithoutALevel)
{
    EXPECT_EQ(Texts(Of(L"Rock\t7/Pop/ROCK")), (std::vector<std::wstring>{L"Rock", L"Pop"}));
    EXPECT_EQ(Texts(Of(L"")), std::vector<std::wstring>{});
    EXPECT_FALSE(Of(L"Rock").bEmptyName);
    const auto cCut = cDataBase.Add(L"a", L"Rock", 1);
    cCut->AddCategoryName(L"");
    EXPECT_TRUE(cLists.Of(*cCut).bEmptyName);
    EXPECT_EQ(Texts(cLists.Of(*cCut)), (std::vector<std::wstring>{L"Rock"})) << "an empty name is no name";
}

TEST_F(NameListsTest, ListIsReadOnceAndNumberedAsInThePlacedCuts)
{
    const NameLists::Names& names = Of(L"Rock/Pop");
    EXPECT_EQ(&Of(L"Rock/Pop"), &names);
    EXPECT_EQ(names.lNumber, cPlaced.NumberOf({L"ROCK", L"pop"}));
    EXPECT_NE(&Of(L"rock/Pop"), &names) << "another spelling keeps its own";
    EXPECT_EQ(Of(L"rock/Pop").lNumber, names.lNumber);
    EXPECT_NE(Of(L"Pop/Rock").lNumber, names.lNumber) << "the order counts";
    EXPECT_NE(Of(L"RockPop").lNumber, names.lNumber);
}

TEST_F(NameListsTest, ReferenceStaysValidAsListsAreAdded)
{
    const NameLists::Names& names = Of(L"Rock/Pop");
    for (int lList = 0; lList < 1'000; ++lList)
        Of(L"Name " + std::to_wstring(lList));
    EXPECT_EQ(Texts(names), (std::vector<std::wstring>{L"Rock", L"Pop"}));
}

} // namespace
} // namespace ravlo::test
