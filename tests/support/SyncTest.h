// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerWindows.h"
#include "scheduler/UnsavedOrders.h"
#include "support/SchedulerTest.h"

#include <map>
#include <set>

namespace ravlo::test
{

// A library window that counts its refreshes and reloads.
class CountingWindows final : public SchedulerWindows
{
public:
    bool bExists = true;
    int lRefreshes = 0;
    std::function<void()> OnRefresh;
    int lReloads = 0;
    std::function<void()> OnReload;

    bool LibraryExists() const override { return bExists; }
    bool LibraryShowing() const override { return bExists; }
    void ReloadLibrary() override
    {
        ++lReloads;
        if (const auto hook = OnReload)
            hook();
    }
    void RefreshLibrary() override
    {
        ++lRefreshes;
        if (const auto hook = OnRefresh)
            hook();
    }
    void ShowLibrary() override {}
    std::int32_t ShowCategory(CategoryRequest&) override { return lNotChosen; }
};

inline Lines Joined(std::initializer_list<Lines> colParts)
{
    Lines colAll;
    for (const Lines& colPart : colParts)
        colAll.insert(colAll.end(), colPart.begin(), colPart.end());
    return colAll;
}

// The events of an explicit save of so many records.
inline Lines SaveSaid(const std::wstring& sName, std::size_t records)
{
    const std::wstring sCount = std::to_wstring(records);
    return {L"Start " + sCount + L": Saving Ordering and hist for: " + sName,
            L"Start " + sCount + L": Saving info for: " + sName + L" to file.",
            L"Done: Saved Scheduler Info for: " + sName};
}

inline std::wstring StandardText(std::int32_t lNumber) { return StandardDescription(lNumber); }
inline std::wstring CriticalText(std::int32_t lNumber)
{
    return std::to_wstring(lNumber) + L" " + StandardDescription(lNumber);
}

// A populated library whose start is over: what is recorded afterwards is the operation under test.
class StationTest : public testing::Test
{
public:
    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategoryText,
                                 std::int32_t lLevel = 1, std::int32_t lRunTimemS = 180'000)
    {
        return cLib.cDataBase->Add(sKey, sCategoryText, lLevel, lRunTimemS);
    }
    // As many cuts as said, keyed <sPrefix>1, <sPrefix>2 ...
    Cuts AddMany(std::size_t count, const std::wstring& sPrefix, const std::wstring& sCategoryText,
                 std::int32_t lLevel = 1)
    {
        Cuts colCuts;
        for (std::size_t cut = 1; cut <= count; ++cut)
            colCuts.push_back(Add(sPrefix + std::to_wstring(cut), sCategoryText, lLevel));
        return colCuts;
    }

