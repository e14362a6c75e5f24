// SPDX-License-Identifier: MIT
#include "rotation/Selection.h"

#include "base/Text.h"
#include "rotation/FairOrder.h"
#include "rotation/Placeholder.h"
#include "rotation/WalkOrder.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t stepsPerPump = 5;
// Greater than any real value; used when the title breaks no rule.
constexpr float sngNoTitlePlay = 1'000'000.0F;
constexpr const wchar_t* sViolatesRulesWhere = L"ViolatesRules [schedman]";
constexpr const wchar_t* sPreviousCutWhere = L"ViolatesRules [schedman], previous cut";
constexpr const wchar_t* sNextCutFromCategoryTitle = L"Error in NextCutFromCategory [cSchedMan]";

// The violator to choose when every candidate breaks a rule. Violators whose minutes read the same as text
// count as equal, and the first one examined wins. The text grows with the minutes, so keeping the largest so
// far is enough: a later violator replaces it only when its minutes are larger and read differently.
class BestViolator
{
public:
    bool Replaces(const clsRuleViolation& violation) const
    {
        return !m_best.Cut || (violation.MinsAgo > m_best.MinsAgo &&
                               SingleText(violation.MinsAgo) != SingleText(m_best.MinsAgo));
    }
    void Keep(const Candidate& candidate, const clsRuleViolation& violation, std::shared_ptr<Cut> cCopy)
    {
        m_original = candidate;
        m_best = violation;
        m_best.Cut = std::move(cCopy);
    }
    // Its Cut is the copy; null when there was no violator.
    const clsRuleViolation& Best() const noexcept { return m_best; }
    // The level's own cut for it.
    const Candidate& Original() const noexcept { return m_original; }

private:
    Candidate m_original;
    clsRuleViolation m_best;
};

CutKind KindOf(const clsRuleViolation& violation) noexcept
{
    switch (violation.Violation)
    {
    case eGlobalTitle:
        return eKindTitleViolation;
    case eGlobalAlbum:
        return eKindAlbumViolation;
    default:
        return eKindArtistViolation;
    }
}

std::shared_ptr<Cut> CopyOf(const Cut& cCut)
{
    std::shared_ptr<Cut> cCopy = cCut.CloneCut();
    if (!cCopy)
        throw RuntimeError(error::ObjectNotSet);
    return cCopy;
}

// One pick from a level. The order in which it examines the cuts is given.
class Selection
{
public:
    Selection(CandidateOrder& cOrder, std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
              std::shared_ptr<Cut> cPrevSchedCut, const SelectionContext& context)
        : m_order(cOrder), m_cSubCat(std::move(cSubCat)), m_bMustBeOpener(bMustBeOpener), m_context(context),
          m_reference(std::move(cPrevSchedCut), context.cClock, [this](const RuntimeError& cError) {
              m_context.report(ErrorReport::LogOnly, sPreviousCutWhere, cError);
          })
    {
    }

    // Throws the errors of cuts.
    Pick Run()
    {
        m_context.note(TraceStep{});
        if (!m_cSubCat)
            return Refused(StepKind::NoCategory, eKindNoCategory);
        if (m_cSubCat->CatLevel() == 0)
            return Refused(StepKind::LevelZero, eKindLevelZero);
        const std::size_t cuts = m_cSubCat->SchedCuts()->Count();
        if (cuts == 0)
            return Refused(StepKind::LevelEmpty, eKindLevelEmpty);

        for (std::size_t i = 1; i <= cuts; ++i)
        {
            if (i % stepsPerPump == 0 && m_context.pump)
                m_context.pump();
            Candidate candidate = m_order.Next();
            if (!candidate.cCut)
                break;
            if (std::optional<Pick> pick = Guarded(candidate, [&] { return Examine(candidate); }))
                return std::move(*pick);
        }
        return PickFromViolators();
    }

    // The placeholder for a pick that found nothing or failed; never null.
    Pick Nothing(CutKind eKind) const
    {
        PlaceholderTexts texts;
        texts.eKind = eKind;
        if (m_cSubCat && (eKind == eKindLevelEmpty || eKind == eKindNothingSchedulable))
        {
            texts.sCatName = m_cSubCat->CatName();
            texts.lCatLevel = m_cSubCat->CatLevel();
        }
        return {MakePlaceholder(texts, m_context.cDataBase.get()), eKind};
    }

private:
    // A cut that fails must not stop every later pick as well.
    template <class Body> auto Guarded(const Candidate& candidate, Body&& body) -> decltype(body())
    {
        try
        {
            return body();
        }
        catch (...)
        {
            m_order.Failed(candidate);
            throw;
        }
    }

    // One step. Nothing when the candidate is no opener, as requested, or breaks a rule.
    std::optional<Pick> Examine(Candidate& candidate)
    {
        candidate.cArtist = candidate.cCut->ArtistKey();
        candidate.cTitle = candidate.cCut->TitleKey();
        StepKind eStep = StepKind::Considered;
        if (m_bMustBeOpener)
            eStep = candidate.cCut->Opener() ? StepKind::OpenerConsidered : StepKind::NotAnOpener;
        m_context.note(StepAbout(eStep, candidate));
        m_order.Considered(candidate);
        return eStep == StepKind::NotAnOpener ? std::nullopt : Measure(candidate);
    }

