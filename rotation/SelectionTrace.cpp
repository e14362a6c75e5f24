// SPDX-License-Identifier: MIT
#include "rotation/SelectionTrace.h"

#include "base/Text.h"

#include <initializer_list>

namespace ravlo
{

namespace
{

std::wstring Joined(std::initializer_list<std::wstring_view> pieces)
{
    std::size_t length = 0;
    for (const std::wstring_view sPiece : pieces)
        length += sPiece.size();
    std::wstring sText;
    sText.reserve(length);
    for (const std::wstring_view sPiece : pieces)
        sText.append(sPiece);
    return sText;
}

std::wstring WithLevel(std::wstring_view sBefore, const TraceStep& step)
{
    return Joined({sBefore, step.sCatName, L" ", DecimalText(step.lCatLevel)});
}

std::wstring WithCut(std::wstring_view sBefore, const TraceStep& step, std::wstring_view sAfter = {})
{
    return Joined({sBefore, step.sArtist, L" - ", step.sTitle, sAfter});
}

std::wstring WithKeyAndLevel(std::wstring_view sBefore, const TraceStep& step)
{
    return Joined(
        {sBefore, step.sKey, L" to back of category: ", step.sCatName, L" ", DecimalText(step.lCatLevel)});
}

std::wstring BreachText(const TraceStep& step)
{
    switch (step.pViolation->Violation)
    {
    case eGlobalTitle:
        return Joined({step.sTitle, L" was played ", SingleText(step.pViolation->MinsAgo),
                       L" mins ago : title rule violation."});
    case eGlobalArtist:
        return Joined({step.sArtist, L" was played ", SingleText(step.pViolation->MinsAgo),
                       L" mins ago : artist rule violation."});
    case eGlobalAlbum:
        return WithCut({}, step, L"...violates on album sep.");
    default:
        return {};
    }
}

std::wstring_view LeastViolationText(std::int32_t lViolation)
{
    switch (lViolation)
    {
    case eGlobalAlbum:
        return L"Cut with least ALBUM violation: ";
    case eGlobalArtist:
        return L"Cut with least ARTIST violation: ";
    case eGlobalTitle:
        return L"Cut with least TITLE violation: ";
    default:
        return L"Cut with least artist violation: ";
    }
}

std::wstring ViolatorChosenText(const TraceStep& step)
{
    return Joined({LeastViolationText(step.pViolation->Violation), step.sArtist, L" - ", step.sTitle, L" [",
                   SingleText(step.pViolation->MinsAgo), L" mins]"});
}

} // namespace

TraceStep StepInLevel(StepKind eKind, const clsCat& cSubCat) noexcept
{
    TraceStep step;
    step.eKind = eKind;
    step.sCatName = cSubCat.CatName();
    step.lCatLevel = cSubCat.CatLevel();
    return step;
}

std::wstring LogText(const TraceStep& step)
{
    switch (step.eKind)
    {
    case StepKind::Asked:
        return L"Getting Next Cut From Category: ";
    case StepKind::NoCategory:
        return L"Whoops! Category not set...";
    case StepKind::LevelZero:
        return L"Whoops! Cant schedule level zero";
    case StepKind::LevelEmpty:
        return WithLevel(L"Whoops! - no cuts in category: ", step);
    case StepKind::Considered:
        return WithCut(L"We dont care if its an opener or not...considering: ", step);
    case StepKind::OpenerConsidered:
        return WithCut(L"It's required that we find an opener. ", step, L" IS an opener, kicking..");
    case StepKind::NotAnOpener:
        return WithCut(L"It's required that we find an opener. ", step, L" is NOT an opener, kicking..");
    case StepKind::SentToBack:
        return WithKeyAndLevel(L"Sent: ", step);
    case StepKind::NotSentToBack:
        return WithKeyAndLevel(L"Whoops! - Didnt send: ", step);
    case StepKind::PassedOver:
        return {};
    case StepKind::Measured:
        return BreachText(step);
    case StepKind::AllBreakRules:
        return WithLevel(L"Couldn't find anything without a rule violation in: ", step);
    case StepKind::NothingLeft:
        return L"No way can an item be scheduled in this position. Sorry, I tried *really* hard!";
    case StepKind::OnlyViolators:
        return L"There are ONLY violations that can be scheduled, choosing the item with the MOST separation "
               L"out of "
               L"the violators...";
    case StepKind::ViolatorChosen:
        return ViolatorChosenText(step);
    case StepKind::LevelOfChoice:
        return WithLevel(L"Next Cut in Category: ", step);
    case StepKind::AverageRunTime:
        return Joined({L"Average runtime ", DecimalText(step.lAverageRunTimemS)});
    case StepKind::Chosen:
        return WithCut(L"NextCutFromCategory returns: ", step);
    }
    return {};
}

} // namespace ravlo
