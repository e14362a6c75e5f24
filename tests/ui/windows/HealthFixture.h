// SPDX-License-Identifier: MIT
#pragma once

#include "ui/health/windows/ControlIds.h"
#include "ui/windows/TestStation.h"

#include <gtest/gtest.h>

#include <atomic>
#include <commctrl.h>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ravlo::test
{

// The rotation health window before a host's window, of a station with a level that starves cuts (Pop 1), one
// with too long a separation (Gold 1) and some that are well.
struct HealthWindowTest : ::testing::Test
{
    HealthWindowTest()
    {
        const std::vector<std::wstring> colArtists{
            L"Amber Road",     L"The Lanterns", L"Nora Vale",    L"Quiet Harbour",
            L"Blue Meridian",  L"Ida & Sons",   L"Kites",        L"Paper Moons",
            L"Silver Orchard", L"Tom Hollis",   L"Velvet Sky",   L"Zora Lind",
            L"Old Pines",      L"Marlow",       L"The Ferrymen", L"Winter Palace"};
        AddLevel(L"Pop", 1,
                 {L"Nora Vale", L"Nora Vale", L"Kites", L"Kites", L"Marlow", L"Tom Hollis", L"Old Pines",
                  L"Zora Lind", L"Velvet Sky", L"Paper Moons", L"Ida & Sons", L"The Lanterns", L"Nora Vale",
                  L"Amber Road"});
        AddLevel(L"Pop", 2, colArtists);
        AddLevel(L"Gold", 1, {L"Kites", L"Marlow", L"Kites", L"Old Pines", L"Kites", L"Zora Lind"});
        AddLevel(L"Rock", 1, colArtists);
        AddLevel(L"Rock", 2, {colArtists.rbegin(), colArtists.rend()});
        AddLevel(L"Soul", 1, {colArtists.begin(), colArtists.begin() + 12});
        cState.Populate();
        for (const std::shared_ptr<clsCat>& cMainCat : *cState.cSchedMan->colMainCats())
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                cSubCat->Rules()->Apply({45, 90, 0, false});
        cState.Level(L"Gold", 1)->Rules()->Apply({150, 60, 0, false});
        cState.cPorts.cUserSettings.Set(L"RavloScheduler", L"Settings", L"frmHealthPlace", L"20,10,1120,740");
    }

    void AddLevel(const std::wstring& sName, int lLevel, const std::vector<std::wstring>& colArtists)
    {
        static const wchar_t* const sTitles[] = {
            L"Morning Train",  L"Long Way Down", L"Half a Smile",   L"Northern Line",
            L"Paper Crowns",   L"Slow Dancer",   L"Rain on Glass",  L"Out of Season",
            L"The Last Ferry", L"Hold the Tide", L"Second Sunrise", L"Letters Home",
            L"Evening News",   L"Stay a While",  L"Harbour Lights", L"Two Streets Over"};
        for (const std::wstring& sArtist : colArtists)
        {
            const auto cCut =
                cState.cDataBase->Add(L"C:\\Music\\" + std::to_wstring(lCuts) + L".wav", sName, lLevel);
            cCut->SetArtist(sArtist);
            cCut->SetTitle(std::wstring(sTitles[lCuts % 16]) +
                           (lCuts < 16 ? L"" : L" " + std::to_wstring(lCuts / 16)));
            cCut->SetDurationmS(180'000 + 3'000 * (lCuts++ % 20));
        }
    }

    void Open(const std::function<void(const User&)>& drive)
    {
        WhileShowing([&] { cState.cWindows->ShowHealth({}); }, drive);
    }
    // Opens the window by show, waits for its first figures, lets the user act and closes it when it is still
    // open.
    void WhileShowing(const std::function<void()>& show, const std::function<void(const User&)>& drive)
    {
        WhileOpen(show, [&](const User& user) {
            TakeWindow(user);
            drive(user);
            if (::IsWindow(hWindow))
                ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
            user.WaitUntilGone(hWindow);
        });
    }
    void TakeWindow(const User& user)
    {
        hWindow = user.WaitFor(sfrmHealthClass);
        WaitForFigures(user);
    }
    // The window's work begins by a timer, and an idle thread may still wait for one. A longer timer that is
    // set later comes later.
    static constexpr UINT lLongerThanTheWindows = 100; // ms
    void WaitForTimers(const User& user)
    {
        bTimersPassed = false;
        cHost.Run(user, [] { ::SetTimer(nullptr, 0, lLongerThanTheWindows, &HealthWindowTest::OnTimer); });
        user.Until([] { return bTimersPassed.load(); }, "timers");
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR lTimer, DWORD)
    {
        ::KillTimer(nullptr, lTimer);
        bTimersPassed = true;
    }
    void WaitForFigures(const User& user)
    {
        WaitForTimers(user);
        const auto bSettled = [&] {
            return Rows(eIdlstLevels) > 0 && !Shown(At(eIdcmdCancelRun)) &&
                   User::Text(At(eIdlblReasons)).find(L"being worked out") == std::wstring::npos;
        };
        user.Until(bSettled, "the figures");
        user.Idle();
        user.Until(bSettled, "the advice");
    }

    HWND At(int lId) const { return User::Control(hWindow, lId); }
    int Rows(int lId) const { return static_cast<int>(Send(At(lId), LVM_GETITEMCOUNT)); }
    std::wstring Cell(int lId, int lRow, int lColumn) const
    {
        wchar_t sText[200] = L"";
        LVITEMW item{};
        item.iSubItem = lColumn;
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        Send(At(lId), LVM_GETITEMTEXTW, lRow, &item);
        return sText;
    }
    std::vector<std::wstring> Column(int lId, int lColumn) const
    {
        std::vector<std::wstring> colTexts;
        for (int lRow = 0; lRow < Rows(lId); ++lRow)
            colTexts.push_back(Cell(lId, lRow, lColumn));
        return colTexts;
    }
    int RowOfLevel(const std::wstring& sLevel) const
    {
        int lRow = 0;
        while (lRow < Rows(eIdlstLevels) && Cell(eIdlstLevels, lRow, 1) != sLevel)
            ++lRow;
        return lRow;
    }
    POINT PointOf(int lId, int lRow) const
    {
        RECT rect{};
        rect.left = LVIR_LABEL;
        Send(At(lId), LVM_GETITEMRECT, lRow, &rect);
        return {rect.left + 8, (rect.top + rect.bottom) / 2};
    }
    void ClickRow(const User& user, int lId, int lRow) const { user.ClickAt(At(lId), PointOf(lId, lRow)); }
    int SelectedRow(int lId) const
    {
        return static_cast<int>(Send(At(lId), LVM_GETNEXTITEM, -1, reinterpret_cast<void*>(LVNI_SELECTED)));
    }

    static inline std::atomic<bool> bTimersPassed = false;
    HostWindow cHost;
    TestStation cState;
    int lCuts = 0;
    HWND hWindow = nullptr;
};

} // namespace ravlo::test
