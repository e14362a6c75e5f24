// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/SeparationRules.h"

namespace ravlo
{

// The cuts of a level in the order in which one pick examines them, and which of them it moves, and when.
// Others may change the level while the pick runs.
class CandidateOrder
{
public:
    virtual ~CandidateOrder() = default;

    // Returns the next cut to examine and its key, without its texts; no cut when none is left. No cut comes
    // twice.
    virtual Candidate Next() = 0;
    // The candidate that Next returned last was read, and the trace knows of it.
    virtual void Considered(const Candidate&) {}
    // The candidate has failed, which ends the pick. It must not end every later one as well.
    virtual void Failed(const Candidate&) {}
    // The candidate was chosen; the trace will say so next.
    virtual void Chosen(const Candidate&) {}

    // Whether this pick has moved a cut.
    bool MovedCuts() const noexcept { return m_bMovedCuts; }

protected:
    bool m_bMovedCuts = false;
};

} // namespace ravlo
