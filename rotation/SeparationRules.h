// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "model/clsCatRules.h"
#include "model/clsRuleViolation.h"
#include "platform/Clock.h"
#include "rotation/PlayHistory.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace ravlo
{

// The rules to measure a candidate against. Minutes; 0 and below are never broken.
struct SeparationRules
{
    bool bIgnore = false;
    std::int32_t lTitle = 0;
    std::int32_t lArtist = 0;
    std::int32_t lAlbum = 0;
};

// Returns the present values; title and artist fall back to the global separations, album does not.
SeparationRules RulesOf(const clsCatRules& cRules);

// Returns when the requested cut will start: the previous cut's play time plus its duration, or the present
// time when there is no previous cut or it has no play time. Throws errors of the previous cut, and error 5
// when the result is beyond the calendar.
DateTime ReferenceTime(const Cut* cPrevSchedCut, const Clock& cClock);

using ErrorSink = std::function<void(const RuntimeError& cError)>;

// The reference time of one walk, determined on first use and then kept: all candidates are measured from the
// same moment. When the previous cut cannot be read, reports that and uses the present time: a pick measured
// from now is better than one without rules.
class Reference
{
public:
    Reference(std::shared_ptr<Cut> cPrevSchedCut, const Clock& cClock, ErrorSink failed)
        : m_cPrevSchedCut(std::move(cPrevSchedCut)), m_cClock(cClock), m_failed(std::move(failed))
    {
    }
    DateTime Time();

private:
    std::shared_ptr<Cut> m_cPrevSchedCut;
    const Clock& m_cClock;
    ErrorSink m_failed;
    std::optional<DateTime> m_dtTime;
};

// Minutes between two moments, never negative. Both are rounded to whole seconds and the difference is
// divided in single precision, so that equal distances compare equal.
float MinutesBetween(DateTime dtReference, DateTime dtPlayed);

// One cut to measure. Artist and title are read once by the caller; the album is read only when a rule needs
// it.
struct Candidate
{
    std::shared_ptr<Cut> cCut;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cKey = {}; // in the level's order; empty when it has none there
};

// The first rule a candidate breaks, and the play in its way.
struct Breach
{
    eRuleViolation eRule = eNone;
    float MinsAgo = 0;
    std::int32_t lRequiredMins = 0;
    std::shared_ptr<Cut> cBlockedBy; // the history's cut
    DateTime dtPlayed = 0;           // when that cut played, as measured
    DateTime dtStart = 0;            // the reference time
    TextKey cName;                   // artist rule: the artist's name that breaks it
};

struct RuleCheck
{
    clsRuleViolation violation;
    Breach breach; // eNone when no rule is broken
};

// Measures a candidate against the play history, title before artist before album. The first broken rule sets
// Violation and MinsAgo and is the breach; every broken rule sets its own minutes. Asks for the reference
// time only when there is a play to measure. For the artist rule every name of the credit is looked up,
// and the play nearest to the reference time counts. A play or text that cannot be read breaks no rule: its
// error goes to failed and the other rules are still measured.
RuleCheck MeasureAgainstRules(const SeparationRules& rules, const Candidate& candidate,
                              const PlayHistory& cHistory, Reference& reference, const ErrorSink& failed);

} // namespace ravlo
