// SPDX-License-Identifier: MIT
#include "rotation/SeparationRules.h"

#include "modscheduler/ModScheduler.h"

#include <cmath>
#include <limits>
#include <optional>

namespace ravlo
{

namespace
{

constexpr double dMillisecondsPerSecond = 1000.0;
constexpr double dSecondsPerDay = 86400.0;
constexpr float sngSecondsPerMinute = 60.0F;

float Minutes(std::int64_t reference, std::int64_t played)
{
    const double dSeconds = static_cast<double>(reference) - static_cast<double>(played);
    return std::abs(static_cast<float>(dSeconds) / sngSecondsPerMinute);
}

// A play to measure: null when there is none.
struct LastPlayed
{
    std::shared_ptr<Cut> cCut;
    TextKey cName = {}; // of the artist, where the artist is measured
};

// One candidate under measurement.
class Measurement
{
public:
    Measurement(const Candidate& candidate, const PlayHistory& cHistory, Reference& reference,
                const ErrorSink& failed) noexcept
        : m_candidate(candidate), m_cHistory(cHistory), m_reference(reference), m_failed(failed)
    {
    }

    // lastPlay returns the play to measure; pOwnMinsAgo is the violation's field for this rule.
    template <class LastPlay>
    void Check(eRuleViolation eRule, std::int32_t lSeparation, float clsRuleViolation::*pOwnMinsAgo,
               LastPlay&& lastPlay)
    {
        // Minutes are never negative, so a separation of 0 or less cannot be broken and needs no history.
        if (lSeparation <= 0)
            return;
        try
        {
            LastPlayed last = lastPlay();
            if (!last.cCut)
                return;
            const std::int64_t start = Start();
            const DateTime dtPlayed = m_cHistory.TimeOf(*last.cCut);
            const float sngMinsAgo = Minutes(start, WholeSeconds(dtPlayed));
            if (static_cast<double>(sngMinsAgo) >= static_cast<double>(lSeparation))
                return;
            m_result.violation.*pOwnMinsAgo = sngMinsAgo;
            if (m_result.breach.eRule == eNone)
                Note({eRule, sngMinsAgo, lSeparation, std::move(last.cCut), dtPlayed, m_reference.Time(),
                      std::move(last.cName)});
        }
        catch (...)
        {
            m_failed(CurrentError());
        }
    }

    // The play of any of the artist's names that is nearest to the start; of equally near ones the first
    // name's.
    LastPlayed LastOfArtist()
    {
        const ArtistNames cNames = m_cHistory.Names(); // kept while cuts are asked: the host may set others
        if (cNames.CreditsOnly())
            return {m_cHistory.ArtistHistoryCut(m_candidate.cArtist), m_candidate.cArtist};
        LastPlayed nearest;
        float sngLeast = std::numeric_limits<float>::infinity();
        for (const TextKey& cName : cNames.KeysOf(m_candidate.cArtist, m_candidate.cTitle))
            if (std::shared_ptr<Cut> cCut = m_cHistory.ArtistHistoryCut(cName))
                if (const std::optional<float> sngMinsAgo = MinsAgo(*cCut);
                    sngMinsAgo && *sngMinsAgo < sngLeast)
                {
                    sngLeast = *sngMinsAgo;
                    nearest = {std::move(cCut), cName};
                }
        return nearest;
    }

    RuleCheck& Result() noexcept { return m_result; }

private:
    void Note(Breach breach)
    {
        m_result.violation.Cut = m_candidate.cCut;
        m_result.violation.Violation = breach.eRule;
        m_result.violation.MinsAgo = breach.MinsAgo;
        m_result.breach = std::move(breach);
    }
    // Nothing when the play cannot be read, which is reported.
    std::optional<float> MinsAgo(const Cut& cPlayed)
    {
        try
        {
            return Minutes(Start(), WholeSeconds(m_cHistory.TimeOf(cPlayed)));
        }
        catch (...)
        {
            m_failed(CurrentError());
            return std::nullopt;
        }
    }
    std::int64_t Start()
    {
        if (!m_bStarted)
            m_start = WholeSeconds(m_reference.Time());
        m_bStarted = true;
        return m_start;
    }

    const Candidate& m_candidate;
    const PlayHistory& m_cHistory;
    Reference& m_reference;
    const ErrorSink& m_failed;
    RuleCheck m_result;
    std::int64_t m_start = 0; // the reference time in whole seconds, once asked for
    bool m_bStarted = false;
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
    const DateTime dtEnd = dtStart + cPrevSchedCut->DurationmS() / dMillisecondsPerSecond / dSecondsPerDay;
    WholeSeconds(dtEnd); // throws when beyond the calendar
    return dtEnd;
}

DateTime Reference::Time()
{
    if (m_dtTime)
        return *m_dtTime;
    try
    {
        m_dtTime = ReferenceTime(m_cPrevSchedCut.get(), m_cClock);
    }
    catch (...)
    {
        m_dtTime = m_cClock.Now();
        m_failed(CurrentError());
    }
    return *m_dtTime;
}

float MinutesBetween(DateTime dtReference, DateTime dtPlayed)
{
    return Minutes(WholeSeconds(dtReference), WholeSeconds(dtPlayed));
}

RuleCheck MeasureAgainstRules(const SeparationRules& rules, const Candidate& candidate,
                              const PlayHistory& cHistory, Reference& reference, const ErrorSink& failed)
{
    if (rules.bIgnore)
        return {};
    Measurement measurement(candidate, cHistory, reference, failed);
    measurement.Check(eGlobalTitle, rules.lTitle, &clsRuleViolation::TitleMinsAgo,
                      [&] { return LastPlayed{cHistory.TitleHistoryCut(candidate.cTitle)}; });
    measurement.Check(eGlobalArtist, rules.lArtist, &clsRuleViolation::ArtistMinsAgo,
                      [&] { return measurement.LastOfArtist(); });
    measurement.Check(eGlobalAlbum, rules.lAlbum, &clsRuleViolation::AlbumMinsAgo,
                      [&] { return LastPlayed{cHistory.AlbumHistoryCut(candidate.cCut->AlbumKey())}; });
    return std::move(measurement.Result());
}

} // namespace ravlo
