// SPDX-License-Identifier: MIT
#include "ui/library/clsSchedLibGrid.h"

#include "collections/Text.h"
#include "ui/library/LibraryFilling.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sLayoutKey = L"iGridLibLayoutColSchedLib";

// The columns, in their order.
enum Column : std::size_t
{
    eColPos,
    eColID,
    eColArtist,
    eColTitle,
    eColDur,
    eColCat,
    eColLvl,
    eColYear,
    eColOpener,
    eColPath,
};

std::wstring TextOf(const Cut& cCut, std::size_t lColumn)
{
    switch (lColumn)
    {
    case eColID:
        return DecimalText(cCut.ID());
    case eColArtist:
        return cCut.Artist();
    case eColTitle:
        return cCut.Title();
    case eColDur:
        return cCut.DurationText();
    case eColCat:
        return cCut.CategoryText();
    case eColLvl:
        return DecimalText(cCut.CatLevel());
    case eColYear:
        return DecimalText(cCut.Year());
    case eColOpener:
        return cCut.Opener() ? L"Y" : L"N";
    case eColPath:
        return cCut.Path();
    default:
        return {};
    }
}

bool BeginsWith(const std::wstring& sText, const std::wstring& sBeginning)
{
    return EqualIgnoringCase(std::wstring_view(sText).substr(0, sBeginning.size()), sBeginning);
}

bool AreConsecutive(const std::vector<std::size_t>& colRows)
{
    return colRows.back() - colRows.front() + 1 == colRows.size();
}

} // namespace

// ---- columns ----

void clsSchedLibGrid::TakeGrid()
{
    m_cView.SetRedraw(false);
    EnsureColumns(*this);
    m_cView.SetRedraw(true);
    m_cView.ShowLayout(
        ColumnLayout(m_cMod.Outside().cUserSettings.Get(sProgramTitle, sSection, sLayoutKey, L"")));
}

void clsSchedLibGrid::LetGoOfGrid()
{
    m_cMod.Outside().cUserSettings.Set(sProgramTitle, sSection, sLayoutKey, m_cView.Layout().Text());
}

// ---- rows ----

std::shared_ptr<DataBase> clsSchedLibGrid::DataBase() const
{
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    return cSchedMan ? cSchedMan->DataBase() : nullptr;
}

void clsSchedLibGrid::TakeRows(ListedCuts listed)
{
    m_listed = std::move(listed);
    m_cView.SetRowCount(RowCount());
}

std::shared_ptr<clsCat> clsSchedLibGrid::LevelAt(std::size_t lRow) const
{
    const auto run =
        std::upper_bound(m_listed.colRuns.begin(), m_listed.colRuns.end(), lRow,
                         [](std::size_t lLeft, const ListedCuts::Run& right) { return lLeft < right.lEnd; });
    return run == m_listed.colRuns.end() ? nullptr : run->cLevel;
}

std::wstring clsSchedLibGrid::CellText(std::size_t lRow, std::size_t lColumn) const
{
    if (lRow >= RowCount())
        return {};
    if (lColumn == eColPos)
        return DecimalText(static_cast<std::int64_t>(lRow + 1));
    try
    {
        return TextOf(*CutAt(lRow), lColumn);
    }
    catch (const std::exception&)
    {
        return {};
    }
}

std::optional<std::size_t> clsSchedLibGrid::FindRow(const std::wstring& sBeginning, std::size_t lStart) const
{
    for (const std::size_t lColumn : {eColArtist, eColTitle})
        for (std::size_t lStep = 0; lStep < RowCount(); ++lStep)
        {
            const std::size_t lRow = (lStart + lStep) % RowCount();
            if (BeginsWith(CellText(lRow, lColumn), sBeginning))
                return lRow;
        }
    return std::nullopt;
}

// ---- selection ----

std::int32_t clsSchedLibGrid::CurrentRow() const
{
    const std::optional<std::size_t> lRow = m_cView.CurrentRow();
    return lRow ? static_cast<std::int32_t>(*lRow + 1) : 0;
}

