// SPDX-License-Identifier: MIT
#include "scheduler/UndoTest.h"
#include "support/ForwardingFiles.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace ravlo::test
{
namespace
{

class UndoStepsTest : public testing::Test
{
protected:
    UndoStepsTest()
    {
        cPorts.cFiles.MakeFolders(std::wstring(sRadio) + L"Scheduler");
        cSteps.Serve(sRadio);
    }
    // The order of so many cuts, whose keys are so long.
    static ChangeRecord RecordOf(std::size_t cuts, std::size_t length, std::size_t first = 0)
    {
        ChangeRecord record;
        record.colOrders.push_back({{L"Rock", 1}, {}});
        for (std::size_t cut = 0; cut < cuts; ++cut)
            record.colOrders[0].colKeys.emplace_back(std::to_wstring(first + cut) +
                                                     std::wstring(length, L'x'));
        return record;
    }
    void Undo(const ChangeRecord& inverse = {})
    {
        cSteps.Reversed(*cSteps.Next(UndoWay::Undo), UndoWay::Undo, inverse);
    }
    // What the file has to undo, the next first.
    Lines Saved()
    {
        cSteps.Save();
        UndoSteps cRead(cMod);
        cRead.Serve(sRadio);
        Lines colWhat;
        while (const std::optional<UndoSteps::Step> step = cRead.Next(UndoWay::Undo))
        {
            colWhat.push_back(step->sWhat);
            cRead.Reversed(*step, UndoWay::Undo, {});
        }
        return colWhat;
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    UndoSteps cSteps{cMod};
};

TEST_F(UndoStepsTest, TheOldestStepsGoWhenTheyAreTooLarge)
{
    constexpr std::size_t steps = 50;
    for (const bool bTexts : {false, true}) // what fills the tables: keys, or texts
    {
        SCOPED_TRACE(bTexts);
        for (std::size_t step = 0; step < steps; ++step)
        {
            ChangeRecord record = RecordOf(bTexts ? 0 : 10, 40'000, step * 10);
            if (bTexts)
                record.colOrders[0].category.sCatName =
                    std::wstring(400'000, static_cast<wchar_t>(L'A' + step));
            cSteps.Add(std::to_wstring(step), record);
        }
        const Lines colKept = Saved();
        EXPECT_LE(cPorts.cFiles.Get(sUndoPath).size(), UndoSteps::mostTableBytes + 1'000);
        for (std::size_t kept = 0; kept < colKept.size(); ++kept)
            EXPECT_EQ(colKept[kept], std::to_wstring(steps - 1 - kept));
        EXPECT_GE(colKept.size(), 25u);
        EXPECT_LT(colKept.size(), steps);
    }
}

TEST_F(UndoStepsTest, FiftyShufflesOfAHundredThousandCutsAreKept)
{
    ChangeRecord record = RecordOf(100'000, 60);
    UndoTables cTables;
    EncodeRecord(record, cTables);
    std::shuffle(record.colOrders[0].colKeys.begin(), record.colOrders[0].colKeys.end(), std::mt19937(1));
    EXPECT_LE(EncodeRecord(record, cTables).size() * 50, UndoSteps::mostStepBytes);
    EXPECT_LE(cTables.Size() * 2, UndoSteps::mostTableBytes);
}

TEST_F(UndoStepsTest, ASmallStepAfterAnUndoneLargeOneIsSaved)
{
    cSteps.Add(L"first", RecordOf(2, 80'000));
    cSteps.Add(L"large", RecordOf(190, 80'000, 10));
    Undo(RecordOf(190, 80'000, 10));
    cSteps.Add(L"small", RecordOf(15, 80'000, 300));
    EXPECT_EQ(Saved(), (Lines{L"small", L"first"}));
}

TEST_F(UndoStepsTest, TheFileKeepsTheNextStepWhenTheOtherWayIsTooLarge)
{
    for (const std::size_t redone : {5u, 230u})
    {
        SCOPED_TRACE(redone);
        cSteps.Add(L"first", RecordOf(2, 80'000));
        cSteps.Add(L"larger", RecordOf(5, 80'000, 10));
        Undo(RecordOf(redone, 80'000, 100));
        cSteps.Save();
        EXPECT_LE(cPorts.cFiles.Get(sUndoPath).size(), UndoSteps::mostTableBytes);
        UndoSteps cRead(cMod);
        cRead.Serve(sRadio);
        EXPECT_EQ(cRead.What(UndoWay::Undo), L"first");
        EXPECT_EQ(cRead.What(UndoWay::Redo), redone == 5u ? L"larger" : L"");
    }
}

TEST_F(UndoStepsTest, ARenamedCutHasItsNewKeyInEveryStep)
{
    const auto keys = [&] {
        std::wstring sKeys;
        const std::optional<UndoSteps::Step> step = cSteps.Next(UndoWay::Undo);
        for (const TextKey& cKey : step->record->colOrders[0].colKeys)
            sKeys += cKey.Text();
        return sKeys;
    };
    cSteps.Add(L"step", RecordOf(4, 0));
    cSteps.Renamed(TextKey(L"1"), TextKey(L"new"));
    EXPECT_EQ(keys(), L"0new23");
    cSteps.Renamed(TextKey(L"new"), TextKey(L"3"));
    EXPECT_EQ(keys(), L"032new") << "the cut that had this key is gone";
    cSteps.Renamed(TextKey(L"other"), TextKey(L"2"));
    EXPECT_EQ(keys(), L"03othernew");
}

// ---- saving

// A disk that needs time.
class SlowFiles final : public ForwardingFiles
{
public:
    SlowFiles(Files& cInner, MemoryClock& cClock) : ForwardingFiles(cInner), m_cClock(cClock) {}
    void Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience) override
    {
        m_cClock.Advance(lMs);
        ForwardingFiles::Rename(sFrom, sTo, ePatience);
    }
    std::uint32_t lMs = 0;

private:
    MemoryClock& m_cClock;
};

TEST_F(UndoStepsTest, AFileThatTakesLongIsWrittenLess)
{
    SlowFiles cFiles(cPorts.cFiles, cPorts.cClock);
    const Ports ports = cPorts.Ports();
    ModScheduler cSlow({ports.cClock, ports.cHostLoop, cFiles, ports.cMessages, ports.cUserSettings,
                        ports.cCodePage, ports.cRandom});
    for (const auto& [lMs, lPauseMs] :
         {std::pair(0u, 0u), std::pair(100u, 1'000u), std::pair(2'000u, UndoSteps::lLongestPauseMs)})
    {
        SCOPED_TRACE(lMs);
        UndoSteps cNew(cSlow);
        cNew.Serve(sRadio);
        const auto writes = [&] {
            const std::string before = cPorts.cFiles.Get(sUndoPath);
            cNew.Save();
            return cPorts.cFiles.Get(sUndoPath) != before;
        };
        cFiles.lMs = lMs;
        cNew.Add(L"step", RecordOf(1, lMs));
        cNew.Save();
        cNew.Add(L"step", RecordOf(2, 1));
        if (lPauseMs != 0)
        {
            EXPECT_FALSE(writes());
            cPorts.cClock.Advance(lPauseMs - 1);
            EXPECT_FALSE(writes());
            cPorts.cClock.Advance(1);
        }
        EXPECT_TRUE(writes());
        cNew.Add(L"step", RecordOf(3, 1));
        const std::string before = cPorts.cFiles.Get(sUndoPath);
        cNew.SaveAtEnd();
        EXPECT_NE(cPorts.cFiles.Get(sUndoPath), before);
    }
}

TEST_F(UndoStepsTest, AFileThatAnotherManagerWritesIsLeftAlone)
{
    cSteps.Add(L"ours", RecordOf(1, 1));
    cSteps.Save();
    UndoSteps cOther(cMod);
    cOther.Serve(sRadio);
    cOther.SetMayWrite(false);
    cOther.Add(L"theirs", RecordOf(2, 1));
    cOther.SaveAtEnd();
    EXPECT_EQ(cOther.What(UndoWay::Undo), L"theirs");
    EXPECT_EQ(Saved(), Lines{L"ours"});
}

} // namespace
} // namespace ravlo::test
