// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/UndoDesk.h"
#include "scheduler/UndoSteps.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{

class UndoTest : public StationTest
{
protected:
    UndoTest()
    {
        Start(sStation);
        Man().SaveCatNames();
        Man().SetRotatesAllowed(true);
    }

    clsSchedMan& Man() { return *cLib.cSchedMan; }
    // Everything a unit of work may change, in memory and in the files.
    std::wstring State() const { return desk.InMemory() + desk.InFiles(); }
    Lines Levels() const { return desk.Levels(); }
    Cuts CutsNamed(std::initializer_list<const wchar_t*> colKeys) const { return desk.CutsNamed(colKeys); }
    void Move(std::initializer_list<const wchar_t*> colKeys, const std::shared_ptr<clsCat>& cTo,
              eCatDragOptions eOption = eMoveHere)
    {
        desk.Move(colKeys, cTo, eOption);
    }
    void Remove(std::initializer_list<const wchar_t*> colKeys, const std::wstring& sName)
    {
        desk.Remove(colKeys, sName);
    }
    void CreateLevel(const std::wstring& sName, const std::wstring& sLevel)
    {
        desk.CreateLevel(sName, sLevel);
    }
    void MoveTo(const wchar_t* sKey, std::int32_t PosInto) { desk.MoveTo(sKey, PosInto); }

    UndoDesk desk{cLib, cPorts};
};

inline std::int32_t NumberOf(const std::function<void()>& action)
{
    try
    {
        action();
        return 0;
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
}

inline constexpr const wchar_t* sUndoPath = L"C:\\Radio\\Scheduler\\Undo.dat";

} // namespace ravlo::test
