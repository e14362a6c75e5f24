// SPDX-License-Identifier: MIT
#include "rotation/FairOrder.h"

#include "rotation/RotationOrder.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// By its key; an entry without one by the object.
std::optional<std::size_t> PositionOf(const Candidate& candidate, const CutCollection& colOrder)
{
    if (!candidate.cKey.Empty())
        return colOrder.PositionOf(candidate.cKey);
    const auto it = std::find(colOrder.begin(), colOrder.end(), candidate.cCut);
    if (it == colOrder.end())
        return std::nullopt;
    return static_cast<std::size_t>(it - colOrder.begin());
}

} // namespace

Candidate LookOrder::Next()
{
    if (!m_start)
    {
        m_colStart = m_cSubCat->SchedCuts();
        m_start.emplace(*m_colStart);
    }
    while (m_next < m_start->Count())
    {
        Candidate candidate = At(m_next++);
        if (candidate.cCut)
            return candidate;
    }
    return {};
}

// The cut that was there at the start; no cut when it has left.
Candidate LookOrder::At(std::size_t position) const
{
    const std::shared_ptr<CutCollection> colOrder = m_cSubCat->SchedCuts();
    const TextKey* pKey = m_start->KeyAt(position);
    if (colOrder == m_colStart && !m_start->Changed())
        return {colOrder->At(position), {}, {}, pKey ? *pKey : TextKey()};
    const std::shared_ptr<Cut>* cFound = pKey ? colOrder->Find(*pKey) : nullptr;
    return cFound ? Candidate{*cFound, {}, {}, *pKey} : Candidate{};
}

Candidate FairOrder::Next()
{
    for (Candidate candidate = LookOrder::Next(); candidate.cCut; candidate = LookOrder::Next())
    {
        if (!IsChosenByAnother(candidate.cKey))
            return candidate;
        m_colPostponed.push_back(std::move(candidate));
    }
    while (m_nextPostponed < m_colPostponed.size())
        if (Candidate& candidate = m_colPostponed[m_nextPostponed++];
            PositionOf(candidate, *m_cSubCat->SchedCuts()))
            return candidate;
    return {};
}

bool FairOrder::IsChosenByAnother(const TextKey& cKey) const
{
    const std::vector<TextKey>* colChosen = m_context.colChosen;
    return colChosen && std::find(colChosen->begin() + static_cast<std::ptrdiff_t>(m_chosenBefore),
                                  colChosen->end(), cKey) != colChosen->end();
}

void FairOrder::Failed(const Candidate& candidate) { MoveToEnd(candidate); }

void FairOrder::Chosen(const Candidate& candidate)
{
    m_start.reset();
    if (m_context.colChosen)
        m_context.colChosen->push_back(candidate.cKey);
    if (PositionOf(candidate, *m_cSubCat->SchedCuts()))
        m_bMovedCuts = SendToBackOfCategory(m_cSubCat.get(), candidate.cCut.get(), m_context);
    MoveToEnd(candidate);
}

// In any case: a cut that the database does not know, or knows under another key, would be chosen again.
void FairOrder::MoveToEnd(const Candidate& candidate)
{
    m_start.reset();
    const std::shared_ptr<CutCollection> colOrder = m_cSubCat->SchedCuts();
    const std::optional<std::size_t> position = PositionOf(candidate, *colOrder);
    if (!position)
        return;
    m_bMovedCuts = true;
    if (*position + 1 < colOrder->Count())
        colOrder->MoveToEnd(*position);
}

} // namespace ravlo
