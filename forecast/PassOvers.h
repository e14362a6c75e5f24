// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Snapshot.h"
#include "model/clsRuleViolation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ravlo
{

// How often a cut was passed over because of a rule, and for whose plays. Exact while at most mostBlockers
// cuts were in its way. With more, a cut that was in its way in more than one of mostBlockers cases is still
// found. Without this limit, years of plays of a level with a single artist would fill the memory.
class PassOvers
{
public:
    static constexpr std::size_t mostBlockers = 64;

    // Precondition: eRule is one of the three rules.
    void Count(eRuleViolation eRule, CutNumber blocker);

    std::uint32_t Times() const noexcept;
    // The most frequent reason, of several the first of title, artist and album; eNone without any.
    eRuleViolation Reason() const noexcept;
    // Whose play was most often the cause under that rule, of several the latest; nothing without any.
    std::optional<CutNumber> Blocker() const noexcept;

private:
    struct Case
    {
        eRuleViolation eRule = eNone;
        CutNumber blocker = 0;
        std::uint32_t times = 0;
    };
    std::array<std::uint32_t, 3> m_times{}; // by rule
    std::vector<Case> m_cases;              // the latest last
};

} // namespace ravlo
