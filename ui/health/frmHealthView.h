// SPDX-License-Identifier: MIT
#pragma once

#include "ui/health/HealthTables.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// What the user has typed as plan.
struct PlanTexts
{
    std::wstring sClock; // a clock file, or one of the choices
    std::wstring sStart;
    std::wstring sDays;

    friend bool operator==(const PlanTexts&, const PlanTexts&) = default;
};

// The rotation health window on the screen. It reads its tables from the presenter.
class frmHealthView
{
public:
    virtual ~frmHealthView() = default;
    // The choices of the clock field besides a file that is typed.
    virtual void ShowClockChoices(const std::vector<std::wstring>& colChoices) = 0;
    virtual void ShowPlan(const PlanTexts& plan) = 0;
    virtual PlanTexts Plan() const = 0;

    // The line below the plan, and the status line.
    virtual void ShowSummary(const std::wstring& sText) = 0;
    virtual void ShowStatus(const std::wstring& sText) = 0;
    // Progress bar and Cancel, while something runs.
    virtual void ShowRunning(bool bRunning) = 0;
    virtual void MoveProgress(double dDone) = 0; // 0 to 1

    // The rows of a table, or their order, have changed.
    virtual void ShowTable(HealthTable eTable) = 0;
    // Selects one row of a table, or none, and scrolls it into view. Reports nothing to the presenter.
    virtual void SelectRow(HealthTable eTable, std::optional<std::size_t> row) = 0;
    // Another level was chosen, or its figures have changed: shows pictures and tab captions again.
    virtual void ShowLevel() = 0;
    virtual void ShowReasons(const std::wstring& sText) = 0;
    virtual void EnableCarryOut(bool bEnable) = 0;

    // Nothing when the user cancels.
    virtual std::optional<std::wstring> AskClockFile(const std::wstring& sPresent) = 0;
    virtual std::optional<std::wstring> AskReportFile(const std::wstring& sProposed) = 0;

    // Calls Work soon, after user input that is already waiting.
    virtual void AskForWork() = 0;
    // Shows the window and returns when it is closed: after Close, or because the program ends.
    virtual void ShowModal() = 0;
    virtual void BringToFront() = 0;
    virtual void Close() = 0;
};

} // namespace ravlo
