// SPDX-License-Identifier: MIT
#include "host/day/PlayBook.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "host/day/Rotation.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::int64_t betweenWritesmS = 1000;
constexpr std::int64_t betweenAttemptsmS = 100;
constexpr std::int64_t patiencemS = 30'000;

} // namespace

void PlayBook::Add(const std::wstring& sKey, DateTime dtWhen)
{
    const TextKey cKey(sKey);
    m_plays[cKey] = dtWhen;
    m_unwritten[cKey] = dtWhen;
}

void PlayBook::Write()
{
    m_cStore.Write();
    m_unwritten.clear();
}

void PlayBook::Tick()
{
    if (Now() - m_tried < betweenWritesmS)
        return;
    try
    {
        Write();
    }
    catch (const RuntimeError&)
    {
        // The plays stay gathered; Settle reports missing ones at the end.
    }
    m_tried = Now();
}

PlayBook::Attempt PlayBook::BringIn()
{
    Attempt attempt;
    const auto Try = [&](const auto& work) {
        try
        {
            work();
            return true;
        }
        catch (const RuntimeError& e)
        {
            attempt.bBusy = e.Number() == error::PermissionDenied;
            attempt.sReason = e.Description();
            return false;
        }
    };
    for (const std::pair<const TextKey, DateTime>& play : m_plays)
    {
        const std::wstring sKey = play.first.Text();
        const DateTime dtWhen = play.second;
        // One refusal is enough: each further one would wait for the same lock.
        if (!m_cStore.Has(sKey, dtWhen) &&
            (!attempt.sReason.empty() || !Try([&] { m_cStore.Put(sKey, dtWhen); })))
            ++attempt.missing;
    }
    if (!Try([&] { Write(); }))
        attempt.missing = std::max(attempt.missing, m_unwritten.size());
    return attempt;
}

std::wstring PlayBook::Settle(const std::function<void()>& waiting)
{
    const std::int64_t end = Now() + patiencemS;
    Attempt attempt = BringIn();
    while (attempt.missing > 0 && attempt.bBusy && Now() < end)
    {
        waiting();
        m_timing.sleep(betweenAttemptsmS);
        attempt = BringIn();
    }
    return attempt.missing == 0 ? std::wstring()
                                : CountOf(attempt.missing, L"play is", L"plays are") +
                                      L" not in the database: " + attempt.sReason;
}

} // namespace ravlo
