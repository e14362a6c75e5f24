// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "rotation/SeparationRules.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ravlo
{

// What a selection does, step by step: which cuts it examined, in which order, with what outcome. The debug
// log is one rendering of it.
enum class StepKind
{
    Asked,            // a cut of the level was requested
    NoCategory,       // ... but no level was given
    LevelZero,        // ... but a main category was given
    LevelEmpty,       // ... but the level is empty
    Considered,       // the head is a candidate; no opener was requested
    OpenerConsidered, // the head is an opener, as requested, and a candidate
    NotAnOpener,      // an opener was requested and the head is none
    SentToBack,       // the cut is now at the end of the order
    NotSentToBack,    // the level does not contain the database's cut for it
    PassedOver,       // reached the head a second time in this walk because others moved cuts; no step
    Measured,         // the candidate was measured; pViolation is the result
    AllBreakRules,    // the walk ended without a choice
    NothingLeft,      // ... and without a violator to fall back on
    OnlyViolators,    // ... but with violators
    ViolatorChosen,   // the violator with the largest separation; pViolation
    LevelOfChoice,    // a cut was chosen in this level
    AverageRunTime,   // of the level of the choice
    Chosen,           // the cut that goes to the host
};

// Texts and what is pointed to are valid only during the sink's call. Members that do not concern the step
// are empty.
struct TraceStep
{
    StepKind eKind = StepKind::Asked;
    std::wstring_view sCatName;
    std::int32_t lCatLevel = 0;
    std::wstring_view sKey; // of the cut the step is about
    std::wstring_view sArtist;
    std::wstring_view sTitle;
    const Candidate* pCandidate = nullptr; // the level's own cut, of each step that is about a candidate
    const clsRuleViolation* pViolation = nullptr;
    const Breach* pBreach = nullptr; // Measured: eNone when no rule is broken
    double dTitleMinsKey =
        0; // Measured: TitleMinsAgo rounded to three decimals, by which candidates are listed
    std::int32_t lAverageRunTimemS = 0;
};

using TraceSink = std::function<void(const TraceStep&)>;

TraceStep StepInLevel(StepKind eKind, const clsCat& cSubCat) noexcept;

// Returns the debug log's line for a step; empty for a step the log omits.
std::wstring LogText(const TraceStep& step);

} // namespace ravlo
