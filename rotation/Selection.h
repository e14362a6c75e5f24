// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "model/clsRuleViolation.h"
#include "platform/Clock.h"
#include "rotation/PlayHistory.h"
#include "rotation/SelectionTrace.h"
#include "rotation/SeparationRules.h"

#include <functional>
#include <memory>
#include <vector>

namespace ravlo
{

// How an error is reported to the operator.
enum class ErrorReport
{
    Critical, // the critical box; the text names the operation
    Handled,  // the "Handled Error!" box under a location text
    LogOnly,
};

// Everything a selection needs besides the level. It uses nothing else, so it also runs on a copy of a level,
// with its own clock and without a log. Everything referenced must outlive the call, also when other calls
// come in during a pump.
struct SelectionContext
{
    const PlayHistory& cHistory;
    std::shared_ptr<const DataBase> cDataBase; // null when none is known
    const Clock& cClock;
    std::function<void()> pump; // lets the host's user interface run, which may change anything; empty: never
    TraceSink note;             // receives each step as it happens
    std::function<void(ErrorReport eHow, const wchar_t* sWhere, const RuntimeError& cError)> report;
    bool bFairRotation = false; // otherwise the prescribed walk
    // Where fair picks note the cuts they choose, so that a pick that pumps does not choose the cut of one
    // made during the pump; null: nowhere.
    std::vector<TextKey>* colChosen = nullptr;
    // The rules in force in a level. A simulation gives it others than its own.
    std::function<SeparationRules(clsCat&)> rules = [](clsCat& cSubCat) { return RulesOf(*cSubCat.Rules()); };
};

// The context of a scheduler on air: its clock, host loop and boxes, with its debug log as the trace's sink.
SelectionContext LiveContext(ModScheduler& cMod, const PlayHistory& cHistory,
                             std::shared_ptr<const DataBase> cDataBase);

// Returns which rule a candidate breaks, by how much, and what is in its way. An error while measuring is
// reported (shown when bShowErrors is true, which the call then clears, else logged) and the other rules are
// still measured: a play that cannot be read breaks no rule, since a cut too soon is better than silence.
RuleCheck ViolatesRules(clsCat& cSubCat, const Candidate& candidate, Reference& reference,
                        const SelectionContext& context, bool& bShowErrors);

// What a selection found.
struct Pick
{
    std::shared_ptr<Cut> cCut; // a copy that belongs to no database, or a placeholder; never null
    CutKind eKind = eKindNothingSchedulable;
    bool bMovedCuts = false; // whether the order of the level was touched
};

// Examines the level's cuts from its head and returns a copy of the first that is an opener, when one is
// requested, and breaks no rule (kind 0). If there is none: the violator with the largest separation (kinds
// 14, 15, 18), the first examined among those whose minutes read the same. If there is none either: a
// placeholder (7, 11, 12, 13). The walk sends every examined cut to the back (WalkOrder.h), fair rotation
// only the chosen one (FairOrder.h).
//
// Pumps every fifth step. Takes at most as many steps as the level had cuts at the start and examines each
// cut once. An error is reported and gives kind 11; the cut that caused it goes to the back.
Pick NextCutFromCategory(std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                         const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context);

class CandidateOrder;

// The same with an order of its own.
Pick PickInOrder(CandidateOrder& cOrder, std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                 const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context);

} // namespace ravlo
