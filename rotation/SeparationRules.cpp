// SPDX-License-Identifier: MIT
#include "rotation/SeparationRules.h"

#include <cmath>

namespace ravlo
{

namespace
{

constexpr double dMillisecondsPerSecond = 1000.0;
constexpr double dSecondsPerDay = 86400.0;
constexpr float sngSecondsPerMinute = 60.0F;

// One candidate under measurement.
class Measurement
{
public:
    Measurement(const Candidate& candidate, const std::function<DateTime()>& reference,
                clsRuleViolation& violation) noexcept
        : m_candidate(candidate), m_reference(reference), m_violation(violation)
    {
    }

    // sngOwnMinsAgo is the violation's field for this rule.
    void Check(eRuleViolation eRule, std::int32_t lSeparation, const std::shared_ptr<Cut>& cLastPlayed,
               float& sngOwnMinsAgo)
    {
        if (!cLastPlayed)
            return;
        const float sngMinsAgo = MinutesBetween(Reference(), cLastPlayed->LastPlayed());
        if (!(static_cast<double>(sngMinsAgo) < static_cast<double>(lSeparation)))
            return;
        sngOwnMinsAgo = sngMinsAgo;
        m_violation.Cut = m_candidate.cCut;
        if (m_violation.Violation != eNone)
            return;
        m_violation.Violation = eRule;
        m_violation.MinsAgo = sngMinsAgo;
    }

private:
    DateTime Reference()
    {
        if (!m_dtReference)
            m_dtReference = m_reference();
        return *m_dtReference;
    }

    const Candidate& m_candidate;
    const std::function<DateTime()>& m_reference;
    clsRuleViolation& m_violation;
    std::optional<DateTime> m_dtReference;
};

} // namespace

SeparationRules RulesOf(const clsCatRules& cRules)
{
    SeparationRules rules;
    rules.bIgnore = cRules.IgnoreRules();
    rules.lTitle = cRules.TitleSepMins();
    rules.lArtist = cRules.ArtistSepMins();
    rules.lAlbum = cRules.AlbumSepMins();
    return rules;
}

DateTime ReferenceTime(const Cut* cPrevSchedCut, const Clock& cClock)
{
    const DateTime dtStart = cPrevSchedCut ? cPrevSchedCut->LastPlayed() : 0;
    if (!(dtStart > 0))
        return cClock.Now();
    return dtStart + cPrevSchedCut->DurationmS() / dMillisecondsPerSecond / dSecondsPerDay;
}

float MinutesBetween(DateTime dtReference, DateTime dtPlayed)
{
    const double dSeconds =
        static_cast<double>(WholeSeconds(dtReference)) - static_cast<double>(WholeSeconds(dtPlayed));
    return std::abs(static_cast<float>(dSeconds) / sngSecondsPerMinute);
}

void MeasureAgainstRules(const SeparationRules& rules, const Candidate& candidate,
                         const PlayHistory& cHistory, const std::function<DateTime()>& reference,
                         clsRuleViolation& violation)
{
    if (rules.bIgnore)
        return;
    // Minutes are never below 0, so a separation of 0 and below cannot break and its history is not asked.
    Measurement measurement(candidate, reference, violation);
    if (rules.lTitle > 0)
        measurement.Check(eGlobalTitle, rules.lTitle, cHistory.TitleHistoryCut(candidate.sTitle),
                          violation.TitleMinsAgo);
    if (rules.lArtist > 0)
        measurement.Check(eGlobalArtist, rules.lArtist, cHistory.ArtistHistoryCut(candidate.sArtist),
                          violation.ArtistMinsAgo);
    if (rules.lAlbum > 0)
        measurement.Check(eGlobalAlbum, rules.lAlbum, cHistory.AlbumHistoryCut(candidate.cCut->Album()),
                          violation.AlbumMinsAgo);
}

} // namespace ravlo
