// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/CandidateOrder.h"
#include "rotation/Selection.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace ravlo
{

// Examines the cuts in the order they have at the first step, and moves none. Cuts that leave the level
// during the pick are skipped; those that join it wait for the next pick.
class LookOrder : public CandidateOrder
{
public:
    explicit LookOrder(std::shared_ptr<clsCat> cSubCat) : m_cSubCat(std::move(cSubCat)) {}

    Candidate Next() override;

protected:
    const std::shared_ptr<clsCat> m_cSubCat; // kept alive: a host may delete it during a pump
    // The order at the first step. Reset before this pick moves a cut, which would copy it.
    std::optional<CutCollection::OrderSnapshot> m_start;

private:
    Candidate At(std::size_t position) const;

    std::shared_ptr<CutCollection> m_colStart;
    std::size_t m_next = 0;
};

// Fair rotation: only the cut that is chosen goes to the back. One that is passed over keeps its place and is
// tried first at the next pick. A cut that fails goes to the back too. A cut that another pick chooses while
// this one pumps is examined last: it is about to play.
class FairOrder final : public LookOrder
{
public:
    FairOrder(std::shared_ptr<clsCat> cSubCat, const SelectionContext& context)
        : LookOrder(std::move(cSubCat)), m_context(context),
          m_chosenBefore(context.colChosen ? context.colChosen->size() : 0)
    {
    }

    Candidate Next() override;
    void Failed(const Candidate& candidate) override;
    void Chosen(const Candidate& candidate) override;

private:
    bool IsChosenByAnother(const TextKey& cKey) const;
    void MoveToEnd(const Candidate& candidate);

    const SelectionContext& m_context;
    const std::size_t m_chosenBefore;      // in m_context.colChosen
    std::vector<Candidate> m_colPostponed; // in the order they would have been examined
    std::size_t m_nextPostponed = 0;
};

} // namespace ravlo
