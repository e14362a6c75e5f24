// SPDX-License-Identifier: MIT
// What the scheduler makes of a host that writes many changes as one.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{
namespace
{

// Forty cuts that move from Rock 1 to Rock 2.
class HostBatchTest : public HostStationTest
{
protected:
    HostBatchTest()
    {
        for (int i = 1; i <= 40; ++i)
            m_cDataBase->AddCut(L"Song" + std::to_wstring(i), L"Rock", 1);
        m_cDataBase->AddCut(L"Other", L"Rock", 2);
    }
    HostBatches& NewBatches()
    {
        m_cDataBase->m_cBatches = NewObject<HostBatches>();
        return *m_cDataBase->m_cBatches.Get();
    }
    // Returns what the boxes say.
    Texts MoveAll()
    {
        Populate();
        const auto cFrom = Level(L"Rock", L"1");
        return BoxesOf([&] { MassChange(::eMoveHere, cFrom, Level(L"Rock", L"2"), CutsOf(cFrom)); });
    }
    LONG Moved() { return CountOf(L"Rock", 2) - 1; }
};

TEST_F(HostBatchTest, AMassChangeIsCommittedOnce)
{
    HostBatches& batches = NewBatches();
    EXPECT_EQ(MoveAll(), Texts{});
    EXPECT_EQ(batches.m_colCalls, (Texts{L"begin", L"commit"}));
    EXPECT_EQ(Moved(), 40);
}

TEST_F(HostBatchTest, AHostNeedNotHaveBatches)
{
    EXPECT_EQ(MoveAll(), Texts{});
    EXPECT_EQ(Moved(), 40);
}

TEST_F(HostBatchTest, ChangesAreMadeWithoutABatchThatCannotBegin)
{
    HostBatches& batches = NewBatches();
    batches.m_hBegin = ErrorResult(70);
    const Texts colSaid = MoveAll();
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Error in DoMassCatChange [cSchedMan]: 70 ")) << colSaid[0].size();
    EXPECT_EQ(batches.m_colCalls, Texts{L"begin"}) << "what was not begun is not ended";
    EXPECT_EQ(Moved(), 40);
}

TEST_F(HostBatchTest, AFailedCommitLeavesTheCutsAsTheHostRestoredThem)
{
    HostBatches& batches = NewBatches();
    batches.m_hCommit = ErrorResult(61);
    batches.m_onCommit = [this] {
        for (const auto& [sKey, cItem] : m_cDataBase->m_colCuts->m_colItems)
            if (sKey != L"C:\\Other.mp3")
                static_cast<HostCutObject*>(cItem.pdispVal)->m_lLevel = 1; // as the host's disk has it
    };
    const Texts colSaid = MoveAll();
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Error in DoMassCatChange [cSchedMan]: 61 "));
    EXPECT_EQ(batches.m_colCalls, (Texts{L"begin", L"commit"})) << "a failed commit is over: no rollback";
    EXPECT_EQ(CountOf(L"Rock", 1), 40);
    EXPECT_EQ(Moved(), 0);
}

} // namespace
} // namespace ravlo
