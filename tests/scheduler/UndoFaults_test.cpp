// SPDX-License-Identifier: MIT
// Every kind of step, undone and redone while each write fails, and killed at each write: whole or not at
// all.
#include "platform/memory/FailingFiles.h"
#include "scheduler/UndoDesk.h"
#include "scheduler/UnsavedOrders.h"
#include "support/BatchingDataBase.h"
#include "support/ForwardingFiles.h"

#include <limits>
#include <set>

namespace ravlo::test
{
namespace
{

constexpr int lNoFault = std::numeric_limits<int>::max();

enum class UndoFaultWay
{
    Undo,
    Redo,
};

// What a killed process leaves.
struct KilledState
{
    std::vector<std::pair<std::wstring, std::string>> files;
    Cuts colCuts;
};

// Calls a hook before each change of a file.
class WatchedFiles final : public ForwardingFiles
{
public:
    using ForwardingFiles::ForwardingFiles;
    std::function<void()> OnChange = [] {};

    void WriteNew(const std::wstring& sPath, std::string_view bytes) override
    {
        OnChange();
        ForwardingFiles::WriteNew(sPath, bytes);
    }
    void Append(const std::wstring& sPath, std::string_view bytes) override
    {
        if (sPath.ends_with(L".parts")) // not the log
            OnChange();
        ForwardingFiles::Append(sPath, bytes);
    }
    void Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience) override
    {
        OnChange();
        ForwardingFiles::Rename(sFrom, sTo, ePatience);
    }
    void Delete(const std::wstring& sPath) override
    {
        OnChange();
        ForwardingFiles::Delete(sPath);
    }
};

// A program over sStation, or over what a killed one has left.
struct FaultyStation
{
    explicit FaultyStation(const KilledState* pLeft = nullptr)
    {
        if (pLeft)
        {
            for (const auto& [sPath, bytes] : pLeft->files)
                cPorts.cFiles.Put(sPath, bytes);
            cDataBase->cInner.colCuts = pLeft->colCuts;
        }
        else
            cDataBase->cInner.AddTree(sStation);
        cLib.cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
        if (pLeft)
            return;
        cLib.SaveAll();
        cLib.cSchedMan->SaveCatNames();
        Committed();
        cDataBase->OnCommit = [this] {
            if (std::exchange(m_bInCommit, !m_bInCommit))
                Committed();
        };
    }

    std::wstring Reverse(UndoFaultWay eWay) const
    {
        return eWay == UndoFaultWay::Undo ? desk.Man().Undo() : desk.Man().Redo();
    }
    // Brings the step to where that way can be gone.
    void Prepare(const UndoKind& kind, UndoFaultWay eWay)
    {
        kind.second(desk);
        if (eWay == UndoFaultWay::Redo)
            desk.Man().Undo();
        ASSERT_TRUE(eWay == UndoFaultWay::Undo ? desk.Man().CanUndo() : desk.Man().CanRedo()) << kind.first;
    }
    // If the process were killed now: an open batch is undone.
    KilledState Leave()
    {
        if (!cDataBase->bOpen)
            Committed();
        KilledState left;
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            left.files.emplace_back(sPath, cPorts.cFiles.Get(sPath));
        for (const std::shared_ptr<Cut>& cCut : m_colCommitted)
            left.colCuts.push_back(cCut->CloneCut());
        return left;
    }

    RadioPorts cPorts;
    FailingFiles cFaults{cPorts.cFiles, lNoFault};
    WatchedFiles cFiles{cFaults};
    Library cLib{cPorts, cFiles};
    std::shared_ptr<BatchingDataBase> cDataBase = std::make_shared<BatchingDataBase>();
    UndoDesk desk{cLib, cPorts};

private:
    void Committed()
    {
        m_colCommitted.clear();
        for (const std::shared_ptr<Cut>& cCut : cDataBase->cInner.colCuts)
            m_colCommitted.push_back(cCut->CloneCut());
    }

    bool m_bInCommit = false;
    Cuts m_colCommitted;
};

std::set<std::wstring> CutsOf(const FaultyStation& p)
{
    std::set<std::wstring> colCuts;
    for (const std::shared_ptr<Cut>& cCut : p.desk.Man().DataBase()->AllCuts())
        colCuts.insert(cCut->Key().Text() + std::to_wstring(cCut->CatLevel()) + cCut->CategoryText());
    return colCuts;
}

class UndoFaultsTest : public testing::TestWithParam<std::tuple<std::size_t, UndoFaultWay>>
{
protected:
    const UndoKind& Kind() const { return UndoKinds()[std::get<0>(GetParam())]; }
    UndoFaultWay Direction() const { return std::get<1>(GetParam()); }
    UndoFaultWay Back() const
    {
        return Direction() == UndoFaultWay::Undo ? UndoFaultWay::Redo : UndoFaultWay::Undo;
    }

