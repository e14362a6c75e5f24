// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCatRules.h"
#include "model/clsRuleViolation.h"
#include "ports/Clock.h"
#include "rotation/PlayHistory.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

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
// present time when there is no previous cut or it has no play time.
DateTime ReferenceTime(const Cut* cPrevSchedCut, const Clock& cClock);

// Minutes between two moments, never negative: both are rounded to whole seconds and the difference is
// divided in single precision, so that equal distances compare equal.
float MinutesBetween(DateTime dtReference, DateTime dtPlayed);

// One cut to be measured. The texts are the cut's own, read once by whoever asks; the album is read only when
// a rule asks for it.
struct Candidate
{
    std::shared_ptr<Cut> cCut;
    std::wstring_view sArtist;
    std::wstring_view sTitle;
};

// Measures a candidate against the play history, title before artist before album: the first rule broken
// gives Violation and MinsAgo, every broken one its own minutes. reference gives the moment to measure from
// and is asked at most once. The result stands in violation from the first rule on, so that what was found
// before an error is kept.
void MeasureAgainstRules(const SeparationRules& rules, const Candidate& candidate,
                         const PlayHistory& cHistory, const std::function<DateTime()>& reference,
                         clsRuleViolation& violation);

} // namespace ravlo
