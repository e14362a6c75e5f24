// SPDX-License-Identifier: MIT
#include "forecast/PassOvers.h"

#include <algorithm>
#include <numeric>

namespace ravlo
{

namespace
{

// In the order in which rules are measured.
constexpr std::array<eRuleViolation, 3> rules{eGlobalTitle, eGlobalArtist, eGlobalAlbum};

} // namespace

void PassOvers::Count(eRuleViolation eRule, CutNumber blocker)
{
    ++m_times[static_cast<std::size_t>(std::find(rules.begin(), rules.end(), eRule) - rules.begin())];
    auto it = std::find_if(m_cases.begin(), m_cases.end(), [&](const Case& other) {
        return other.blocker == blocker && other.eRule == eRule;
    });
    if (it == m_cases.end() && m_cases.size() < mostBlockers)
        it = m_cases.insert(it, {eRule, blocker, 0});
    else if (it == m_cases.end())
    {
        // The rarest one makes room and leaves its number, so that a frequent newcomer is kept.
        it = std::min_element(m_cases.begin(), m_cases.end(),
                              [](const Case& a, const Case& b) { return a.times < b.times; });
        *it = {eRule, blocker, it->times};
    }
    ++it->times;
    std::rotate(it, it + 1, m_cases.end());
}

std::uint32_t PassOvers::Times() const noexcept
{
    return std::accumulate(m_times.begin(), m_times.end(), std::uint32_t{0});
}

eRuleViolation PassOvers::Reason() const noexcept
{
    const auto it = std::max_element(m_times.begin(), m_times.end());
    return *it == 0 ? eNone : rules[static_cast<std::size_t>(it - m_times.begin())];
}

std::optional<CutNumber> PassOvers::Blocker() const noexcept
{
    const eRuleViolation eReason = Reason();
    const Case* pMost = nullptr;
    for (const Case& one : m_cases)
        if (one.eRule == eReason && (!pMost || one.times >= pMost->times))
            pMost = &one;
    return pMost ? std::optional(pMost->blocker) : std::nullopt;
}

} // namespace ravlo
