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
#include <utility>

namespace ravlo
{

// The rules a candidate is measured against, as values. Minutes; 0 and below never break.
struct SeparationRules
{
    bool bIgnore = false;
    std::int32_t lTitle = 0;
    std::int32_t lArtist = 0;
    std::int32_t lAlbum = 0;
};

// What a rules object says now: title and artist fall back to the global separations, the album does not.
SeparationRules RulesOf(const clsCatRules& cRules);

// The moment at which the requested cut is to start: the previous cut's play time plus its duration, or the
// present time when there is no previous cut or it has no play time. Errors of the previous cut are thrown,
// and error 5 when that moment lies beyond the calendar.
DateTime ReferenceTime(const Cut* cPrevSchedCut, const Clock& cClock);

using ErrorSink = std::function<void(const RuntimeError& cError)>;

// The reference times of one walk. A previous cut that cannot be used is told once and not asked again: the
// present time serves instead, since a pick without any rule is worse than one measured from now.
class Reference
{
public:
    Reference(std::shared_ptr<Cut> cPrevSchedCut, const Clock& cClock, ErrorSink failed)
        : m_cPrevSchedCut(std::move(cPrevSchedCut)), m_cClock(cClock), m_failed(std::move(failed))
    {
    }
    DateTime Time();

private:
    std::shared_ptr<Cut> m_cPrevSchedCut; // null once it has failed
    const Clock& m_cClock;
    ErrorSink m_failed;
};

// Minutes between two moments, never negative: both are rounded to whole seconds and the difference is
// divided in single precision, so that equal distances compare equal.
float MinutesBetween(DateTime dtReference, DateTime dtPlayed);

// One cut to be measured. The texts are the cut's own, read once by whoever asks; the album is read only when
// a rule asks for it.
struct Candidate
{
    std::shared_ptr<Cut> cCut;
    TextKey cArtist;
    TextKey cTitle;
};

// Measures a candidate against the play history, title before artist before album: the first rule broken
// gives Violation and MinsAgo, every broken one its own minutes. The reference time is asked for at most
// once, and only when there is a play to measure. A play or text that cannot be read breaks no rule: the
// error is given to failed and the other rules are measured all the same.
clsRuleViolation MeasureAgainstRules(const SeparationRules& rules, const Candidate& candidate,
                                     const PlayHistory& cHistory, Reference& reference,
                                     const ErrorSink& failed);

} // namespace ravlo