    struct Healthy
    {
        std::wstring sBefore;
        std::wstring sAfter;
        std::wstring sFiles;
    };
    Healthy RunHealthy() const;
    // Goes that way while the write after so many good ones fails. Returns whether one has failed.
    bool Fail(int lGoodSteps, const Healthy& healthy) const;
};

UndoFaultsTest::Healthy UndoFaultsTest::RunHealthy() const
{
    FaultyStation p;
    p.Prepare(Kind(), Direction());
    Healthy healthy{p.desk.InMemory(), {}, {}};
    p.Reverse(Direction());
    healthy.sAfter = p.desk.InMemory();
    healthy.sFiles = p.desk.InFiles();
    return healthy;
}

bool UndoFaultsTest::Fail(int lGoodSteps, const Healthy& healthy) const
{
    FaultyStation p;
    p.Prepare(Kind(), Direction());
    p.cFaults.Arm(lGoodSteps);
    bool bDone = true;
    try
    {
        p.Reverse(Direction());
    }
    catch (const RuntimeError&)
    {
        bDone = false;
    }
    const bool bFailed = p.cFaults.bFailed;
    p.cFaults.Arm(lNoFault);
    EXPECT_EQ(p.desk.InMemory(), bDone ? healthy.sAfter : healthy.sBefore);
    EXPECT_TRUE(bDone || bFailed);
    if (!bDone)
        p.Reverse(Direction());
    EXPECT_EQ(p.desk.InMemory(), healthy.sAfter) << "the next attempt";
    p.Reverse(Back());
    EXPECT_EQ(p.desk.InMemory(), healthy.sBefore);
    p.Reverse(Direction());
    p.cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    p.cLib.SaveAll();
    p.cLib.cSchedMan->SaveCatNames();
    EXPECT_EQ(p.desk.InFiles(), healthy.sFiles);
    return bFailed;
}

TEST_P(UndoFaultsTest, AWriteThatFailsLeavesItWholeOrNotAtAll)
{
    const Healthy healthy = RunHealthy();
    int lSteps = 0;
    while (Fail(lSteps, healthy) && !HasFailure())
        ++lSteps;
    EXPECT_FALSE(HasFailure()) << "when write " << lSteps + 1 << " failed";
    EXPECT_GT(lSteps, 0);
}

// A killed one is finished or forgotten by the database at once. The files follow in the order that the next
// start understands: it finds every cut in the levels of before, or every one in those of after.
TEST_P(UndoFaultsTest, AKillLeavesItWholeOrNotAtAll)
{
    FaultyStation p;
    p.Prepare(Kind(), Direction());
    const auto colBefore = CutsOf(p);
    std::vector<KilledState> colLeft;
    p.cFiles.OnChange = [&] { colLeft.push_back(p.Leave()); };
    p.Reverse(Direction());
    p.cFiles.OnChange = [] {};
    const auto colAfter = CutsOf(p);
    const Lines colLevelsAfter = p.desk.Levels();
    ASSERT_GT(colLeft.size(), 1u);
    for (std::size_t at = 0; at < colLeft.size(); ++at)
    {
        SCOPED_TRACE("killed at write " + std::to_string(at + 1));
        FaultyStation next(&colLeft[at]);
        EXPECT_EQ(next.cPorts.cMessages.Boxes, Boxes());
        const auto colCuts = CutsOf(next);
        EXPECT_TRUE(colCuts == colBefore || colCuts == colAfter);
        EXPECT_TRUE(next.desk.Man().CanUndo() || next.desk.Man().CanRedo()) << "the steps are there";
        // It can be gone again: what the killed one did is as others would have done it.
        if (Direction() == UndoFaultWay::Undo ? next.desk.Man().CanUndo() : next.desk.Man().CanRedo())
            next.Reverse(Direction());
        EXPECT_EQ(CutsOf(next), colAfter);
        if (colCuts == colBefore)
        {
            EXPECT_EQ(next.desk.Levels(), colLevelsAfter);
        }
    }
}

class KilledWorkTest : public testing::TestWithParam<std::size_t>
{
};

// The next start finds all cuts as they were, or all of them changed, or a step that takes back what was
// done. Where the cuts stay as they are, that holds for the orders.
TEST_P(KilledWorkTest, IsWholeOrNotAtAllOrCanBeUndone)
{
    FaultyStation p;
    const auto colCutsBefore = CutsOf(p);
    const Lines colBefore = p.desk.Levels();
    std::vector<KilledState> colLeft;
    p.cFiles.OnChange = [&] { colLeft.push_back(p.Leave()); };
    const UndoKind& kind = UndoKinds()[GetParam()];
    kind.second(p.desk);
    p.cFiles.OnChange = [] {};
    const auto colCutsAfter = CutsOf(p);
    const Lines colAfter = p.desk.Levels();
    // A new category is saved before its first level.
    const bool bOrders = colCutsAfter == colCutsBefore && !std::wstring_view(kind.first).starts_with(L"new ");
    ASSERT_GT(colLeft.size(), 1u);
    for (std::size_t at = 0; at < colLeft.size(); ++at)
    {
        SCOPED_TRACE("killed at write " + std::to_string(at + 1));
        FaultyStation next(&colLeft[at]);
        EXPECT_EQ(next.cPorts.cMessages.Boxes, Boxes());
        const auto colCuts = CutsOf(next);
        const Lines colNow = next.desk.Levels();
        if (bOrders ? colNow == colBefore || colNow == colAfter
                    : colCuts == colCutsBefore || colCuts == colCutsAfter)
            continue;
        ASSERT_TRUE(next.desk.Man().CanUndo()) << testing::PrintToString(colNow);
        next.desk.Man().Undo();
        EXPECT_EQ(next.desk.Levels(), colBefore);
    }
}

INSTANTIATE_TEST_SUITE_P(UndoTest, KilledWorkTest, testing::Range(std::size_t{0}, UndoKinds().size()));

INSTANTIATE_TEST_SUITE_P(UndoTest, UndoFaultsTest,
                         testing::Combine(testing::Range(std::size_t{0}, UndoKinds().size()),
                                          testing::Values(UndoFaultWay::Undo, UndoFaultWay::Redo)));

} // namespace
} // namespace ravlo::test
