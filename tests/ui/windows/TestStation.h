// SPDX-License-Identifier: MIT
#pragma once

#include "platform/memory/MemoryPorts.h"
#include "platform/windows/WindowsPorts.h"
#include "scheduler/clsSchedMan.h"
#include "support/FakeDataBase.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Window.h"
#include "ui/windows/SchedulerUi.h"
#include "ui/windows/Screenshot.h"
#include "ui/windows/User.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <windows.h>

namespace ravlo::test
{

// A playout program as far as windows are concerned: a main window on the test's thread, with an edit field
// that has the focus.
class HostWindow final : public Window
{
public:
    explicit HostWindow(const wchar_t* sTitle = L"Host") : Window(L"RavloTestHost")
    {
        WindowStart start;
        start.sTitle = sTitle;
        start.lStyle = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
        Create(start);
        ::SetWindowPos(Handle(), nullptr, 20, 20, 1000, 700, SWP_NOZORDER);
        hEdit = MakeControl(Handle(), L"EDIT", L"", WS_BORDER, 1);
        ::MoveWindow(hEdit, 10, 10, 200, 24, TRUE);
        ::SetForegroundWindow(Handle());
        ::SetFocus(hEdit);
    }

    // Runs something on the windows' thread, as a host's timer would.
    void Run(const User& user, const std::function<void()>& what)
    {
        OnRun = what;
        ::PostMessageW(Handle(), WM_APP, 0, 0);
        user.Until([this] { return !OnRun; }, "the host's own work");
    }

    HWND hEdit = nullptr;

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override
    {
        if (lMessage != WM_APP)
            return Default(lMessage, wParam, lParam);
        OnRun();
        OnRun = nullptr;
        return 0;
    }
    void OnException() noexcept override { ADD_FAILURE() << "the host's window failed"; }

    std::function<void()> OnRun;
};

// The real loop, which marks the messages that it runs as part of some work.
class WatchedHostLoop final : public HostLoop
{
public:
    explicit WatchedHostLoop(HostLoop& cInner) : m_cInner(cInner) {}
    void PumpMessages() override
    {
        const MiddleOfWork cMiddle;
        if (OnPump)
            OnPump();
        m_cInner.PumpMessages();
    }
    void Sleep(std::uint32_t lMs) override { m_cInner.Sleep(lMs); }

    std::function<void()> OnPump; // before each pump

private:
    HostLoop& m_cInner;
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
        cPorts.cFiles.MakeFolders(L"C:\\Radio");
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

    MemoryPorts cPorts;
    WindowsMessages cMessages;
    WindowsHostLoop cHostLoop;
    WatchedHostLoop cWatchedLoop{cHostLoop};
    ModScheduler cMod{Ports{cPorts.cClock, cWatchedLoop, cPorts.cFiles, cMessages, cPorts.cUserSettings,
                            cPorts.cCodePage, cPorts.cRandom}};
    std::shared_ptr<FakeDataBase> cDataBase = std::make_shared<FakeDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
    std::unique_ptr<SchedulerUi> cWindows = [this] {
        auto cUi = NewSchedulerUi(cSchedMan);
        cSchedMan->SetWindows(cUi.get());
        return cUi;
    }();
};

} // namespace ravlo::test
