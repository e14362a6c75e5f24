// SPDX-License-Identifier: MIT
#include "rotation/Selection.h"

#include "base/Text.h"
#include "rotation/Placeholder.h"
#include "rotation/RotationOrder.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

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

// The keys a walk has examined. A list at first; a set from the first look-up on, which most walks never
// need.
class ExaminedKeys
{
public:
    // Precondition: the key is not there yet.
    void Add(const TextKey& cKey)
    {
        if (m_bAsked)
            m_colSet.insert(cKey);
        else
            m_colList.push_back(cKey);
    }
    bool Contains(const TextKey& cKey)
    {
        if (!std::exchange(m_bAsked, true))
            m_colSet.insert(m_colList.begin(), m_colList.end());
        return m_colSet.count(cKey) != 0;
    }

private:
    std::vector<TextKey> m_colList;
    std::unordered_set<TextKey> m_colSet;
    bool m_bAsked = false;
};

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

// One walk over a level, for one pick.
class Walk
{
public:
    Walk(std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener, std::shared_ptr<Cut> cPrevSchedCut,
         const SelectionContext& context)
        : m_cSubCat(std::move(cSubCat)), m_bMustBeOpener(bMustBeOpener), m_world(context),
          m_reference(std::move(cPrevSchedCut), context.cClock, [this](const RuntimeError& cError) {
              m_world.report(ErrorReport::LogOnly, sPreviousCutWhere, cError);
          })
    {
    }

    // Throws the errors of cuts.
    std::shared_ptr<Cut> Run()
    {
        m_world.note(TraceStep{});
        if (!m_cSubCat)
            return Refused(StepKind::NoCategory, eKindNoCategory);
        if (m_cSubCat->CatLevel() == 0)
            return Refused(StepKind::LevelZero, eKindLevelZero);
        const std::size_t cuts = m_cSubCat->SchedCuts()->Count();
        if (cuts == 0)
            return Refused(StepKind::LevelEmpty, eKindLevelEmpty);

        for (std::size_t i = 1; i <= cuts; ++i)
        {
            if (i % stepsPerPump == 0)
                m_world.pump();
            // Read again at each step: during a pump the level may have been emptied, re-ordered or deleted.
            const std::shared_ptr<CutCollection> colOrder = m_cSubCat->SchedCuts();
            LookForDisturbance(colOrder);
            if (!BringFreshCutToHead(*colOrder))
                break;
            if (std::shared_ptr<Cut> cChosen = ExamineHead(*colOrder))
                return cChosen;
        }
        return ChosenFromViolators();
    }

    // The placeholder for a walk that found nothing or failed; never null.
    std::shared_ptr<Cut> Placeholder(CutKind eKind) const
    {
        PlaceholderTexts texts;
        texts.eKind = eKind;
        if (m_cSubCat && (eKind == eKindLevelEmpty || eKind == eKindNothingSchedulable))
        {
            texts.sCatName = m_cSubCat->CatName();
            texts.lCatLevel = m_cSubCat->CatLevel();
        }
        return MakePlaceholder(texts, m_world.cDataBase.get());
    }

    bool MovedCuts() const noexcept { return m_bMovedCuts; }

private:
    // While only this walk moves cuts, no cut reaches the head twice and no look-up among the examined ones
    // is needed. Passing over a cut disturbs too: it leaves more steps than fresh cuts.
    void LookForDisturbance(const std::shared_ptr<CutCollection>& colOrder)
    {
        if (!m_colOrder)
        {
            m_colOrder = colOrder;
            m_changes = colOrder->Changes();
        }
        else if (colOrder != m_colOrder || colOrder->Changes() != m_changes)
            m_bDisturbed = true;
    }

    // Passes over examined cuts at the head: others moved cuts during a pump, and fresh ones may follow.
    // Returns false when there is no fresh cut.
    bool BringFreshCutToHead(CutCollection& colOrder)
    {
        for (std::size_t passed = 0; passed < colOrder.Count(); ++passed)
        {
            m_bMovedCuts = true;
            const TextKey* pKey = colOrder.KeyAt(0);
            if (colOrder.At(0) && !(pKey && m_bDisturbed && m_colExamined.Contains(*pKey)))
            {
                if (pKey)
                    m_colExamined.Add(*pKey);
                return true;
            }
            PassOver(colOrder, pKey);
        }
        return false;
    }

    // One step: sends the head to the back and returns a copy of it when it can be scheduled.
    std::shared_ptr<Cut> ExamineHead(CutCollection& colOrder)
    {
        const std::shared_ptr<Cut> cHead = colOrder.At(0);
        Candidate candidate{cHead, {}, {}};
        bool bAccepted = true;
        try
        {
            candidate.cArtist = cHead->ArtistKey();
            candidate.cTitle = cHead->TitleKey();
            bAccepted = !m_bMustBeOpener || cHead->Opener();
        }
        catch (...)
        {
            // A cut that cannot be read must not block later picks.
            MoveHeadToEnd(colOrder, *cHead);
            throw;
        }
        if (m_bMustBeOpener)
            m_world.note(
                StepAbout(bAccepted ? StepKind::OpenerConsidered : StepKind::NotAnOpener, candidate));
        else
            m_world.note(StepAbout(StepKind::Considered, candidate));
        SendHeadToBack(colOrder, *cHead);
        return bAccepted ? Measured(candidate) : nullptr;
    }

    void PassOver(CutCollection& colOrder, const TextKey* pKey)
    {
        TraceStep step = StepInLevel(StepKind::PassedOver, *m_cSubCat);
        if (pKey)
            step.sKey = pKey->Text();
        m_world.note(step);
        colOrder.MoveToEnd(0);
    }