Cuts clsSchedLibGrid::colSelCuts() const
{
    Cuts colCuts;
    for (const std::size_t lRow : SelectedRows())
        colCuts.push_back(CutAt(lRow));
    return colCuts;
}

void clsSchedLibGrid::InvertSelection()
{
    std::vector<bool> bSelected(RowCount(), true);
    for (const std::size_t lRow : SelectedRows())
        bSelected[lRow] = false;
    m_cView.SetSelection(bSelected);
}

Cats clsSchedLibGrid::colSubCatsDraggedFrom() const
{
    Cats colFrom;
    std::unordered_set<const Cut*> colNowhere; // as far as the levels looked at tell
    const auto Add = [&](const std::shared_ptr<clsCat>& cLevel)
    {
        if (std::find(colFrom.begin(), colFrom.end(), cLevel) == colFrom.end())
            colFrom.push_back(cLevel);
    };
    for (const std::size_t lRow : SelectedRows())
        if (const std::shared_ptr<clsCat> cLevel = LevelAt(lRow))
            Add(cLevel);
        else
            colNowhere.insert(CutAt(lRow).get());
    if (colNowhere.empty())
        return colFrom;
    const std::unordered_set<const Cut*> colWanted = colNowhere;
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan ? cSchedMan->colMainCats() : nullptr)
        for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
            for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
                for (const std::shared_ptr<Cut>& cCut : *cLevel->SchedCuts())
                    if (colWanted.count(cCut.get()) != 0)
                    {
                        Add(cLevel);
                        colNowhere.erase(cCut.get());
                    }
    if (!colNowhere.empty())
        colFrom.push_back(std::make_shared<clsCat>(m_cMod, sNoCat, 0));
    return colFrom;
}

clsSchedLibGrid::Place clsSchedLibGrid::CurrentPlace() const
{
    Place place;
    place.colSelected = colSelCuts();
    const std::optional<std::size_t> lCurrent = m_cView.CurrentRow();
    if (lCurrent && *lCurrent < RowCount())
    {
        place.cCurrent = CutAt(*lCurrent);
        place.lCurrentRow = *lCurrent;
    }
    place.lTopRow = m_cView.TopRow();
    if (place.lTopRow != 0 && place.lTopRow < RowCount())
        place.cTop = CutAt(place.lTopRow);
    return place;
}

void clsSchedLibGrid::ReturnTo(const Place& place)
{
    if (RowCount() == 0 || (place.colSelected.empty() && !place.cCurrent && place.lTopRow == 0))
        return;
    std::unordered_set<const Cut*> colWanted;
    for (const std::shared_ptr<Cut>& cCut : place.colSelected)
        colWanted.insert(cCut.get());
    std::vector<bool> bSelected(RowCount());
    std::optional<std::size_t> lCurrent;
    std::size_t lTop = std::min(place.lTopRow, RowCount() - 1); // of a cut that is gone: the same place
    for (std::size_t lRow = 0; lRow < RowCount(); ++lRow)
    {
        const Cut* const pCut = CutAt(lRow).get();
        bSelected[lRow] = colWanted.erase(pCut) != 0; // a cut in two levels is selected once
        if (pCut == place.cCurrent.get() && !lCurrent)
            lCurrent = lRow;
        if (pCut == place.cTop.get())
            lTop = lRow;
    }
    m_cView.SetSelection(bSelected);
    if (place.cCurrent) // one that is gone: what stands in its place now
        m_cView.SetCurrentRow(lCurrent.value_or(std::min(place.lCurrentRow, RowCount() - 1)));
    m_cView.SetTopRow(lTop);
}

// ---- re-ordering ----

void clsSchedLibGrid::Drop(const std::wstring& sPayload, std::optional<std::size_t> lRow)
{
    if (sPayload != sGridPayload)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, L"Scheduler Grid", L"Unrecognized Source for dragdrop!");
        return;
    }
    const std::vector<std::size_t> colRows = SelectedRows();
    if (MayReorder(colRows))
        MoveRows(colRows, lRow);
}

