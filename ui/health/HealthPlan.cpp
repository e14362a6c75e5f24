// SPDX-License-Identifier: MIT
#include "ui/health/HealthPlan.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "forecast/EachLevelInTurn.h"
#include "forecast/Simulation.h"
#include "plan/PlanError.h"
#include "ui/health/HealthTexts.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

[[noreturn]] void Refuse(std::wstring sText)
{
    throw RuntimeError(error::InvalidProcedureCall, std::move(sText));
}

// Throws for the first slot whose level has no cuts.
void CheckLevels(const Plan& plan, const StationSnapshot& station, const std::wstring& sFile)
{
    for (const Slot& slot : plan.Slots())
    {
        const bool bThere =
            std::any_of(station.levels.begin(), station.levels.end(), [&](const SnapshotLevel& level) {
                return level.lLevel == slot.lLevel && EqualIgnoringCase(level.sCategory, slot.sCategory);
            });
        if (!bThere)
            throw PlanError(sFile + L", line " + CountText(slot.line) + L": there is no level " +
                            LevelText(slot));
    }
}

} // namespace

HealthPlan::HealthPlan(std::optional<Plan> hostPlan) : m_hostPlan(std::move(hostPlan)), m_sFirst(sEachLevel)
{
    if (!m_hostPlan || m_hostPlan->Slots().empty())
        return;
    m_sHost = L"Plan of the program (" + Counted(m_hostPlan->Slots().size(), L"slot)", L"slots)");
    m_sFirst = m_sHost;
}

std::vector<std::wstring> HealthPlan::Choices() const
{
    std::vector<std::wstring> colChoices;
    if (!m_sHost.empty())
        colChoices.push_back(m_sHost);
    colChoices.emplace_back(sEachLevel);
    return colChoices;
}

bool HealthPlan::IsChoice(const std::wstring& sClock) const
{
    const std::vector<std::wstring> colChoices = Choices();
    return std::any_of(colChoices.begin(), colChoices.end(),
                       [&](const std::wstring& sChoice) { return EqualIgnoringCase(sChoice, sClock); });
}

HealthPlan::Request HealthPlan::Read(const PlanTexts& texts) const
{
    Request request;
    request.sClock = Trim(texts.sClock);
    if (request.sClock.empty())
        Refuse(L"Choose a clock file, or \"Each level in turn\".");
    const std::optional<DateTime> dtStart = ParseIso(Trim(texts.sStart));
    if (!dtStart)
        Refuse(L"The start is no date and time such as 2026-11-22 06:00.");
    request.dtStart = *dtStart;
    const std::optional<double> dDays = NumericValue(texts.sDays);
    if (!dDays || !(*dDays >= dFewestDays && *dDays <= dMostDays))
        Refuse(L"Days is a number from 1 to 3660.");
    request.dDays = *dDays;
    return request;
}

Plan HealthPlan::For(const Request& request, const StationSnapshot& station, const Files& cFiles) const
{
    if (!m_sHost.empty() && EqualIgnoringCase(request.sClock, m_sHost))
        return *m_hostPlan;
    if (EqualIgnoringCase(request.sClock, sEachLevel))
    {
        Plan plan = EachLevelInTurn(station, request.dtStart, request.dDays);
        if (plan.Slots().empty())
            Refuse(L"No level has any cuts.");
        return plan;
    }
    if (cFiles.PresenceOf(request.sClock) == Presence::Absent)
        throw RuntimeError(error::FileNotFound, request.sClock + L" is not there.");
    Plan plan;
    plan.LoadClock(cFiles.ReadAll(request.sClock), request.sClock);
    CheckLevels(plan, station, request.sClock);
    return plan;
}

} // namespace ravlo
