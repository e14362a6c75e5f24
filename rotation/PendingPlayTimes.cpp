// SPDX-License-Identifier: MIT
#include "rotation/PendingPlayTimes.h"

#include "base/ScopedFlag.h"
#include "modscheduler/ModScheduler.h"

#include <utility>

namespace ravlo
{

namespace
{

// A locked database takes a quarter of a second to refuse: trying more often would delay the plays.
constexpr std::uint32_t lMillisecondsBetweenTries = 1'000;

std::optional<DateTime> StoredTimeOf(const Cut& cCut)
{
    try
    {
        return cCut.LastPlayed();
    }
    catch (...)
    {
        return std::nullopt;
    }
}

void WriteIfLater(Cut& cCut, DateTime dtPlayed)
{
    const std::optional<DateTime> dtStored = StoredTimeOf(cCut);
    if (!dtStored || *dtStored < dtPlayed)
        cCut.SetLastPlayed(dtPlayed);
}

} // namespace

DateTime PendingPlayTimes::TimeOf(const Cut& cCut) const
{
    if (!m_colPending.Empty())
    {
        if (const Pending* pPending = m_colPending.Find(cCut.Key()))
            return pPending->dtPlayed;
    }
    for (const Left& left : m_colLeft)
        if (left.pending.cCut.get() == &cCut)
            return left.pending.dtPlayed;
    return cCut.LastPlayed();
}

bool PendingPlayTimes::IsDue() const noexcept
{
    return Count() == 0 || m_cClock.TickCount() - m_lRefusedAt >= lMillisecondsBetweenTries;
}

std::optional<RuntimeError> PendingPlayTimes::Write(const std::shared_ptr<Cut>& cCut, DateTime dtPlayed,
                                                    const DataBase& cDataBase)
{
    const TextKey cKey = cCut->Key();
    if (!IsDue())
    {
        Keep(cKey, cCut, dtPlayed);
        return std::nullopt;
    }
    try
    {
        cCut->SetLastPlayed(dtPlayed);
    }
    catch (...)
    {
        const RuntimeError cRefusal = CurrentError();
        Keep(cKey, cCut, dtPlayed);
        m_lRefusedAt = m_cClock.TickCount();
        return cRefusal;
    }
    m_colPending.Remove(cKey); // the pending time of an earlier play is obsolete
    return WriteAll(cDataBase, 1);
}

void PendingPlayTimes::Keep(const TextKey& cKey, const std::shared_ptr<Cut>& cCut, DateTime dtPlayed)
{
    Pending pending{cCut, dtPlayed};
    if (Pending* pEarlier = m_colPending.Find(cKey))
        *pEarlier = std::move(pending);
    else
        m_colPending.Add(cKey, std::move(pending));
}

std::optional<RuntimeError> PendingPlayTimes::WriteAll(const DataBase& cDataBase, std::size_t mostRefusals)
{
    std::optional<RuntimeError> cRefusal;
    if (m_bWriting || Count() == 0)
        return cRefusal;
    const ScopedFlag cWriting(m_bWriting);

    std::vector<TextKey> colKeys;
    colKeys.reserve(m_colPending.Count());
    for (std::size_t i = 0; i < m_colPending.Count(); ++i)
        colKeys.push_back(*m_colPending.KeyAt(i));
    std::size_t refusals = 0;
    for (const TextKey& cKey : colKeys)
    {
        try
        {
            WriteOne(cKey, cDataBase);
        }
        catch (...)
        {
            cRefusal = CurrentError();
            m_colPending.SendToBack(cKey);
            m_lRefusedAt = m_cClock.TickCount();
            if (++refusals >= mostRefusals)
                return cRefusal;
        }
    }
    for (Left& left : std::exchange(m_colLeft, {}))
    {
        try
        {
            if (refusals < mostRefusals)
            {
                WriteIfLater(*OwnOf(left, cDataBase), left.pending.dtPlayed);
                continue;
            }
        }
        catch (...)
        {
            cRefusal = CurrentError();
            m_lRefusedAt = m_cClock.TickCount();
            ++refusals;
        }
        m_colLeft.push_back(std::move(left));
    }
    return cRefusal;
}

void PendingPlayTimes::WriteOne(const TextKey& cKey, const DataBase& cDataBase)
{
    const Pending* pPending = m_colPending.Find(cKey);
    if (!pPending)
        return; // another call has written it
    const Pending pending = *pPending;
    // The database may have been reopened since, with other objects for the same cuts. When it no longer has
    // the cut, the object we hold receives the time.
    std::shared_ptr<Cut> cOwn = cDataBase.CutByKey(cKey);
    if (!cOwn)
        cOwn = pending.cCut;
    WriteIfLater(*cOwn, pending.dtPlayed);
    pPending = m_colPending.Find(cKey);
    if (pPending && pPending->dtPlayed == pending.dtPlayed)
        m_colPending.Remove(cKey);
}

void PendingPlayTimes::Leave(const std::shared_ptr<const DataBase>& cLeft)
{
    for (std::size_t i = 0; i < m_colPending.Count(); ++i)
        m_colLeft.push_back({*m_colPending.KeyAt(i), m_colPending.At(i), cLeft});
    m_colPending.Clear();
}

// The cut to write a time left behind for. When its database no longer answers, it was closed; the present
// one may be the same database reopened. Then its cut of that key has the same number, while another
// library's has a different one.
std::shared_ptr<Cut> PendingPlayTimes::OwnOf(const Left& left, const DataBase& cPresent)
{
    try
    {
        std::shared_ptr<Cut> cOwn = left.cDataBase->CutByKey(left.cKey);
        return cOwn ? cOwn : left.pending.cCut;
    }
    catch (...)
    {
        std::shared_ptr<Cut> cSame = cPresent.CutByKey(left.cKey);
        if (!cSame || cSame->ID() != left.pending.cCut->ID())
            throw;
        return cSame;
    }
}

} // namespace ravlo
