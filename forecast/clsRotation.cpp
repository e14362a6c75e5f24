// SPDX-License-Identifier: MIT
#include "forecast/clsRotation.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "forecast/Report.h"
#include "plan/PlanError.h"

#include <string_view>
#include <utility>

namespace ravlo
{

namespace
{

Files& FilesOf(const clsSchedMan& cScheduler) { return cScheduler.Mod().Ports().cFiles; }

// Throws PlanError for the first slot whose level does not exist.
void CheckLevels(const Plan& plan, const CatCollection& colMainCats, const std::wstring& sFile)
{
    for (const Slot& slot : plan.Slots())
    {
        if (!LevelByKey(&colMainCats, CategoryKey(slot.sCategory, slot.lLevel)))
            throw PlanError(sFile + L", line " + std::to_wstring(slot.line) + L": no cut is in " +
                            LevelText(slot));
    }
}

bool EndsWithIgnoringCase(std::wstring_view sText, std::wstring_view sEnd)
{
    return sText.size() >= sEnd.size() && EqualIgnoringCase(sText.substr(sText.size() - sEnd.size()), sEnd);
}

} // namespace

// Returns the manager, so that it lives as long as the member that uses it.
std::shared_ptr<clsSchedMan> clsRotation::Populated() const
{
    if (!m_cScheduler || !m_cScheduler->colMainCats())
        throw RuntimeError(error::ObjectNotSet);
    return m_cScheduler;
}

std::vector<std::wstring> clsRotation::ArtistsOf(const std::wstring& sArtist,
                                                 const std::wstring& sTitle) const
{
    return Populated()->Names().Of(sArtist, sTitle);
}

void clsRotation::LoadPlan(const std::wstring& sFile,
                           void (Plan::*load)(std::string_view, const std::wstring&))
{
    const std::shared_ptr<clsSchedMan> cScheduler = Populated();
    const Files& cFiles = FilesOf(*cScheduler);
    if (cFiles.PresenceOf(sFile) == Presence::Absent)
        throw RuntimeError(error::FileNotFound);
    Plan next;
    (next.*load)(cFiles.ReadAll(sFile), sFile);
    CheckLevels(next, *cScheduler->colMainCats(), sFile);
    m_plan = std::move(next);
}

void clsRotation::AddSlot(const std::wstring& strSubCatKey, bool bMustBeOpener)
{
    const std::shared_ptr<clsCat> cSubCat = LevelByKey(Populated()->colMainCats().get(), strSubCatKey);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall);
    m_plan.AddSlot({cSubCat->CatName(), cSubCat->CatLevel(), bMustBeOpener});
}

std::shared_ptr<const clsSimulation> clsRotation::Simulate(DateTime dtStart, double dDays,
                                                           const SimulationOptions& options,
                                                           const SimulationProgress& progress) const
{
    const std::shared_ptr<clsSchedMan> cScheduler = Populated();
    const Plan plan = m_plan;
    ModScheduler& cMod = cScheduler->Mod();
    const SimulationProgress letHostRun = [&](double dDone, bool& bCancel) {
        const ModScheduler::OthersRun cOthers(cMod);
        cMod.Pump();
        if (progress)
            progress(dDone, bCancel);
    };
    MustBePlayable(plan, dtStart, dDays);
    constexpr double dRead = 0.1; // parts of the work
    constexpr double dPlayed = 0.9;
    Pace pace(cMod.Ports().cClock, letHostRun);
    pace.Report(0);
    // Only now: the host may have populated from another database.
    const std::shared_ptr<DataBase> cDataBase = cScheduler->DataBase();
    const LetHostRun pump = [&] { pace.PumpIfDue(); };
    std::shared_ptr<const StationSnapshot> cStation =
        TakeSnapshot(cMod, *cScheduler->colMainCats(), cScheduler->History(), cScheduler->Options(),
                     cScheduler->Names(), pump);
    SimulationResult result = ravlo::Simulate(cMod, std::move(cStation), plan, dtStart, dDays, options,
                                              PartOf(letHostRun, dRead, dPlayed));
    pace.Reached(dPlayed);
    StationHealth health = HealthOf(result, pump);
    pace.Report(1);
    return std::make_shared<clsSimulation>(std::move(result), std::move(health),
                                           clsSimulation::Station{cMod, cDataBase, cScheduler});
}

Explanation clsRotation::Explain(const std::wstring& strSubCatKey, bool bMustBeOpener,
                                 const std::shared_ptr<Cut>& cPrevSchedCut) const
{
    return Populated()->Explain(strSubCatKey, bMustBeOpener, cPrevSchedCut);
}

std::shared_ptr<const Explanation> clsRotation::LastExplanation(const std::wstring& strSubCatKey) const
{
    return Populated()->LastExplanation(strSubCatKey);
}

void clsRotation::SpreadCategories(const Cats& colCats, bool bConfirmFirst) const
{
    Populated()->SpreadCategories(colCats, bConfirmFirst);
}

void clsRotation::WriteReport(const clsSimulation& cSimulation, const std::wstring& sFile,
                              const SimulationProgress& progress) const
{
    const std::shared_ptr<clsSchedMan> cScheduler = Populated();
    cSimulation.FindAllAdvice(progress);
    const StationHealth& health = cSimulation.Health();
    const bool bJson = EndsWithIgnoringCase(sFile, L".json");
    ReplaceFile(FilesOf(*cScheduler), sFile, bJson ? JsonReport(health) : HtmlReport(health));
}

void clsRotation::ShowHealthUI(HealthWindows& cWindows) const
{
    const std::shared_ptr<clsSchedMan> cScheduler = Populated();
    const Plan plan = m_plan; // the host may end this object
    cScheduler->Mod().FlushDebugLog();
    cScheduler->Mod().ShowWaiting();
    cWindows.ShowHealth(plan);
}

} // namespace ravlo
