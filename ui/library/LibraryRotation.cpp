// SPDX-License-Identifier: MIT
#include "ui/library/LibraryRotation.h"

#include "ui/library/NodeKey.h"

namespace ravlo
{

void LibraryRotation::Spread(clsSchedMan& cSchedMan)
{
    const Cats colCats = m_cPanes.CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"You Need to Check (tick) Them In The Tree.",
                   L"First, select some categories to spread");
        return;
    }
    {
        const LibraryWork::BusyFromProgress cBusy(m_cWork);
        cSchedMan.SpreadCategories(colCats, true);
    }
    m_cPanes.ShowAgain(cSchedMan);
}

void LibraryRotation::SwitchFairRotation(clsSchedMan& cSchedMan)
{
    cSchedMan.SetFairRotation(!cSchedMan.Options().bFairRotation);
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

// Its advice may have changed orders.
void LibraryRotation::ShowHealth(clsSchedMan& cSchedMan)
{
    if (!m_dialogs.ShowHealth)
        return;
    m_dialogs.ShowHealth(cSchedMan);
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
            return {.bEnabled = false, .sText = L"Undo"};
        case LibraryCommand::mnuRedo:
            return {.bEnabled = false, .sText = L"Redo"};
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
