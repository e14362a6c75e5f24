// SPDX-License-Identifier: MIT
#include "rotation/WalkOrder.h"

#include "rotation/RotationOrder.h"

#include <utility>

namespace ravlo
{

namespace
{

// A cut that the database does not know, or knows under another key, would stay at the head and be examined
// forever. Returns true when it was moved.
bool MoveHeadToEnd(CutCollection& colOrder, const Cut& cHead)
{
    if (colOrder.Empty() || colOrder.At(0).get() != &cHead)
        return false;
    colOrder.MoveToEnd(0);
    return true;
}

} // namespace

void WalkOrder::ExaminedKeys::Add(const TextKey& cKey)
{
    if (m_bAsked)
        m_colSet.insert(cKey);
    else
        m_colList.push_back(cKey);
}

bool WalkOrder::ExaminedKeys::Contains(const TextKey& cKey)
{
    if (!std::exchange(m_bAsked, true))
        m_colSet.insert(m_colList.begin(), m_colList.end());
    return m_colSet.contains(cKey);
}

// Passes over the cuts at the head that were examined already, because fresh ones may follow.
Candidate WalkOrder::Next()
{
    // Read again at each step: during a pump the level may have been emptied, re-ordered or deleted.
    m_colOrder = m_cSubCat->SchedCuts();
    LookForDisturbance();
    for (std::size_t passed = 0; passed < m_colOrder->Count(); ++passed)
    {
        m_bMovedCuts = true;
        const TextKey* pKey = m_colOrder->KeyAt(0);
        if (m_colOrder->At(0) && !(pKey && m_bDisturbed && m_colExamined.Contains(*pKey)))
        {
            if (pKey)
                m_colExamined.Add(*pKey);
            m_bHeadPending = true;
            return {m_colOrder->At(0), {}, {}, pKey ? *pKey : TextKey()};
        }
        PassOver(pKey);
    }
    return {};
}

// While only this walk moves cuts, no cut is at the head twice and there is nothing to look up. Passing
// over a cut counts as a disturbance too: it leaves more steps than fresh cuts.
void WalkOrder::LookForDisturbance()
{
    if (!m_colFirst)
    {
        m_colFirst = m_colOrder;
        m_changes = m_colOrder->Changes();
    }
    else if (m_colOrder != m_colFirst || m_colOrder->Changes() != m_changes)
        m_bDisturbed = true;
}

void WalkOrder::PassOver(const TextKey* pKey)
{
    TraceStep step = StepInLevel(StepKind::PassedOver, *m_cSubCat);
    if (pKey)
        step.sKey = pKey->Text();
    m_context.note(step);
    m_colOrder->MoveToEnd(0);
}

// The entry moves in any case: the candidate can be scheduled even when the database fails.
void WalkOrder::Considered(const Candidate& candidate)
{
    m_bHeadPending = false;
    const bool bSent = SendToBackOfCategory(m_cSubCat.get(), candidate.cCut.get(), m_context);
    const bool bMoved = MoveHeadToEnd(*m_colOrder, *candidate.cCut);
    m_changes += (bSent ? 1u : 0u) + (bMoved ? 1u : 0u);
    if (bSent && bMoved)
        m_bDisturbed = true; // another cut went to the back, behind some that were examined
}

void WalkOrder::Failed(const Candidate& candidate)
{
    if (m_bHeadPending)
        MoveHeadToEnd(*m_colOrder, *candidate.cCut);
}

} // namespace ravlo
