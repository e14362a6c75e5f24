// SPDX-License-Identifier: MIT
#include "scheduler/OrderRestorer.h"

#include "scheduler/OrderRecords.h"
#include "support/SchedulerTest.h"

namespace ravlo::test
{
namespace
{

class OrderRestorerTest : public testing::Test
{
protected:
    std::shared_ptr<clsCat> Cat(const std::vector<std::pair<const wchar_t*, std::int32_t>>& colCuts)
    {
        auto cMainCat = std::make_shared<clsCat>(cMod, L"Rock", 0);
        bool bCreated = false;
        for (const auto& [sKey, lLevel] : colCuts)
            cMainCat->AddCut(cDataBase.Add(sKey, L"Rock", lLevel), bCreated);
        return cMainCat;
    }
    static Keys Order(const clsCat& cMainCat, std::int32_t lLevel)
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : *cMainCat.SubCat(lLevel)->SchedCuts())
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    FakeDataBase cDataBase;
};

TEST_F(OrderRestorerTest, RecordsThatAreAllOfUseLeaveNothingOver)
{
    const auto cCat = Cat({{L"a", 1}, {L"b", 1}});
    const OrderLeftOver leftOver = RestoreOrder(cMod, *cCat, SifMarker(4) + SifCut("b", 1) + SifCut("a", 1));
    EXPECT_TRUE(leftOver.None());
    EXPECT_EQ(Order(*cCat, 1), (Keys{L"b", L"a"}));
    EXPECT_TRUE(cCat->SubCat(4));
}

TEST_F(OrderRestorerTest, AMissingLevelEndsItAndImpossibleOnesArePassedOver)
{
    const auto cCat = Cat({{L"a", 1}, {L"b", 1}, {L"c", 1}});
    const OrderLeftOver leftOver =
        RestoreOrder(cMod, *cCat, SifMarker(-2) + SifCut("b", 1) + SifCut("x", 3) + SifCut("a", 1));
    EXPECT_EQ(leftOver.colImpossibleLevels, std::vector<std::int32_t>{-2});
    EXPECT_EQ(leftOver.lMissingLevel, 3);
    EXPECT_EQ(Order(*cCat, 1), (Keys{L"a", L"c", L"b"}));
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty()) << "what is said of it is the caller's";
}

TEST(OrderRecords, ARecordIsReadAsItWasPut)
{
    static_assert(orderRecordSize == 1983 && orderTextWidth == 255);
    OrderContent cContent(2);
    cContent.PutCut(0, {"artist", "title", " path "}, 0x01020304);
    cContent.PutMarker(1, 7);
    EXPECT_EQ(cContent.Bytes(), SifCut("artist", "title", " path ", 0x01020304) + SifMarker(7));
    EXPECT_TRUE(AreOrderRecords(cContent.Bytes()));
    EXPECT_FALSE(AreOrderRecords(cContent.Bytes().substr(1)));
    const OrderRecord cut = FirstOrderRecord(cContent.Bytes());
    EXPECT_EQ(cut.lLevel, 0x01020304);
    EXPECT_FALSE(cut.bLevelMarker);
    EXPECT_EQ(cut.path, "path");
    EXPECT_TRUE(FirstOrderRecord(cContent.Bytes().substr(orderRecordSize)).bLevelMarker);
}

} // namespace
} // namespace ravlo::test