void clsSchedLibGrid::MoveSelected(bool bUp)
{
    const std::vector<std::size_t> colRows = SelectedRows();
    if (colRows.empty() || !MayReorder(colRows))
        return;
    const std::size_t lLast = RowCount() - 1;
    if (bUp && colRows.front() > 0)
        MoveRows(colRows, colRows.front() - 1);
    else if (!bUp && colRows.back() < lLast)
        MoveRows(colRows, colRows.back() + 1 == lLast ? std::nullopt : std::optional(colRows.back() + 2));
}

bool clsSchedLibGrid::MayReorder(const std::vector<std::size_t>& colRows) const
{
    if (m_bBanOLEDrop)
    {
        m_cMod.Box(
            BoxIcon::Information, BoxButtons::Ok,
            L"View Inside a Category Level to Enable Dragging and Dropping In The Grid.",
            L"Dragging and dropping in the grid to change schedule order is only enabled,\r\n"
            L"or indeed makes any sense, when you are viewing within a category level.\r\n\r\n"
            L"To view inside a category level, expand the tree for the category, \r\n"
            L"and double-left click the desired category level.\r\n\r\n"
            L"Then you may drag the items around in the grid to change the schedule order.\r\n\r\n"
            L"Also, you can select multiple items and drag them into different categories in the tree.");
        return false;
    }
    if (colRows.size() > 1 && !AreConsecutive(colRows))
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Operation Not Completed.",
                   L"When dragging and dropping multiple items in the scheduler grid for reordering, \r\n"
                   L"the items dragged from need to be in consecutive schedule order.");
        return false;
    }
    return !colRows.empty();
}

bool clsSchedLibGrid::StartDrag()
{
    m_colDragged = SelectedRows();
    return !m_colDragged.empty();
}

bool clsSchedLibGrid::DropWouldMove(std::optional<std::size_t> lRow) const
{
    if (m_bBanOLEDrop || m_colDragged.empty() || !AreConsecutive(m_colDragged))
        return false;
    const std::size_t lInto = lRow.value_or(RowCount());
    return lInto < m_colDragged.front() || lInto > m_colDragged.back() + 1;
}

void clsSchedLibGrid::MoveRows(const std::vector<std::size_t>& colRows, std::optional<std::size_t> lRow)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    if (!cSchedMan)
        return;
    const Cuts colCuts = colSelCuts();
    OLEDragDropOperationStarted();
    cSchedMan->MoveCutsInCategory(m_cCurrentCat, colCuts, PositionInto(lRow));
    OLEDragCompleted();
    // Selected they are still; the first of them becomes the current one, in view.
    const auto First = std::find(m_listed.colCuts.begin(), m_listed.colCuts.end(), colCuts.front());
    if (First == m_listed.colCuts.end())
        return;
    const auto lFirst = static_cast<std::size_t>(First - m_listed.colCuts.begin());
    m_cView.SetCurrentRow(lFirst);
    m_cView.EnsureVisible(std::min(lFirst + colRows.size(), RowCount()) - 1);
    m_cView.EnsureVisible(lFirst);
}

// The rotation may have moved cuts since the rows were listed: what counts is where the cut of the row stands
// at present.
std::int32_t clsSchedLibGrid::PositionInto(std::optional<std::size_t> lRow) const
{
    const CutCollection& colSchedCuts = *m_cCurrentCat->SchedCuts();
    const std::size_t lEnd = colSchedCuts.Count() + 1;
    if (!lRow || *lRow >= RowCount())
        return static_cast<std::int32_t>(lEnd);
    const std::optional<std::size_t> lPresent = colSchedCuts.PositionOf(CutAt(*lRow)->Key());
    return static_cast<std::int32_t>(lPresent.value_or(*lRow) + 1);
}

// ---- removal ----

void clsSchedLibGrid::RemoveSelectedFromCategory()
{
    const std::vector<std::size_t> colRows = SelectedRows();
    if (colRows.empty())
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"First Select Some Items In The Grid!",
                   L"There are no items selected to be remove category from!");
    else
        RemovalRequested(colRows);
}

} // namespace ravlo
