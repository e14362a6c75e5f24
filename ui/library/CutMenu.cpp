// SPDX-License-Identifier: MIT
#include "ui/library/CutMenu.h"

#include "base/Text.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/NodeKey.h"

#include <utility>

namespace ravlo
{

namespace
{

std::wstring NameOf(const clsCat& cCat)
{
    return cCat.CatName() + (cCat.CatLevel() == 0 ? L"" : L" " + DecimalText(cCat.CatLevel()));
}

// Names differ less than keys: a category may be named "Rock 1".
std::wstring KeyOf(const clsCat& cCat) { return CategoryKey(cCat.CatName(), cCat.CatLevel()); }

// Of the level in which a listed cut is explained: the one it is listed in, else the first that contains it.
// Empty when there is none.
std::wstring LevelKeyOf(const clsSchedMan& cSchedMan, const clsSchedLibGridPresenter& cGrid, std::size_t row)
{
    std::shared_ptr<clsCat> cLevel = cGrid.LevelAt(row);
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!cLevel)
        ForEachPlace(colMainCats.get(), {cGrid.KeyAt(row)},
                     [&](const std::shared_ptr<clsCat>& cFound, const TextKey&) {
            if (!cLevel)
                cLevel = cFound;
        });
    return cLevel ? KeyOf(*cLevel) : std::wstring();
}

} // namespace

CutMenu::CutMenu(LibraryPanes& cPanes, LibraryCuts& cCuts, LibraryRotation& cRotation,
                 GridHeadings& cHeadings, LibraryResults& cResults, LibraryWork& cWork,
                 clsSchedLibGridView& cGridView)
    : m_cPanes(cPanes), m_cCuts(cCuts), m_cRotation(cRotation), m_cHeadings(cHeadings), m_cResults(cResults),
      m_cWork(cWork), m_cGridView(cGridView)
{
}

// The chosen command runs as if its key had been pressed: what has changed while the menu was open counts.
void CutMenu::ShowMenu()
{
    if (m_cWork.Running() || !m_cWork.SchedMan())
        return;
    m_cResults.ShowSelection(); // the right click may have selected what the menu is for
    const PopUpMenu menu = Items(Selected());
    if (const PopUpItem* pItem = m_cGridView.ChooseFromMenu(menu))
        pItem->chosen();
}

CutMenu::Selection CutMenu::Selected() const
{
    const clsSchedLibGridPresenter& cGrid = m_cPanes.Grid();
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    const std::vector<std::size_t> colRows = cGrid.SelectedRows();
    Selection selection;
    selection.count = colRows.size();
    selection.bMayMove = !colRows.empty() && !cGrid.BanOLEDrop() && cGrid.Order().IsSchedule();
    if (const std::shared_ptr<clsCat> cShown = cGrid.CurrentCatViewing())
        selection.sShown = NameOf(*cShown);
    for (const std::wstring& sKey : m_cCuts.Recent().Keys())
        if (CatOf(*cSchedMan, sKey))
            selection.colTargets.push_back(sKey);
    return selection;
}

// The blanks in front of the keys keep them apart from the captions on systems that leave no room there.
PopUpMenu CutMenu::Items(const Selection& selection)
{
    const bool bAny = selection.count != 0;
    const std::wstring sFrom = selection.sShown.empty() ? L"all categories" : PlainCaption(selection.sShown);
    return {
        {L"&Edit\t  Enter", [this] { Edit(); }, selection.count == 1},
        {L"&Remove from " + sFrom + L"\t  Del", [this] { m_cCuts.GridDelete(); }, bAny},
        Targets(L"&Move to", eMoveHere, selection),
        Targets(L"&Copy to", eCopyHere, selection),
        {},
        {L"To the &top\t  Alt+Home", [this] { m_cCuts.MoveSelectedToTop(); }, selection.bMayMove},
        {L"To the &bottom\t  Alt+End", [this] { m_cCuts.MoveSelectedToBottom(); }, selection.bMayMove},
        {L"Move to &position...", [this] { m_cCuts.AskForPosition(); }, selection.bMayMove},
        {},
        {L"E&xplain", [this] { Explain(); }, MayExplain(selection)},
        {},
        m_cHeadings.SortBy(),
        m_cHeadings.Columns(),
    };
}

PopUpItem CutMenu::Targets(const wchar_t* sCaption, eCatDragOptions eOption, const Selection& selection)
{
    PopUpItem targets{sCaption, {}, selection.count != 0};
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    const std::shared_ptr<clsCat> cShown = m_cPanes.Grid().CurrentCatViewing();
    for (const std::wstring& sKey : selection.colTargets)
        if (const std::shared_ptr<clsCat> cCat = CatOf(*cSchedMan, sKey))
            targets.colItems.push_back({PlainCaption(NameOf(*cCat)),
                                        [this, eOption, sKey] { m_cCuts.SendTo(eOption, sKey); },
                                        !cShown || KeyOf(*cCat) != KeyOf(*cShown)});
    if (!targets.colItems.empty())
        targets.colItems.push_back({});
    targets.colItems.push_back({L"C&hoose...", [this, eOption] { m_cCuts.SendToChosen(eOption); }});
    return targets;
}

bool CutMenu::MayExplain(const Selection& selection) const
{
    return selection.count == 1 && m_cRotation.Dialogs().ShowExplanation;
}

std::optional<std::size_t> CutMenu::OnlyRow() const
{
    const std::vector<std::size_t> colRows = m_cPanes.Grid().SelectedRows();
    return colRows.size() == 1 ? std::optional(colRows.front()) : std::nullopt;
}

void CutMenu::Edit()
{
    if (const std::optional<std::size_t> row = OnlyRow())
        m_cCuts.CellDblClick(*row + 1, 1);
}

void CutMenu::Explain()
{
    m_cWork.Handle(L"mnuExplain_Click", [&](clsSchedMan& cSchedMan) {
        const std::optional<std::size_t> row = OnlyRow();
        if (!row)
            return;
        const clsSchedLibGridPresenter& cGrid = m_cPanes.Grid();
        const TextKey cKey = cGrid.KeyAt(*row);
        const std::wstring sLevelKey = LevelKeyOf(cSchedMan, cGrid, *row);
        if (!sLevelKey.empty())
            m_cRotation.Dialogs().ShowExplanation(cSchedMan, sLevelKey, cKey);
    });
}

} // namespace ravlo