    // The entry moves in any case: the candidate can be scheduled even when the database fails.
    void SendHeadToBack(CutCollection& colOrder, const Cut& cHead)
    {
        const bool bSent = SendToBackOfCategory(m_cSubCat.get(), &cHead, m_world);
        const bool bMoved = MoveHeadToEnd(colOrder, cHead);
        m_changes += (bSent ? 1u : 0u) + (bMoved ? 1u : 0u);
        if (bSent && bMoved)
            m_bDisturbed = true; // another cut moved to the back, behind some that were examined
    }

    // A cut that the database lacks, or has under another key, would otherwise stay at the head and be
    // examined again and again. Returns whether it moved.
    static bool MoveHeadToEnd(CutCollection& colOrder, const Cut& cHead)
    {
        if (colOrder.Empty() || colOrder.At(0).get() != &cHead)
            return false;
        colOrder.MoveToEnd(0);
        return true;
    }

    std::shared_ptr<Cut> Measured(const Candidate& candidate)
    {
        RuleCheck check = ViolatesRules(*m_cSubCat, candidate, m_reference, m_world, m_bShowErrors);
        clsRuleViolation& violation = check.violation;
        if (violation.TitleMinsAgo == 0)
            violation.TitleMinsAgo = sngNoTitlePlay;

        TraceStep step = StepAbout(StepKind::Measured, candidate);
        step.pViolation = &violation;
        step.pBreach = &check.breach;
        step.dTitleMinsKey = std::nearbyint(static_cast<double>(violation.TitleMinsAgo) * 1000.0) / 1000.0;
        m_world.note(step);

        if (violation.Violation == eNone)
            return Chosen(candidate, CopyOf(*candidate.cCut), eKindChosen);
        // Copied now: the cut may change during the next pump.
        if (m_best.Replaces(violation))
            m_best.Keep(candidate, violation, CopyOf(*candidate.cCut));
        return nullptr;
    }

    std::shared_ptr<Cut> ChosenFromViolators()
    {
        m_world.note(StepInLevel(StepKind::AllBreakRules, *m_cSubCat));
        const clsRuleViolation& best = m_best.Best();
        if (!best.Cut)
            return Refused(StepKind::NothingLeft, eKindNothingSchedulable);

        m_world.note(StepInLevel(StepKind::OnlyViolators, *m_cSubCat));
        const std::wstring sArtist = best.Cut->Artist();
        const std::wstring sTitle = best.Cut->Title();
        TraceStep step = StepAbout(StepKind::ViolatorChosen, m_best.Original());
        step.sArtist = sArtist;
        step.sTitle = sTitle;
        step.pViolation = &best;
        m_world.note(step);
        return Chosen(m_best.Original(), best.Cut, KindOf(best));
    }

    std::shared_ptr<Cut> Chosen(const Candidate& candidate, std::shared_ptr<Cut> cCopy, CutKind eKind)
    {
        cCopy->SetKindCode(eKind);
        m_world.note(StepInLevel(StepKind::LevelOfChoice, *m_cSubCat));
        TraceStep average = StepInLevel(StepKind::AverageRunTime, *m_cSubCat);
        average.lAverageRunTimemS = m_cSubCat->AverageRunTimemS();
        m_world.note(average);
        const TextKey cArtist = cCopy->ArtistKey();
        const TextKey cTitle = cCopy->TitleKey();
        TraceStep chosen = StepAbout(StepKind::Chosen, candidate);
        chosen.sArtist = cArtist.Text();
        chosen.sTitle = cTitle.Text();
        m_world.note(chosen);
        return cCopy;
    }

    std::shared_ptr<Cut> Refused(StepKind eStep, CutKind eKind)
    {
        TraceStep step = m_cSubCat ? StepInLevel(eStep, *m_cSubCat) : TraceStep{};
        step.eKind = eStep;
        m_world.note(step);
        return Placeholder(eKind);
    }

    TraceStep StepAbout(StepKind eKind, const Candidate& candidate) const noexcept
    {
        TraceStep step = StepInLevel(eKind, *m_cSubCat);
        step.sArtist = candidate.cArtist.Text();
        step.sTitle = candidate.cTitle.Text();
        step.pCandidate = &candidate;
        return step;
    }

    const std::shared_ptr<clsCat> m_cSubCat; // kept alive: a host may delete it during a pump
    const bool m_bMustBeOpener;
    const SelectionContext& m_world;
    Reference m_reference;
    std::shared_ptr<CutCollection> m_colOrder; // at the first step
    std::uint64_t m_changes = 0;               // of that order, when only this walk changed it
    bool m_bDisturbed = false;
    ExaminedKeys m_colExamined;
    BestViolator m_best;
    bool m_bMovedCuts = false;
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

Pick NextCutFromCategory(std::shared_ptr<clsCat> cSubCat, bool bMustBeOpener,
                         const std::shared_ptr<Cut>& cPrevSchedCut, const SelectionContext& context)
{
    Walk walk(std::move(cSubCat), bMustBeOpener, cPrevSchedCut, context);
    try
    {
        std::shared_ptr<Cut> cCut = walk.Run();
        return {std::move(cCut), walk.MovedCuts()};
    }
    catch (...)
    {
        context.report(ErrorReport::Critical, sNextCutFromCategoryTitle, CurrentError());
        return {walk.Placeholder(eKindNothingSchedulable), walk.MovedCuts()};
    }
}

} // namespace ravlo
