// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "media/DataBase.h"
#include "scheduler/clsSchedMan.h"
#include "ui/health/HealthForecast.h"
#include "ui/health/HealthPlan.h"
#include "ui/health/HealthTables.h"
#include "ui/health/frmHealthView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// A cut in a level of the library window, by their keys.
struct HealthTarget
{
    std::wstring sLevelKey;
    std::wstring sCutKey;

    friend bool operator==(const HealthTarget&, const HealthTarget&) = default;
};

// What a rotation health window leaves for the next one of the same manager: the last figures are there at
// once while new ones are worked out.
struct HealthMemory
{
    std::shared_ptr<HealthForecast> cForecast;
    PlanTexts plan;
    std::wstring sLevelKey; // the chosen one
};

// The rotation health window: simulates a plan, shows how each level fares, and carries out what helps.
// A simulation pumps messages. Requests of the user or the host during it are handled after it has ended or
// was cancelled.
class frmHealthPresenter final : private DataBaseEvents
{
public:
    // Owns none of them; holds the manager weakly. The memory outlives this.
    frmHealthPresenter(frmHealthView& cView, ModScheduler& cMod, std::weak_ptr<clsSchedMan> cSchedMan,
                       HealthMemory& memory);
    ~frmHealthPresenter() override;
    frmHealthPresenter(const frmHealthPresenter&) = delete;
    frmHealthPresenter& operator=(const frmHealthPresenter&) = delete;

    // Shows the window until it is closed, and simulates at once. If it is already showing, brings it to the
    // front instead. Returns the cut that the user wants to go to in the library window, if any.
    std::optional<HealthTarget> ShowModalUI(std::optional<Plan> hostPlan);
    bool Showing() const noexcept { return m_bShowing; }
    // Closes the window, after a simulation that runs has been cancelled.
    void RequestClose();
    // The station's orders or cuts have changed: the figures are out of date.
    void NoteChange();

    // ---- what is shown

    const SortedTable& Table(HealthTable eTable) const { return m_tables.Of(eTable); }
    const StationHealth* Station() const noexcept
    {
        return m_memory.cForecast ? &m_memory.cForecast->health : nullptr;
    }
    // Null for none.
    const LevelHealth* Level() const noexcept;
    bool Running() const noexcept { return m_eRun != Run::None; }

    // ---- what the user does

    void SimulateClick();
    void CancelClick();
    void BrowseClick();
    void SaveReportClick();
    void HeadingClick(HealthTable eTable, std::size_t column);
    // A row of a table is selected; in the levels it chooses the level.
    void RowSelected(HealthTable eTable, std::optional<std::size_t> row);
    void CarryOutClick();
    // Goes to the cut of a row of the cuts that play too seldom.
    void GoTo(std::size_t row);
    // Does what has been asked for; the view calls it after AskForWork.
    void Work();

private:
    enum class Run
    {
        None,
        Simulation,
        Advice,
        Report,
        CarryOut,
    };

    void CutsAdded(const Cuts&) override { NoteChange(); }
    void CutsModified(const Cuts&) override { NoteChange(); }
    void CutsRemoved(const Cuts&) override { NoteChange(); }
    void ProgressStart(const std::wstring&, std::int32_t) override {}
    void Progress(const std::wstring&, std::int32_t, std::int32_t) override {}
    void ProgressDone(const std::wstring&) override {}

    void Listen();
    void ShowPlan();
    void Try(Run eRun, const std::function<void(const SimulationProgress& progress)>& body);
    void Step(double dDone, bool& bCancel);
    void Simulate(const SimulationProgress& progress);
    Plan PlanFor(HealthPlan::Request& request, const StationSnapshot& station);
    void TakeForecast(std::shared_ptr<HealthForecast> cForecast);
    void FindAdvice(const SimulationProgress& progress);
    void WriteReport(const SimulationProgress& progress);
    bool NeedsAdvice() const;
    void ShowSummary();
    void ShowLevel();
    void ShowAdvice();
    void ChooseLevel(std::optional<std::size_t> level);
    const LevelRemedy* ChosenRemedy() const;
    void CarryOut(clsSchedMan& cSchedMan, const LevelRemedy& remedy, const std::wstring& sLevelKey);

    frmHealthView& m_cView;
    ModScheduler& m_cMod;
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    HealthMemory& m_memory;
    std::shared_ptr<DataBase> m_cFollowed; // announces changes to this
    HealthPlan m_plan{std::nullopt};
    HealthTables m_tables;
    std::optional<std::size_t> m_level;  // the chosen one, in the forecast
    std::optional<std::size_t> m_remedy; // the selected one, as an item
    std::optional<HealthTarget> m_target;
    std::wstring m_sReport; // where to save it
    std::wstring m_sDone;   // what was carried out, for the status line after the simulation
    Run m_eRun = Run::None;
    bool m_bShowing = false;
    bool m_bCancel = false;
    bool m_bStale = false;        // the station has changed since the figures were made
    bool m_bAdviceFailed = false; // or was cancelled, for the chosen level
    bool m_bSimulateNext = false; // asked for while something else runs
    bool m_bCloseNext = false;
    bool m_bRemembered = false; // the plan is the remembered one; the user has not confirmed it
};

} // namespace ravlo