    void Start()
    {
        cLib.Populate();
        cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
        Forget();
    }
    // Starts a new manager with these cuts alone and without a saved file. Returns the first cut.
    std::shared_ptr<FakeCut> Start(const std::wstring& sTree)
    {
        cLib.cHost.OnEvent = nullptr;
        if (cLib.cSchedMan)
            cLib.End();
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif") || sPath == sMainCatsPath)
                cPorts.cFiles.Delete(sPath);
        cLib.cDataBase->colCuts.clear();
        const auto cFirst = cLib.cDataBase->AddTree(sTree);
        cLib.Restart();
        cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
        Forget();
        return cFirst;
    }
    std::shared_ptr<FakeCut> CutOf(const std::wstring& sKey) const { return cLib.cDataBase->Own(sKey); }
    // Puts a cut into one more level, as a host may.
    void PlaceToo(const std::shared_ptr<Cut>& cCut, const std::wstring& sName, std::int32_t lLevel) const
    {
        bool bCreated = false;
        EXPECT_TRUE(Level(sName, lLevel)->AddCut(cCut, bCreated));
    }
    // What was recorded so far is not of interest.
    void Forget()
    {
        cPorts.cMessages.Boxes.clear();
        cPorts.cMessages.Inputs.clear();
        cLib.cHost.colSaid.clear();
        cPorts.cFiles.ClearOperations();
        cPorts.cHostLoop.lSleeps = cPorts.cHostLoop.lPumps = 0;
        cPorts.cHostLoop.sleptmS = 0;
        logged = cPorts.LogMessages().size();
    }
    Lines Log() const
    {
        Lines colLines = cPorts.LogMessages();
        colLines.erase(colLines.begin(), colLines.begin() + static_cast<std::ptrdiff_t>(logged));
        return colLines;
    }
    // How often a line was logged.
    std::ptrdiff_t Logged(const std::wstring& sLine) const
    {
        const Lines colLog = Log();
        return std::count(colLog.begin(), colLog.end(), sLine);
    }
    // Whether the order file of a category can be replaced.
    void SetReadOnly(const std::wstring& sName, bool bReadOnly = true)
    {
        cPorts.cFiles.SetReadOnly(SifPath(sName), bReadOnly);
    }
    // Lets so much time pass that what could not be saved is due again.
    void WaitForRetry() { cPorts.cClock.Advance(UnsavedOrders::lRetryMs); }
    // Every event, pump and sleep from here on, in order.
    void TraceAll(Lines& colTrace)
    {
        cLib.cHost.OnEvent = [&colTrace](const std::wstring& sLine) { colTrace.push_back(sLine); };
        cPorts.cHostLoop.OnPump = [&colTrace] { colTrace.push_back(L"pump"); };
        cPorts.cHostLoop.OnSleep = [&colTrace](std::uint32_t lMs) {
            colTrace.push_back(L"sleep " + std::to_wstring(lMs));
        };
    }

    void Announce(void (DataBaseEvents::*pEvent)(const Cuts&), const Cuts& colCuts)
    {
        cLib.cDataBase->Announce(pEvent, colCuts);
    }
    void Added(const Cuts& colCuts) { Announce(&DataBaseEvents::CutsAdded, colCuts); }
    void Modified(const Cuts& colCuts) { Announce(&DataBaseEvents::CutsModified, colCuts); }
    void Removed(const Cuts& colCuts)
    {
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            cLib.cDataBase->Remove(*cCut);
        Announce(&DataBaseEvents::CutsRemoved, colCuts);
    }

    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const { return cLib.MainCat(sName); }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel) const
    {
        return cLib.Level(sName, lLevel);
    }
    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel = 1) const
    {
        return cLib.CutsOf(sName, lLevel);
    }
    Keys Order(const std::wstring& sName, std::int32_t lLevel) const { return cLib.Order(sName, lLevel); }
    std::wstring Tree() const { return cLib.Tree(); }
    // The names of the history/ordering files that were written since Forget, in the order of their last
    // writes.
    Lines Written() const
    {
        Lines colNames;
        const std::wstring sFolder = L"History_and_Ordering\\";
        for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        {
            const std::size_t arrow = sOperation.find(L" -> ");
            if (!sOperation.starts_with(L"Rename ") || !sOperation.ends_with(L".sif") ||
                arrow == std::wstring::npos)
                continue;
            const std::size_t name = sOperation.find(sFolder, arrow) + sFolder.size();
            const std::wstring sName = sOperation.substr(name, sOperation.size() - 4 - name);
            std::erase(colNames, sName);
            colNames.push_back(sName);
        }
        return colNames;
    }
    std::string File(const std::wstring& sName) const
    {
        return cPorts.cFiles.FileExists(SifPath(sName)) ? cPorts.cFiles.Get(SifPath(sName)) : "none";
    }
    // The run times of a level's cuts, read through the average.
    std::int64_t TotalOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        const std::shared_ptr<clsCat> cLevel = Level(sName, lLevel);
        return std::int64_t{cLevel->AverageRunTimemS()} * cLevel->TotalCuts();
    }

    RadioPorts cPorts;
    Library cLib{cPorts};
    Boxes& boxes = cPorts.cMessages.Boxes;
    Lines& said = cLib.cHost.colSaid;
    std::size_t logged = 0;
};

} // namespace ravlo::test
