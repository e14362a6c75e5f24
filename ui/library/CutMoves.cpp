// SPDX-License-Identifier: MIT
// The commands of the cuts' menu that move cuts, in the shown level or into others.
#include "base/Text.h"
#include "ui/library/CutPlaces.h"
#include "ui/library/LibraryCuts.h"
#include "ui/library/NodeKey.h"

#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sPositionTitle = L"Move To Position";

// The position, from 1, in front of which cuts must be moved so that they begin at the wanted one.
std::int32_t InFrontOf(const CutCollection& colCuts, const KeySet& colMoved, std::size_t wanted)
{
    std::size_t others = 0;
    for (std::size_t i = 0; i < colCuts.Count(); ++i)
        if (const TextKey* pKey = colCuts.KeyAt(i); !pKey || !colMoved.contains(*pKey))
            if (++others == wanted)
                return static_cast<std::int32_t>(i + 1);
    return static_cast<std::int32_t>(colCuts.Count() + 1);
}

} // namespace

void LibraryCuts::MoveSelectedTo(std::size_t position)
{
    m_cWork.HandleDrop([&](clsSchedMan& cSchedMan) { MoveTogether(cSchedMan, position); });
}

void LibraryCuts::MoveTogether(clsSchedMan& cSchedMan, std::size_t position)
{
    if (MayReorder(cSchedMan))
        Grid().MoveTogether([&] {
            const LibraryWork::Busy cBusy(m_cWork);
            KeySet colMoved;
            const std::vector<std::size_t> colRows = Grid().SelectedRows();
            if (colRows.empty())
                return; // becoming busy processes messages
            for (const std::size_t row : colRows)
                colMoved.insert(Grid().KeyAt(row));
            const TextKey cFirst = Grid().KeyAt(colRows.front());
            const std::shared_ptr<clsCat> cLevel = Grid().CurrentCatViewing();
            cSchedMan.MoveCutsInCategory(cLevel, Grid().colSelCuts(),
                                         InFrontOf(*cLevel->SchedCuts(), colMoved, position));
            SayMoved(*cLevel, cFirst, colMoved.size());
            m_cPanes.ShowAgain(cSchedMan);
        });
}

void LibraryCuts::AskForPosition()
{
    m_cWork.HandleDrop([this](clsSchedMan& cSchedMan) {
        const std::vector<std::size_t> colRows = Grid().SelectedRows();
        const std::shared_ptr<clsCat> cLevel = m_cPanes.ShownCat(cSchedMan);
        if (colRows.empty() || !cLevel || !MayReorder(cSchedMan) || !Grid().MayMoveTogether())
            return;
        const std::wstring sLast = CountText(Grid().ListedCount());
        const std::optional<std::wstring> sTyped =
            m_cMod.Input(sPositionTitle,
                         L"Position in " + cLevel->CatName() + L" " + DecimalText(cLevel->CatLevel()) +
                             L", from 1 to " + sLast + L":",
                         CountText(colRows.front() + 1));
        if (!sTyped)
            return;
        const std::optional<double> dValue = NumericValue(*sTyped);
        const std::optional<std::int32_t> lPosition = dValue ? ToLong(*dValue) : std::nullopt;
        if (lPosition && *lPosition >= 1 && static_cast<std::size_t>(*lPosition) <= Grid().ListedCount())
            return MoveTogether(cSchedMan, static_cast<std::size_t>(*lPosition));
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, sPositionTitle,
                   L"Type a whole number from 1 to " + sLast + L".");
    });
}

void LibraryCuts::SendTo(eCatDragOptions eOption, const std::wstring& sNodeKey)
{
    m_cWork.HandleDrop([&](clsSchedMan& cSchedMan) {
        const std::optional<DraggedCuts> dragged = TakeDraggedCuts(cSchedMan);
        if (dragged && !dragged->colKeys.empty())
            Send(cSchedMan, eOption, sNodeKey, *dragged);
    });
}

// Takes the cuts before the category window opens.
void LibraryCuts::SendToChosen(eCatDragOptions eOption)
{
    m_cWork.HandleDrop([&](clsSchedMan& cSchedMan) {
        const std::optional<DraggedCuts> dragged = TakeDraggedCuts(cSchedMan);
        if (!dragged || dragged->colKeys.empty())
            return;
        CategoryRequest request;
        request.sCaption = eOption == eCopyHere ? L"Copy To" : L"Move To";
        request.bAllowNew = true;
        const bool bChosen = cSchedMan.ShowCatUI(request) == lChosen && request.cMainCatChosen;
        m_cPanes.ShowChangedTree(cSchedMan);
        if (!bChosen)
            return;
        const std::int32_t lLevel = request.cSubCatChosen ? request.cSubCatChosen->CatLevel() : 0;
        Send(cSchedMan, eOption, CategoryKey(request.cMainCatChosen->CatName(), lLevel), *dragged);
    });
}

void LibraryCuts::Send(clsSchedMan& cSchedMan, eCatDragOptions eOption, const std::wstring& sNodeKey,
                       const DraggedCuts& dragged)
{
    if (const std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, sNodeKey))
        Change(cSchedMan, eOption, TargetOf(cCat), dragged);
}

} // namespace ravlo
