// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "forecast/Snapshot.h"
#include "platform/Files.h"
#include "ui/health/frmHealthView.h"

#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// What is to be simulated, as the user has typed or chosen it. The choices besides a clock file: the plan of
// the host program, if it has one, and each level in turn.
class HealthPlan
{
public:
    static constexpr const wchar_t* sEachLevel = L"Each level in turn";

    // hostPlan: a copy; nothing, or without slots, when the host has none.
    explicit HealthPlan(std::optional<Plan> hostPlan);

    std::vector<std::wstring> Choices() const;
    // What a window that opens begins with: the host's plan, else each level in turn.
    const std::wstring& FirstChoice() const noexcept { return m_sFirst; }
    bool IsChoice(const std::wstring& sClock) const;

    struct Request
    {
        std::wstring sClock;
        DateTime dtStart = 0;
        double dDays = 0;
    };
    // Throws error 5 with one sentence when a text cannot be used.
    Request Read(const PlanTexts& texts) const;
    // The plan of a request for a station. Throws error 5 with one sentence, error 53, and what reading
    // throws.
    Plan For(const Request& request, const StationSnapshot& station, const Files& cFiles) const;

private:
    std::optional<Plan> m_hostPlan;
    std::wstring m_sHost; // its choice; empty without one
    std::wstring m_sFirst;
};

} // namespace ravlo
