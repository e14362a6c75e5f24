// SPDX-License-Identifier: MIT
#include "ui/library/LibraryRotation.h"

#include "ui/library/NodeKey.h"

#include <algorithm>
#include <cstddef>

namespace ravlo
{

namespace
{

constexpr std::size_t longestCaption = 80; // a menu is as wide as its longest item

// One line of bounded length: a tab in a title would begin the key's column of the menu.
std::wstring MenuCaption(std::wstring sText)
{
    std::replace_if(
        sText.begin(), sText.end(), [](wchar_t c) { return c < L' '; }, L' ');
    if (sText.size() <= longestCaption)
        return sText;
    sText.resize(longestCaption - 1);
    return sText + L'\u2026';
}

MenuItem StepItem(const wchar_t* sWithoutStep, const std::wstring& sStep)
{
    return {.bEnabled = !sStep.empty(), .sText = sStep.empty() ? sWithoutStep : MenuCaption(sStep)};
}

} // namespace

void LibraryRotation::Undo(clsSchedMan& cSchedMan)
{
    if (cSchedMan.CanUndo())
        Reverse(cSchedMan, &clsSchedMan::Undo);
    else
        m_cResults.Remark(L"There is nothing to undo");
}

void LibraryRotation::Redo(clsSchedMan& cSchedMan)
{
    if (cSchedMan.CanRedo())
        Reverse(cSchedMan, &clsSchedMan::Redo);
    else
        m_cResults.Remark(L"There is nothing to redo");
}

void LibraryRotation::Reverse(clsSchedMan& cSchedMan, std::wstring (clsSchedMan::*reverse)())
{
    const LibraryWork::Busy cBusy(m_cWork);
    m_cResults.Say((cSchedMan.*reverse)());
    if (!m_cWork.RefreshPending()) // at the end of the work
        m_cPanes.ShowChanges(cSchedMan);
}

void LibraryRotation::Shuffle(clsSchedMan& cSchedMan)
{
    ReorderChecked(cSchedMan, &clsSchedMan::ShuffleCategories, L"shuffle", L"Shuffled");
}

void LibraryRotation::Spread(clsSchedMan& cSchedMan)
{
    ReorderChecked(cSchedMan, &clsSchedMan::SpreadCategories, L"spread", L"Spread");
}

void LibraryRotation::ReorderChecked(clsSchedMan& cSchedMan,
                                     void (clsSchedMan::*reorder)(const Cats& colCats, bool bConfirmFirst),
                                     const std::wstring& sVerb, const std::wstring& sDone)
{
    const Cats colCats = m_cPanes.CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"You Need to Check (tick) Them In The Tree.",
                   L"First, select some categories to " + sVerb);
        return;
    }
    const Cats colGrouped = Grouped(colCats, true);
    const std::wstring sWhat = CatsText(colGrouped);
    m_cResults.Concern(CutsIn(colGrouped));
    m_cPanes.FindCategories().SayHiddenTicks();
    bool bDone = false;
    {
        const LibraryWork::BusyFromProgress cBusy(m_cWork);
        (cSchedMan.*reorder)(colCats, true);
        bDone = cBusy.Began();
    }
    if (bDone)
        m_cResults.Say(sDone + L" " + sWhat);
    m_cPanes.ShowAgain(cSchedMan);
}

void LibraryRotation::SwitchFairRotation(clsSchedMan& cSchedMan)
{
    const bool bOn = !cSchedMan.Options().bFairRotation;
    cSchedMan.SetFairRotation(bOn);
    m_cResults.Say(bOn ? L"Fair rotation is on" : L"Fair rotation is off");
}

void LibraryRotation::ExplainNext(clsSchedMan& cSchedMan)
{
    const std::wstring sLevelKey = ShownLevelKey(cSchedMan);
    if (!sLevelKey.empty() && m_dialogs.ShowExplanation)
        m_dialogs.ShowExplanation(cSchedMan, sLevelKey, TextKey());
}

void LibraryRotation::ShowNextCuts(clsSchedMan& cSchedMan)
{
    const std::wstring sLevelKey = ShownLevelKey(cSchedMan);
    if (!sLevelKey.empty() && m_dialogs.ShowNextCuts)
        m_dialogs.ShowNextCuts(cSchedMan, sLevelKey);
}

// Its advice may have changed orders and settings.
void LibraryRotation::ShowHealth(clsSchedMan& cSchedMan)
{
    if (!m_dialogs.ShowHealth)
        return;
    const std::wstring sBefore = cSchedMan.UndoText();
    m_dialogs.ShowHealth(cSchedMan);
    m_cResults.SayLastStep(cSchedMan, sBefore);
    m_cPanes.ShowChanges(cSchedMan);
}

// Empty when the grid shows something else.
std::wstring LibraryRotation::ShownLevelKey(const clsSchedMan& cSchedMan) const
{
    const std::shared_ptr<clsCat> cCat = m_cPanes.ShownCat(cSchedMan);
    return cCat && cCat->CatLevel() != 0 ? CategoryKey(cCat->CatName(), cCat->CatLevel()) : std::wstring();
}

MenuItem LibraryRotation::ItemOf(LibraryCommand eCommand) const noexcept
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    if (!cSchedMan)
        return {.bEnabled = false};
    try
    {
        switch (eCommand)
        {
        case LibraryCommand::mnuUndo:
            return StepItem(L"Undo", cSchedMan->UndoText());
        case LibraryCommand::mnuRedo:
            return StepItem(L"Redo", cSchedMan->RedoText());
        case LibraryCommand::mnuFairRotation:
            return {.bTicked = cSchedMan->Options().bFairRotation};
        case LibraryCommand::mnuExplainNext:
            return {.bEnabled = m_dialogs.ShowExplanation && !ShownLevelKey(*cSchedMan).empty()};
        case LibraryCommand::mnuNextCuts:
            return {.bEnabled = m_dialogs.ShowNextCuts && !ShownLevelKey(*cSchedMan).empty()};
        case LibraryCommand::mnuHealth:
            return {.bEnabled = m_dialogs.ShowHealth != nullptr};
        default:
            return {};
        }
    }
    catch (...) // before the first population
    {
        return {.bEnabled = false};
    }
}

} // namespace ravlo
