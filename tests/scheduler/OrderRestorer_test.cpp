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
    // Rock with these cuts in level 1.
    void AddCuts(const Keys& colKeys)
    {
        bool bCreated = false;
        for (const std::wstring& sKey : colKeys)
            cRock->AddCut(cDataBase.Add(sKey, L"Rock", 1), bCreated);
        colMainCats.Add(cRock);
    }
    OrderLeftOver Restore(const std::string& bytes) { return RestoreOrder(cMod, *cRock, bytes); }
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    FakeDataBase cDataBase;
    std::shared_ptr<clsCat> cRock = std::make_shared<clsCat>(cMod, L"Rock", 0);
    CatCollection colMainCats;
};

TEST_F(OrderRestorerTest, RecordsThatAreAllOfUseLeaveNothingOver)
{
    AddCuts({L"a", L"b"});
    EXPECT_TRUE(Restore(SifMarker(4) + SifCuts("b a")).None());
    EXPECT_EQ(TreeText(colMainCats), L"Rock 1: b a | Rock 4:");
}

TEST_F(OrderRestorerTest, AMissingLevelEndsItAndImpossibleOnesAreSkipped)
{
    AddCuts({L"a", L"b", L"c"});
    const OrderLeftOver leftOver = Restore(SifMarker(-2) + SifCut("b", 1) + SifCut("x", 3) + SifCut("a", 1));
    EXPECT_EQ(leftOver.colImpossibleLevels, std::vector<std::int32_t>{-2});
    EXPECT_EQ(leftOver.lMissingLevel, 3);
    EXPECT_EQ(TreeText(colMainCats), L"Rock 1: a c b");
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty()) << "the caller reports it";
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
