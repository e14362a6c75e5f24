// SPDX-License-Identifier: MIT
#pragma once

#include "support/SchedulerTest.h"
#include "ui/health/frmHealthPresenter.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ravlo::test
{

// A window on a fake screen. While it is shown it does the work that is asked for, then what a user does, one
// action after the other, and closes when there is none left.
class FakeHealthView final : public frmHealthView
{
public:
    frmHealthPresenter* cForm = nullptr;
    std::deque<std::function<void()>> colActions;
    Lines colChoices;
    PlanTexts plan;
    std::wstring sSummary;
    std::wstring sStatus;
    Lines colStatus; // every one that was not empty
    std::wstring sReasons;
    std::map<HealthTable, std::optional<std::size_t>> selected;
    bool bRunning = false;
    bool bCarryOut = false;
    bool bClosed = false;
    int lShown = 0;
    int lFronts = 0;
    std::vector<double> colProgress;
    std::optional<std::wstring> sFile; // the answer to the next question
    std::wstring sAsked;               // its proposal

    void ShowClockChoices(const std::vector<std::wstring>& colShown) override { colChoices = colShown; }
    void ShowPlan(const PlanTexts& shown) override { plan = shown; }
    PlanTexts Plan() const override { return plan; }
    void ShowSummary(const std::wstring& sText) override { sSummary = sText; }
    void ShowStatus(const std::wstring& sText) override
    {
        sStatus = sText;
        if (!sText.empty())
            colStatus.push_back(sText);
    }
    void ShowRunning(bool bShow) override { bRunning = bShow; }
    void MoveProgress(double dDone) override { colProgress.push_back(dDone); }
    void ShowTable(HealthTable eTable) override { selected[eTable] = std::nullopt; }
    void SelectRow(HealthTable eTable, std::optional<std::size_t> row) override { selected[eTable] = row; }
    void ShowLevel() override { ++lShown; }
    void ShowReasons(const std::wstring& sText) override { sReasons = sText; }
    void EnableCarryOut(bool bEnable) override { bCarryOut = bEnable; }
    std::optional<std::wstring> AskClockFile(const std::wstring& sPresent) override
    {
        sAsked = sPresent;
        return sFile;
    }
    std::optional<std::wstring> AskReportFile(const std::wstring& sProposed) override
    {
        sAsked = sProposed;
        return sFile;
    }
    void AskForWork() override { m_bWork = true; }
    void ShowModal() override
    {
        bClosed = false;
        while (!bClosed)
            if (std::exchange(m_bWork, false))
                cForm->Work();
            else if (!colActions.empty())
            {
                const std::function<void()> action = colActions.front();
                colActions.pop_front();
                action();
            }
            else
                cForm->RequestClose();
    }
    void BringToFront() override { ++lFronts; }
    void Close() override { bClosed = true; }

private:
    bool m_bWork = false;
};

// A station whose Pop 1 starves the second of two cuts of Abba, which are next to each other; Jazz 1 is well.
struct HealthTest : testing::Test
{
    HealthTest()
    {
        view.cForm = &form;
        memory.plan = {HealthPlan::sEachLevel, L"2024-03-01 12:00", L"1"};
        AddLevel(L"Pop", {L"Abba", L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist", L"Gorky",
                          L"Hole", L"Inxs", L"Jam", L"Kiss"});
        AddLevel(L"Jazz", {L"Evans", L"Monk", L"Mingus", L"Rollins", L"Shaw", L"Tyner"});
        cLib.Populate();
        cLib.Level(L"Pop", 1)->Rules()->Apply({lSeparation, lSeparation, 0, false});
        cLib.Level(L"Jazz", 1)->Rules()->Apply({15, 15, 0, false});
    }

    static constexpr std::int32_t lSeparation = 35; // of Pop 1; 40 minutes are attainable

    void AddLevel(const std::wstring& sName, const Lines& colArtists)
    {
        for (const std::wstring& sArtist : colArtists)
        {
            const auto cCut =
                cLib.cDataBase->Add(sName + std::to_wstring(cLib.cDataBase->colCuts.size()), sName, 1);
            cCut->SetArtist(sArtist);
            cCut->SetTitle(L"Title of " + cCut->Key().Text());
            cCut->SetDurationmS(200'000);
        }
    }
    void Do(std::function<void()> action) { view.colActions.push_back(std::move(action)); }
    // Shows the window, does the actions that were noted, and closes it.
    std::optional<HealthTarget> Show(std::optional<Plan> hostPlan = std::nullopt)
    {
        return form.ShowModalUI(std::move(hostPlan));
    }
    Lines Column(HealthTable eTable, std::size_t column) const
    {
        Lines colTexts;
        for (std::size_t row = 0; row < form.Table(eTable).Rows(); ++row)
            colTexts.push_back(form.Table(eTable).Text(row, column));
        return colTexts;
    }
    std::size_t RowOf(HealthTable eTable, std::size_t column, const std::wstring& sText) const
    {
        const Lines colTexts = Column(eTable, column);
        return static_cast<std::size_t>(std::find(colTexts.begin(), colTexts.end(), sText) -
                                        colTexts.begin());
    }
    void CarryOut(const std::wstring& sRemedy)
    {
        form.RowSelected(HealthTable::Advice, RowOf(HealthTable::Advice, 0, sRemedy));
        form.CarryOutClick();
    }

    RadioPorts cPorts;
    Library cLib{cPorts};
    HealthMemory memory;
    FakeHealthView view;
    frmHealthPresenter form{view, cLib.cMod, cLib.cSchedMan, memory};
};

} // namespace ravlo::test
