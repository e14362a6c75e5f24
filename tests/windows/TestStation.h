// SPDX-License-Identifier: MIT
#pragma once

#include "platform/memory/MemoryWorld.h"
#include "platform/windows/WindowsHostLoop.h"
#include "platform/windows/WindowsMessages.h"
#include "scheduler/clsSchedMan.h"
#include "support/FakeDataBase.h"
#include "ui/windows/SchedulerUi.h"
#include "windows/Screenshot.h"
#include "windows/User.h"

#include <memory>
#include <string>
#include <windows.h>

namespace ravlo::test
{

// A playout program as far as windows are concerned: a main window on the test's thread.
class HostWindow
{
public:
    explicit HostWindow(const wchar_t* sTitle = L"Host")
        : m_hWindow(::CreateWindowExW(0, L"#32770", sTitle, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 900,
                                      600, nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr))
    {
    }
    ~HostWindow() { ::DestroyWindow(m_hWindow); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND Handle() const { return m_hWindow; }

private:
    HWND m_hWindow;
};

// A station whose files and clock are in memory, with real windows, boxes and message loop.
class TestStation
{
public:
    TestStation() { LookLikeACurrentDesktop(); }
    ~TestStation() { cSchedMan->SetWindows(nullptr); }
    TestStation(const TestStation&) = delete;
    TestStation& operator=(const TestStation&) = delete;

    // Takes over what is in the database.
    void Populate()
    {
        cWorld.cFiles.MakeFolders(L"C:\\Radio");
        cSchedMan->PopulateFromDataBase(cDataBase, L"C:\\Radio\\");
    }
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        const std::shared_ptr<clsCat>* cFound = cSchedMan->colMainCats()->Find(CategoryKey(sName, 0));
        return cFound ? *cFound : nullptr;
    }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel) const
    {
        return MainCat(sName)->SubCat(lLevel);
    }

    MemoryWorld cWorld;
    WindowsMessages cMessages;
    WindowsHostLoop cHostLoop;
    ModScheduler cMod{Ports{cWorld.cClock, cHostLoop, cWorld.cFiles, cMessages, cWorld.cUserSettings,
                            cWorld.cCodePage, cWorld.cRandom}};
    std::shared_ptr<FakeDataBase> cDataBase = std::make_shared<FakeDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
    std::unique_ptr<SchedulerWindows> cWindows = [this]
    {
        auto cUi = NewSchedulerUi(cSchedMan);
        cSchedMan->SetWindows(cUi.get());
        return cUi;
    }();
};

} // namespace ravlo::test
