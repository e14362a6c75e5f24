// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/CandidateOrder.h"
#include "rotation/Selection.h"

#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// The prescribed walk: the head is examined and goes to the back, chosen or not. A cut that others
// bring to the head again is passed over.
class WalkOrder final : public CandidateOrder
{
public:
    WalkOrder(std::shared_ptr<clsCat> cSubCat, const SelectionContext& context)
        : m_cSubCat(std::move(cSubCat)), m_context(context)
    {
    }

    Candidate Next() override;
    void Considered(const Candidate& candidate) override;
    void Failed(const Candidate& candidate) override;

private:
    // The keys examined so far. A list at first; a set from the first look-up on, which most walks never
    // need.
    class ExaminedKeys
    {
    public:
        // Precondition: the key is not there yet.
        void Add(const TextKey& cKey);
        bool Contains(const TextKey& cKey);

    private:
        std::vector<TextKey> m_colList;
        std::unordered_set<TextKey> m_colSet;
        bool m_bAsked = false;
    };

    void LookForDisturbance();
    void PassOver(const TextKey* pKey);

    const std::shared_ptr<clsCat> m_cSubCat; // kept alive: a host may delete it during a pump
    const SelectionContext& m_context;
    std::shared_ptr<CutCollection> m_colOrder; // at the present step
    std::shared_ptr<CutCollection> m_colFirst; // at the first step
    std::uint64_t m_changes = 0;               // of that one, when only this walk changed it
    bool m_bDisturbed = false;
    bool m_bHeadPending = false; // Next has returned the head, and it is still there
    ExaminedKeys m_colExamined;
};

} // namespace ravlo
