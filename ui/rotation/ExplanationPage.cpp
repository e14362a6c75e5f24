// SPDX-License-Identifier: MIT
#include "ui/rotation/ExplanationPage.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace ravlo
{

namespace
{

using Step = Explanation::Step;
using Verdict = Explanation::Verdict;

std::wstring NameOf(Verdict eVerdict)
{
    switch (eVerdict)
    {
    case Verdict::Artist:
        return L"artist";
    case Verdict::Title:
        return L"title";
    case Verdict::Album:
        return L"album";
    case Verdict::NoOpener:
        return L"no opener";
    default:
        return {};
    }
}

std::wstring VerdictText(const Step& step)
{
    if (!step.bChosen)
        return L"Passed over: " + NameOf(step.eVerdict);
    return step.eVerdict == Verdict::Chosen ? L"Chosen" : L"Chosen, breaks " + NameOf(step.eVerdict);
}

std::wstring CutOf(const Step& step)
{
    return CutText(step.candidate.cArtist.Text(), step.candidate.cTitle.Text());
}

ListPage::Row RowOf(const Step& step, std::size_t number)
{
    ListPage::Row row;
    row.cells = {std::to_wstring(number), VerdictText(step), step.candidate.cArtist.Text(),
                 step.candidate.cTitle.Text()};
    const bool bBreach = step.breach.eRule != eNone;
    const auto lMinsAgo = static_cast<std::int64_t>(std::floor(static_cast<double>(step.breach.MinsAgo)));
    row.cells.push_back(bBreach ? DecimalText(lMinsAgo) : L"");
    row.cells.push_back(bBreach ? DecimalText(step.breach.lRequiredMins) : L"");
    row.cells.push_back(step.Blocker());
    row.sSentence = step.Text();
    row.bMarked = step.bChosen;
    return row;
}

std::wstring CutsText(std::size_t cuts) { return std::to_wstring(cuts) + (cuts == 1 ? L" cut" : L" cuts"); }

// "Passed over before it: 3 cuts (artist 2, title 1)."
std::wstring PassedOverText(const Explanation& explanation)
{
    const std::vector<Step>& steps = explanation.steps;
    const auto passed = static_cast<std::size_t>(
        std::count_if(steps.begin(), steps.end(), [](const Step& step) { return !step.bChosen; }));
    if (passed == 0)
        return L"No cut is passed over.";
    std::wstring sRules;
    for (const Verdict eVerdict : {Verdict::Artist, Verdict::Title, Verdict::Album, Verdict::NoOpener})
    {
        const std::ptrdiff_t count = std::count_if(steps.begin(), steps.end(), [&](const Step& step) {
            return !step.bChosen && step.eVerdict == eVerdict;
        });
        if (count > 0)
            sRules +=
                (sRules.empty() ? L"" : L", ") + NameOf(eVerdict) + L" " + DecimalText(std::int64_t{count});
    }
    return L"Passed over: " + CutsText(passed) + L" (" + sRules + L").";
}

std::wstring ChoiceText(const Explanation& explanation, DateTime dtNow)
{
    const std::wstring sLevel = explanation.sCatName + L" " + DecimalText(explanation.lCatLevel);
    const std::vector<Step>& steps = explanation.steps;
    const auto chosen =
        std::find_if(steps.begin(), steps.end(), [](const Step& step) { return step.bChosen; });
    if (!explanation.cCut || chosen == steps.end())
        return L"Asked now (" + TimeText(dtNow, dtNow) + L"), " + sLevel + L" gives no cut." + sCrLf +
               explanation.NothingText();
    const std::wstring sWhy =
        chosen->eVerdict == Verdict::Chosen
            ? L"It breaks no rule."
            : L"Every candidate breaks a rule, this one least (its play is the furthest "
              L"away): " +
                  chosen->Reason();
    return L"Asked now (" + TimeText(dtNow, dtNow) + L"), " + sLevel + L" gives: " + CutOf(*chosen) + sCrLf +
           sWhy;
}

std::wstring NotExaminedText(const AskedCut& asked, const Explanation& explanation)
{
    if (!asked.place)
        return asked.sName + L" is not in this level.";
    return asked.sName + L" is not examined: it is number " + std::to_wstring(*asked.place) +
           L" in the order, and the pick examines " + CutsText(explanation.steps.size()) + L".";
}

bool Is(const Step& step, const TextKey& cKey) { return step.candidate.cKey == cKey; }

} // namespace

ListPage ExplanationPage(const Explanation& explanation, DateTime dtNow, const std::optional<AskedCut>& asked)
{
    ListPage page;
    page.columns = {{L"#", 40, true},         {L"Verdict", 140},       {L"Artist", 150},
                    {L"Title", 170},          {L"Mins ago", 66, true}, {L"Required", 66, true},
                    {L"Play in the way", 180}};
    page.nameColumn = 2;
    page.sHeading = ChoiceText(explanation, dtNow) + sCrLf + PassedOverText(explanation);
    bool bAskedFound = false;
    for (const Step& step : explanation.steps)
    {
        const bool bAsked = asked && Is(step, asked->cKey);
        if (bAsked || (step.bChosen && !bAskedFound))
            page.first = page.rows.size();
        bAskedFound = bAskedFound || bAsked;
        page.rows.push_back(RowOf(step, page.rows.size() + 1));
    }
    if (asked && !bAskedFound)
        page.sHeading += sCrLf + NotExaminedText(*asked, explanation);
    return page;
}

} // namespace ravlo
