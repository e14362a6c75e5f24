// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/HealthWindows.h"
#include "forecast/Plan.h"
#include "forecast/clsSimulation.h"
#include "rotation/Explanation.h"
#include "scheduler/clsSchedMan.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// What the scheduler offers besides its picks: options of the station, spread orders, forecasts of a plan,
// reports and explanations. Works on one manager. A category key is <name> TAB <level>; one that names no
// level raises error 5. Members throw error 91 without a populated manager, except those marked noexcept.
class clsRotation
{
public:
    // Null for none.
    void SetScheduler(std::shared_ptr<clsSchedMan> cScheduler) noexcept
    {
        m_cScheduler = std::move(cScheduler);
    }

    // Options of the station; a setter saves at once. See RotationFiles.h.
    bool FairRotation() const { return Populated()->Options().bFairRotation; }
    void SetFairRotation(bool bOn) { Populated()->SetFairRotation(bOn); }
    bool FeaturedArtists() const { return Populated()->Options().bFeaturedArtists; }
    void SetFeaturedArtists(bool bOn) { Populated()->SetFeaturedArtists(bOn); }
    // Options in force instead of the station's; nothing is saved. See RotationFiles::Override.
    void OverrideOptions(const OptionOverrides& overrides) { Populated()->OverrideOptions(overrides); }
    // The names a credit counts for; see ArtistNames::Of.
    std::vector<std::wstring> ArtistsOf(const std::wstring& sArtist, const std::wstring& sTitle) const;

    void ClearPlan() noexcept { m_plan.Clear(); }
    // Replace the plan by the slots of a file; when they throw, the plan stays as it was. Throw error 53 when
    // there is no such file, PlanError for a line that cannot be used or names no level.
    void LoadClock(const std::wstring& sFile) { LoadPlan(sFile, &Plan::LoadClock); }
    void LoadSlots(const std::wstring& sFile) { LoadPlan(sFile, &Plan::LoadSlots); }
    // Adds a slot to the hour that repeats. Throws error 5 when the plan's slots have times.
    void AddSlot(const std::wstring& strSubCatKey, bool bMustBeOpener);
    std::size_t SlotCount() const noexcept { return m_plan.Slots().size(); }

    // Plays the plan on a copy of the station, and says how each level fares. Pumps messages before each call
    // of progress. The host may then do anything, including releasing this object: the simulation continues
    // on its copy.
    std::shared_ptr<const clsSimulation> Simulate(DateTime dtStart, double dDays,
                                                  const SimulationOptions& options,
                                                  const SimulationProgress& progress) const;

    // See clsSchedMan.
    Explanation Explain(const std::wstring& strSubCatKey, bool bMustBeOpener,
                        const std::shared_ptr<Cut>& cPrevSchedCut) const;
    std::shared_ptr<const Explanation> LastExplanation(const std::wstring& strSubCatKey) const;
    void SpreadCategories(const Cats& colCats, bool bConfirmFirst) const;

    // See clsSchedMan. CanUndo and CanRedo are false, and the texts empty, without a manager.
    bool CanUndo() const noexcept { return m_cScheduler && m_cScheduler->CanUndo(); }
    std::wstring UndoText() const { return m_cScheduler ? m_cScheduler->UndoText() : std::wstring(); }
    std::wstring Undo() const { return Populated()->Undo(); }
    bool CanRedo() const noexcept { return m_cScheduler && m_cScheduler->CanRedo(); }
    std::wstring RedoText() const { return m_cScheduler ? m_cScheduler->RedoText() : std::wstring(); }
    std::wstring Redo() const { return Populated()->Redo(); }

    // Writes the report of a simulation in one step: JSON when the file's name ends with .json, else HTML.
    // Looks for what helps first; progress and precondition as in clsSimulation.
    void WriteReport(const clsSimulation& cSimulation, const std::wstring& sFile,
                     const SimulationProgress& progress = {}) const;

    // Shows the rotation health window of the manager's windows, with the plan that was loaded; see
    // HealthWindows.h.
    void ShowHealthUI(HealthWindows& cWindows) const;

    // Throws error 91 without a populated manager.
    void MustBePopulated() const { Populated(); }

private:
    std::shared_ptr<clsSchedMan> Populated() const;
    void LoadPlan(const std::wstring& sFile, void (Plan::*load)(std::string_view, const std::wstring&));

    std::shared_ptr<clsSchedMan> m_cScheduler;
    Plan m_plan;
};

} // namespace ravlo
