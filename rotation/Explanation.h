// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/Selection.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// Why a pick chose its cut: the candidates in the order they were examined, and the verdict on each. Values;
// the sentences are made when they are asked for.
struct Explanation
{
    enum class Verdict
    {
        Chosen, // breaks no rule
        Artist,
        Title,
        Album,
        NoOpener,
    };
    struct Step
    {
        Candidate candidate; // its texts are those at the time of the pick
        Verdict eVerdict = Verdict::Chosen;
        Breach breach;        // of the verdicts Artist, Title and Album
        bool bChosen = false; // a violator may be chosen too

        // "Passed over: Abba - Waterloo; Abba played 23 minutes ago (Dancing Queen, 14:07), 60 are required."
        std::wstring Text() const;
        // What it breaks: "Abba played 23 minutes ago (Dancing Queen, 14:07), 60 are required."; empty for
        // the verdicts Chosen and NoOpener.
        std::wstring Reason() const;
        // The play in the way: "Abba - Dancing Queen, 14:07"; empty as above.
        std::wstring Blocker() const;
    };

    std::shared_ptr<Cut> cCut; // the level's own; null for kinds 7 and 11
    CutKind eKind = eKindNothingSchedulable;
    std::vector<Step> steps;
    std::wstring sCatName; // of the level
    std::int32_t lCatLevel = 0;
    bool bFailed = false; // kind 11: an error ended the pick

    // A line for each cut that was passed over, and a last one for the choice, separated by CR LF.
    std::wstring Text() const;
    // Why nothing was chosen. Precondition: cCut is null.
    std::wstring NothingText() const;
};

// "14:07", and on another day than dtNow's "5 January 14:07".
std::wstring TimeText(DateTime dtWhen, DateTime dtNow);
// "Abba - Waterloo"; one of them alone where the other is empty.
std::wstring CutText(const std::wstring& sArtist, const std::wstring& sTitle);

// Collects an explanation from the trace of one pick.
class ExplanationSink
{
public:
    void Note(const TraceStep& step);
    // Completes the explanation of a pick from this level that gave this kind. Call once.
    Explanation Take(CutKind eKind, const clsCat& cSubCat);

private:
    void NoteChoice(const Candidate& candidate);

    Explanation m_explanation;
    std::optional<std::size_t> m_chosen; // a step
    bool m_bNothingLeft = false;
};

// Explains the pick that comes next with this context, without making it: nothing moves, no sink hears of
// steps or errors, nothing is pumped, and the database is not asked. The context's rules must not change
// anything either. Precondition: cSubCat is a level.
Explanation ExplainNext(const std::shared_ptr<clsCat>& cSubCat, bool bMustBeOpener,
                        const std::shared_ptr<Cut>& cPrevSchedCut, SelectionContext context);

} // namespace ravlo
