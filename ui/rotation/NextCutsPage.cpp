// SPDX-License-Identifier: MIT
#include "ui/rotation/NextCutsPage.h"

#include "base/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::wstring PassedOverText(std::size_t cuts)
{
    if (cuts == 0)
        return {};
    return std::to_wstring(cuts) + (cuts == 1 ? L" cut is" : L" cuts are") + L" passed over before it.";
}

// What there is to say about a slot; empty for nothing.
std::wstring NoteOf(const ForecastCut& cut)
{
    if (!cut.bChosen)
        return cut.sReason;
    return cut.sReason.empty() ? PassedOverText(cut.passedOver) : L"Breaks a rule: " + cut.sReason;
}

std::wstring SentenceOf(const ForecastCut& cut)
{
    if (!cut.bChosen)
        return cut.sReason;
    const std::wstring sCut = CutText(cut.sArtist, cut.sTitle);
    if (!cut.sReason.empty())
        return sCut + L" breaks a rule, but less than every other candidate: " + cut.sReason;
    const std::wstring sPassed = PassedOverText(cut.passedOver);
    return sCut + L" breaks no rule." + (sPassed.empty() ? L"" : L" " + sPassed);
}

std::wstring RulesText(const std::vector<ForecastCut>& forecast)
{
    const std::ptrdiff_t broken = std::count_if(forecast.begin(), forecast.end(),
                                                [](const ForecastCut& cut) { return !cut.sReason.empty(); });
    if (broken == 0)
        return L"No rule is broken.";
    return DecimalText(std::int64_t{broken}) + L" of " + std::to_wstring(forecast.size()) +
           (broken == 1 ? L" breaks a rule." : L" break a rule.");
}

} // namespace

ListPage NextCutsPage(const std::vector<ForecastCut>& forecast, const std::wstring& sLevel, DateTime dtNow,
                      const AskingRate& rate)
{
    ListPage page;
    page.columns = {{L"#", 40, true}, {L"Time", 110}, {L"Artist", 160}, {L"Title", 180}, {L"Note", 300}};
    page.nameColumn = 2;
    if (forecast.empty())
    {
        page.sHeading = sLevel + L" has no cuts.";
        return page;
    }
    const std::wstring sNow = TimeText(dtNow, dtNow);
    page.sHeading = rate.asked != 0
                        ? sLevel + L" from now (" + sNow + L"), asked every " + SlotText(rate) +
                              L" as its last plays suggest."
                        : sLevel + L" from now (" + sNow +
                              L"), one cut after the other: too few of its cuts have played of late to tell "
                              L"how often it is asked.";
    page.sHeading += sCrLf;
    page.sHeading += L"Plays of other levels are not foreseen here; Rotation Health forecasts whole days.";
    page.sHeading += sCrLf + RulesText(forecast);
    for (const ForecastCut& cut : forecast)
        page.rows.push_back({{std::to_wstring(page.rows.size() + 1), TimeText(cut.dtStart, dtNow),
                              cut.sArtist, cut.sTitle, NoteOf(cut)},
                             SentenceOf(cut),
                             !cut.sReason.empty()});
    return page;
}

} // namespace ravlo
