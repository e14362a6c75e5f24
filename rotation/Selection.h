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

namespace ravlo
{

// How an error is told to the operator.
enum class ErrorReport
{
    Critical, // the critical box; the text names the operation
    Handled,  // the "Handled Error!" box under a location text
    LogOnly,
};

// Everything a selection is given besides the level it walks. It touches nothing else, so it runs as well on
// a copy of a level with a clock of its own and without a log. What the references name must outlive the
// call, also when other calls come in at a pump.
struct SelectionContext
{
    const PlayHistory& cHistory;
    std::shared_ptr<const DataBase> cDataBase; // null when none is known
    const Clock& cClock;
    std::function<void()> pump; // lets the host's user interface run; anything may change meanwhile
    TraceSink note;             // receives each step as it happens
    std::function<void(ErrorReport eHow, const wchar_t* sWhere, const RuntimeError& cError)> report;
};

// The world of a scheduler on air: its clock and host loop, its debug log as the trace's sink, its boxes.
SelectionContext LiveContext(ModScheduler& cMod, const PlayHistory& cHistory,
                             std::shared_ptr<const DataBase> cDataBase);

// Which rule a candidate breaks, and by how much. An error while measuring is reported (shown once in a walk,
// logged when bShowErrors is false; the call clears it) and the other rules are measured all the same: a play
// that cannot be read breaks no rule, since a cut too soon is better than silence. Cut is set only when a
// rule is broken.
clsRuleViolation ViolatesRules(clsCat& cSubCat, const Candidate& candidate, Reference& reference,
                               const SelectionContext& context, bool& bShowErrors);

// What a selection found.
struct Pick
{
    std::shared_ptr<Cut> cCut; // a copy that belongs to no database, or a placeholder; never null
    bool bMovedCuts = false;   // whether the order of the level was touched
};

// Walks the level from its head, sends every cut it examines to the back, and gives a copy of the first one
// that is an opener when one is asked for and breaks no rule (kind 0); else of the one with the most
// separation among those that break one (kinds 14, 15, 18), the first examined of several whose minutes read
// the same; else a placeholder (7, 11, 12, 13). Every fifth step pumps. At most as many steps as the level
// had cuts at the start, each cut examined once, whatever happens at a pump; a cut that others bring to the
// head again is passed over, which is no step. An error is reported and gives kind 11; the cut that caused it
// does not stay at the head.
Pick NextCutFromCategory(std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                         const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context);

} // namespace ravlo
