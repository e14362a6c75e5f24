// SPDX-License-Identifier: MIT
#include "rotation/Explanation.h"

#include "base/Text.h"
#include "rotation/FairOrder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ravlo
{

namespace
{

using Step = Explanation::Step;
using Verdict = Explanation::Verdict;

std::wstring TwoDigits(int lNumber) { return (lNumber < 10 ? L"0" : L"") + DecimalText(lNumber); }

std::wstring WithoutEmpty(const std::wstring& sFirst, const wchar_t* sBetween, const std::wstring& sSecond)
{
    return sFirst.empty() || sSecond.empty() ? sFirst + sSecond : sFirst + sBetween + sSecond;
}

// A text of the cut in the way; empty when it cannot be read any more, since the rest says enough.
std::wstring TextOf(const Cut& cCut, std::wstring (Cut::*pText)() const)
{
    try
    {
        return (cCut.*pText)();
    }
    catch (...)
    {
        return {};
    }
}

// "Abba played 23 minutes ago (Dancing Queen, 14:07), 60 are required."
std::wstring BreachText(const Breach& breach)
{
    std::wstring sText = L"the title";
    if (breach.eRule == eGlobalArtist)
        sText = breach.cName.Text();
    else if (breach.eRule == eGlobalAlbum)
        sText = L"the album";
    const bool bLater = breach.dtPlayed > breach.dtStart; // a slot before plays that were already reported
    const double dMins = std::floor(static_cast<double>(breach.MinsAgo));
    sText += bLater ? L" plays " : L" played ";
    sText += DecimalText(static_cast<std::int64_t>(dMins)) + (dMins == 1 ? L" minute" : L" minutes");
    sText += bLater ? L" later (" : L" ago (";
    const auto pText = breach.eRule == eGlobalArtist ? &Cut::Title : &Cut::Artist;
    sText +=
        WithoutEmpty(TextOf(*breach.cBlockedBy, pText), L", ", TimeText(breach.dtPlayed, breach.dtStart)) +
        L"), ";
    sText += DecimalText(breach.lRequiredMins) + (breach.lRequiredMins == 1 ? L" is" : L" are");
    return sText + L" required.";
}

Verdict VerdictOf(const Breach& breach) noexcept
{
    switch (breach.eRule)
    {
    case eGlobalTitle:
        return Verdict::Title;
    case eGlobalAlbum:
        return Verdict::Album;
    case eGlobalArtist:
        return Verdict::Artist;
    default:
        return Verdict::Chosen;
    }
}

} // namespace

std::wstring TimeText(DateTime dtWhen, DateTime dtNow)
{
    static constexpr const wchar_t* colMonths[] = {L"January",   L"February", L"March",    L"April",
                                                   L"May",       L"June",     L"July",     L"August",
                                                   L"September", L"October",  L"November", L"December"};
    const DateFields when = FieldsOf(dtWhen);
    const DateFields now = FieldsOf(dtNow);
    const std::wstring sTime = TwoDigits(when.lHour) + L":" + TwoDigits(when.lMinute);
    if (when.lYear == now.lYear && when.lMonth == now.lMonth && when.lDay == now.lDay)
        return sTime;
    return DecimalText(when.lDay) + L" " + colMonths[when.lMonth - 1] + L" " + sTime;
}

std::wstring CutText(const std::wstring& sArtist, const std::wstring& sTitle)
{
    return WithoutEmpty(sArtist, L" - ", sTitle);
}

std::wstring Step::Reason() const { return breach.eRule == eNone ? std::wstring() : BreachText(breach); }

std::wstring Step::Blocker() const
{
    if (breach.eRule == eNone)
        return {};
    const Cut& cBlocker = *breach.cBlockedBy;
    return WithoutEmpty(CutText(TextOf(cBlocker, &Cut::Artist), TextOf(cBlocker, &Cut::Title)), L", ",
                        TimeText(breach.dtPlayed, breach.dtStart));
}

std::wstring Step::Text() const
{
    const std::wstring sCut = CutText(candidate.cArtist.Text(), candidate.cTitle.Text());
    if (eVerdict == Verdict::NoOpener)
        return L"Passed over: " + sCut + L"; no opener.";
    if (eVerdict == Verdict::Chosen)
        return L"Chosen: " + sCut + L"; it breaks no rule.";
    if (!bChosen)
        return L"Passed over: " + sCut + L"; " + BreachText(breach);
    return L"Chosen: " + sCut +
           L"; every candidate broke a rule, this one least (its play is the furthest away): " +
           BreachText(breach);
}

std::wstring Explanation::Text() const
{
    std::wstring sText;
    std::wstring sChoice;
    for (const Step& step : steps)
    {
        if (step.bChosen)
            sChoice = step.Text();
        else
            sText += step.Text() + sCrLf;
    }
    return sText + (cCut ? sChoice : NothingText());
}

std::wstring Explanation::NothingText() const
{
    const std::wstring sLevel = sCatName + L" " + DecimalText(lCatLevel);
    const auto IsNoOpener = [](const Step& step) { return step.eVerdict == Verdict::NoOpener; };
    if (eKind == eKindLevelEmpty)
        return L"Nothing chosen: " + sLevel + L" has no cuts.";
    if (bFailed)
        return L"Nothing chosen: an error ended the pick from " + sLevel + L".";
    if (!steps.empty() && std::all_of(steps.begin(), steps.end(), IsNoOpener))
        return L"Nothing chosen: " + sLevel + L" has no opener.";
    return L"Nothing chosen: nothing in " + sLevel + L" can be scheduled.";
}

void ExplanationSink::Note(const TraceStep& step)
{
    switch (step.eKind)
    {
    case StepKind::NotAnOpener:
        m_explanation.steps.push_back({*step.pCandidate, Verdict::NoOpener, {}});
        break;
    case StepKind::Measured:
        if (step.pBreach->eRule != eNone)
            m_explanation.steps.push_back({*step.pCandidate, VerdictOf(*step.pBreach), *step.pBreach});
        break;
    case StepKind::Chosen:
        NoteChoice(*step.pCandidate);
        break;
    case StepKind::NothingLeft:
        m_bNothingLeft = true;
        break;
    default:
        break;
    }
}

// A violator has its step already.
void ExplanationSink::NoteChoice(const Candidate& candidate)
{
    std::vector<Step>& steps = m_explanation.steps;
    const auto it = std::find_if(steps.begin(), steps.end(), [&](const Step& step) {
        return step.candidate.cCut == candidate.cCut && step.eVerdict != Verdict::NoOpener;
    });
    m_chosen = static_cast<std::size_t>(it - steps.begin());
    if (it == steps.end())
        steps.push_back({candidate, Verdict::Chosen, {}});
}

Explanation ExplanationSink::Take(CutKind eKind, const clsCat& cSubCat)
{
    Explanation& explanation = m_explanation;
    explanation.eKind = eKind;
    explanation.sCatName = cSubCat.CatName();
    explanation.lCatLevel = cSubCat.CatLevel();
    const bool bNothing = eKind == eKindNothingSchedulable || eKind == eKindLevelEmpty;
    explanation.bFailed = eKind == eKindNothingSchedulable && !m_bNothingLeft;
    if (m_chosen && !bNothing)
    {
        explanation.steps[*m_chosen].bChosen = true;
        explanation.cCut = explanation.steps[*m_chosen].candidate.cCut;
    }
    else if (m_chosen && explanation.steps[*m_chosen].eVerdict == Verdict::Chosen)
        explanation.steps.pop_back(); // an error after the choice
    return std::move(explanation);
}

Explanation ExplainNext(const std::shared_ptr<clsCat>& cSubCat, bool bMustBeOpener,
                        const std::shared_ptr<Cut>& cPrevSchedCut, SelectionContext context)
{
    ExplanationSink sink;
    context.cDataBase = nullptr;
    context.pump = nullptr;
    context.note = [&sink](const TraceStep& step) { sink.Note(step); };
    context.report = [](ErrorReport, const wchar_t*, const RuntimeError&) {};
    LookOrder order(cSubCat);
    const Pick pick = PickInOrder(order, cSubCat, bMustBeOpener, cPrevSchedCut, context);
    return sink.Take(pick.eKind, *cSubCat);
}

} // namespace ravlo