    std::optional<Pick> Measure(const Candidate& candidate)
    {
        RuleCheck check = ViolatesRules(*m_cSubCat, candidate, m_reference, m_context, m_bShowErrors);
        clsRuleViolation& violation = check.violation;
        if (violation.TitleMinsAgo == 0)
            violation.TitleMinsAgo = sngNoTitlePlay;

        TraceStep step = StepAbout(StepKind::Measured, candidate);
        step.pViolation = &violation;
        step.pBreach = &check.breach;
        step.dTitleMinsKey = std::nearbyint(static_cast<double>(violation.TitleMinsAgo) * 1000.0) / 1000.0;
        m_context.note(step);

        if (violation.Violation == eNone)
            return Chosen(candidate, CopyOf(*candidate.cCut), eKindChosen);
        // Copied now: the cut may change during the next pump.
        if (m_best.Replaces(violation))
            m_best.Keep(candidate, violation, CopyOf(*candidate.cCut));
        return std::nullopt;
    }

    Pick PickFromViolators()
    {
        m_context.note(StepInLevel(StepKind::AllBreakRules, *m_cSubCat));
        const clsRuleViolation& best = m_best.Best();
        if (!best.Cut)
            return Refused(StepKind::NothingLeft, eKindNothingSchedulable);

        m_context.note(StepInLevel(StepKind::OnlyViolators, *m_cSubCat));
        return Guarded(m_best.Original(), [&] {
            const std::wstring sArtist = best.Cut->Artist();
            const std::wstring sTitle = best.Cut->Title();
            TraceStep step = StepAbout(StepKind::ViolatorChosen, m_best.Original());
            step.sArtist = sArtist;
            step.sTitle = sTitle;
            step.pViolation = &best;
            m_context.note(step);
            return Chosen(m_best.Original(), best.Cut, KindOf(best));
        });
    }

    Pick Chosen(const Candidate& candidate, std::shared_ptr<Cut> cCopy, CutKind eKind)
    {
        cCopy->SetKindCode(eKind);
        m_order.Chosen(candidate);
        m_context.note(StepInLevel(StepKind::LevelOfChoice, *m_cSubCat));
        TraceStep average = StepInLevel(StepKind::AverageRunTime, *m_cSubCat);
        average.lAverageRunTimemS = m_cSubCat->AverageRunTimemS();
        m_context.note(average);
        const TextKey cArtist = cCopy->ArtistKey();
        const TextKey cTitle = cCopy->TitleKey();
        TraceStep chosen = StepAbout(StepKind::Chosen, candidate);
        chosen.sArtist = cArtist.Text();
        chosen.sTitle = cTitle.Text();
        m_context.note(chosen);
        return {std::move(cCopy), eKind};
    }

    Pick Refused(StepKind eStep, CutKind eKind)
    {
        TraceStep step = m_cSubCat ? StepInLevel(eStep, *m_cSubCat) : TraceStep{};
        step.eKind = eStep;
        m_context.note(step);
        return Nothing(eKind);
    }

    TraceStep StepAbout(StepKind eKind, const Candidate& candidate) const noexcept
    {
        TraceStep step = StepInLevel(eKind, *m_cSubCat);
        step.sArtist = candidate.cArtist.Text();
        step.sTitle = candidate.cTitle.Text();
        step.pCandidate = &candidate;
        return step;
    }

    CandidateOrder& m_order;
    const std::shared_ptr<clsCat> m_cSubCat; // kept alive: a host may delete it during a pump
    const bool m_bMustBeOpener;
    const SelectionContext& m_context;
    Reference m_reference;
    BestViolator m_best;
    bool m_bShowErrors = true;
};

} // namespace

SelectionContext LiveContext(ModScheduler& cMod, const PlayHistory& cHistory,
                             std::shared_ptr<const DataBase> cDataBase)
{
    const auto note = [&cMod](const TraceStep& step) {
        const std::wstring sLine = LogText(step);
        if (!sLine.empty())
            cMod.WriteDebugLog(sLine);
    };
    const auto report = [&cMod](ErrorReport eHow, const wchar_t* sWhere, const RuntimeError& cError) {
        if (eHow == ErrorReport::Critical)
            cMod.ShowCriticalError(sWhere, cError);
        else
            cMod.DISPLAYERROR(sWhere, eHow == ErrorReport::Handled, cError);
    };
    return SelectionContext{
        cHistory, std::move(cDataBase), cMod.Ports().cClock, [&cMod] { cMod.Pump(); }, note, report};
}

RuleCheck ViolatesRules(clsCat& cSubCat, const Candidate& candidate, Reference& reference,
                        const SelectionContext& context, bool& bShowErrors)
{
    const ErrorSink failed = [&](const RuntimeError& cError) {
        const bool bShow = std::exchange(bShowErrors, false);
        context.report(bShow ? ErrorReport::Handled : ErrorReport::LogOnly, sViolatesRulesWhere, cError);
    };
    try
    {
        return MeasureAgainstRules(context.rules(cSubCat), candidate, context.cHistory, reference, failed);
    }
    catch (...)
    {
        failed(CurrentError());
        return {};
    }
}

Pick PickInOrder(CandidateOrder& cOrder, std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                 const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context)
{
    Selection selection(cOrder, std::move(cSubCat), bMustBeOpener, cPrevSchedCut, context);
    Pick pick;
    try
    {
        pick = selection.Run();
    }
    catch (...)
    {
        context.report(ErrorReport::Critical, sNextCutFromCategoryTitle, CurrentError());
        pick = selection.Nothing(eKindNothingSchedulable);
    }
    pick.bMovedCuts = cOrder.MovedCuts();
    return pick;
}

Pick NextCutFromCategory(std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                         const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context)
{
    if (context.bFairRotation)
    {
        FairOrder order(cSubCat, context);
        return PickInOrder(order, std::move(cSubCat), bMustBeOpener, cPrevSchedCut, context);
    }
    WalkOrder order(cSubCat, context);
    return PickInOrder(order, std::move(cSubCat), bMustBeOpener, cPrevSchedCut, context);
}

} // namespace ravlo
