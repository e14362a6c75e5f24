// SPDX-License-Identifier: MIT
#include "ui/library/clsSchedLibGridPresenter.h"

#include "base/SearchText.h"
#include "base/Text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sLayoutKey = L"iGridLibLayoutColSchedLib";
// A setting of its own: programs that know only the ten columns leave it alone, and read theirs as before.
constexpr const wchar_t* sFurtherKey = L"iGridLibFurtherColSchedLib";

bool AreConsecutive(const std::vector<std::size_t>& colRows)
{
    return colRows.back() - colRows.front() + 1 == colRows.size();
}

} // namespace

// ---- columns ----

void clsSchedLibGridPresenter::TakeGrid()
{
    if (m_cView.ColCount() == 0)
    {
        const RedrawOff cOff(m_cView);
        for (const GridColumn& column : colGridColumns)
            m_cView.AddCol(column.sHeader);
    }
    const UserSettings& cSettings = m_cMod.Ports().cUserSettings;
    m_cView.ShowLayout(ColumnLayout(cSettings.Get(sProgramTitle, sSection, sLayoutKey, L""),
                                    cSettings.Get(sProgramTitle, sSection, sFurtherKey, L"")));
}

void clsSchedLibGridPresenter::LetGoOfGrid()
{
    const ColumnLayout layout = m_cView.Layout();
    UserSettings& cSettings = m_cMod.Ports().cUserSettings;
    cSettings.Set(sProgramTitle, sSection, sLayoutKey, layout.Text());
    cSettings.Set(sProgramTitle, sSection, sFurtherKey, layout.FurtherText());
}

// ---- rows ----

TextKey clsSchedLibGridPresenter::KeyAt(std::size_t row) const
{
    if (!m_listed.colKeys.empty())
        return m_listed.colKeys[ListedRow(row)];
    const std::shared_ptr<Cut> cCut = CutAt(row); // kept: a host's cut may list others when asked
    return cCut->Key();
}

std::shared_ptr<clsCat> clsSchedLibGridPresenter::LevelAt(std::size_t row) const
{
    const auto run =
        std::upper_bound(m_listed.colRuns.begin(), m_listed.colRuns.end(), ListedRow(row),
                         [](std::size_t left, const ListedCuts::Run& right) { return left < right.end; });
    return run == m_listed.colRuns.end() ? nullptr : run->cLevel;
}

// Returns what use makes of a listed cut, or nothing of a cut that throws. A host's cut may list others when
// it is asked, so this one is kept.
template <class Use>
auto clsSchedLibGridPresenter::WithCut(std::size_t listed, std::size_t column, Use&& use) const
{
    const std::shared_ptr<Cut> cCut = ListedCut(listed);
    try
    {
        CutInList cut{*cCut, static_cast<std::int32_t>(listed + 1), std::nullopt,
                      m_cMod.Ports().cClock.Now()};
        if (column == nextToPlayColumn)
            cut.before = m_cNext.Before(m_listed, listed);
        if (column == playsColumn)
            cut.plays = m_cPlays.Of(m_listed.colKeys.empty() ? cCut->Key() : m_listed.colKeys[listed]);
        return use(cut);
    }
    catch (const std::exception&)
    {
        return decltype(use(std::declval<const CutInList&>()))();
    }
}

std::wstring clsSchedLibGridPresenter::CellText(std::size_t row, std::size_t column) const
{
    if (row >= RowCount())
        return {};
    return WithCut(ListedRow(row), column,
                   [column](const CutInList& cut) { return CellTextOf(column, cut); });
}

SortValue clsSchedLibGridPresenter::SortValueOf(std::size_t listed, std::size_t column) const
{
    return WithCut(listed, column,
                   [column](const CutInList& cut) { return ravlo::SortValueOf(column, cut); });
}

std::optional<std::size_t> clsSchedLibGridPresenter::FindRow(const std::wstring& sBeginning,
                                                             std::size_t start) const
{
    using Field = RowBeginnings::Field;
    const std::string sFolded = FoldForSearch(sBeginning);
    for (const Field eField : {Field::Artist, Field::Title})
        for (std::size_t step = 0; step < RowCount(); ++step)
        {
            const std::size_t row = (start + step) % RowCount();
            if (m_cBeginnings.Begins(CutAt(row), ListedRow(row), eField, sFolded))
                return row;
        }
    return std::nullopt;
}

// ---- selection ----

std::int32_t clsSchedLibGridPresenter::CurrentRow() const
{
    const std::optional<std::size_t> row = m_cView.CurrentRow();
    return row ? static_cast<std::int32_t>(*row + 1) : 0;
}

Cuts clsSchedLibGridPresenter::colSelCuts() const
{
    Cuts colCuts;
    for (const std::size_t row : SelectedRows())
        colCuts.push_back(CutAt(row));
    return colCuts;
}

void clsSchedLibGridPresenter::InvertSelection()
{
    std::vector<bool> bSelected(RowCount(), true);
    for (const std::size_t row : SelectedRows())
        bSelected[row] = false;
    m_cView.SetSelection(bSelected);
}

void clsSchedLibGridPresenter::SelectCurrentRow()
{
    const std::size_t row = m_cView.CurrentRow().value_or(0);
    if (row >= RowCount())
        return;
    std::vector<bool> bSelected(RowCount());
    bSelected[row] = true;
    m_cView.SetSelection(bSelected);
    m_cView.SetCurrentRow(row);
}

Cats clsSchedLibGridPresenter::colSubCatsDraggedFrom(const clsSchedMan& cSchedMan) const
{
    Cats colFrom;
    KeySet colNowhere; // not found in a level so far
    const auto Add = [&](const std::shared_ptr<clsCat>& cLevel) {
        if (!Contains(colFrom, cLevel))
            colFrom.push_back(cLevel);
    };
    for (const std::size_t row : SelectedRows())
        if (const std::shared_ptr<clsCat> cLevel = LevelAt(row))
            Add(cLevel);
        else
            colNowhere.insert(KeyAt(row));
    if (colNowhere.empty())
        return colFrom;
    const KeySet colWanted = colNowhere;
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    ForEachPlace(colMainCats.get(), colWanted,
                 [&](const std::shared_ptr<clsCat>& cLevel, const TextKey& cKey) {
        Add(cLevel);
        colNowhere.erase(cKey);
    });
    if (!colNowhere.empty())
        colFrom.push_back(std::make_shared<clsCat>(m_cMod, sNoCat, 0));
    return colFrom;
}

// ---- rows that were cut ----

void clsSchedLibGridPresenter::ShowPale(KeySet colKeys)
{
    if (colKeys.empty() && m_colPale.empty())
        return;
    m_colPale = std::move(colKeys);
    m_cView.Repaint();
}

bool clsSchedLibGridPresenter::IsPale(std::size_t row) const
{
    if (m_colPale.empty() || row >= RowCount())
        return false;
    try
    {
        return m_colPale.contains(KeyAt(row));
    }
    catch (const std::exception&)
    {
        return false;
    }
}

// ---- re-ordering ----

void clsSchedLibGridPresenter::Drop(const std::wstring& sPayload, std::optional<std::size_t> row)
{
    if (sPayload != sGridPayload)
        return RefuseSource();
    const std::vector<std::size_t> colRows = SelectedRows();
    if (MayReorder(colRows))
        MoveRows(colRows, row);
}

void clsSchedLibGridPresenter::RefuseSource() const
{
    m_cMod.Box(BoxIcon::None, BoxButtons::Ok, L"Scheduler Grid", L"Unrecognized Source for dragdrop!");
}

void clsSchedLibGridPresenter::MoveSelected(std::ptrdiff_t steps)
{
    const std::vector<std::size_t> colRows = SelectedRows();
    if (colRows.empty() || !MayReorder(colRows))
        return;
    const auto firstRow = static_cast<std::ptrdiff_t>(colRows.front());
    const auto behind = static_cast<std::ptrdiff_t>(colRows.back()) + 1;
    const auto end = static_cast<std::ptrdiff_t>(RowCount());
    if (steps < 0 && firstRow > 0)
        MoveRows(colRows, static_cast<std::size_t>(std::max<std::ptrdiff_t>(firstRow + steps, 0)));
    else if (steps > 0 && behind < end)
        MoveRows(colRows, behind + steps < end ? std::optional(static_cast<std::size_t>(behind + steps))
                                               : std::nullopt);
}

bool clsSchedLibGridPresenter::MayMove(const std::vector<std::size_t>& colRows) const
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
    return !colRows.empty() && ShowsSchedule();
}

bool clsSchedLibGridPresenter::MayReorder(const std::vector<std::size_t>& colRows) const
{
    if (!MayMove(colRows))
        return false;
    if (colRows.size() > 1 && !AreConsecutive(colRows))
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Operation Not Completed.",
                   L"When dragging and dropping multiple items in the scheduler grid for reordering, \r\n"
                   L"the items dragged from need to be in consecutive schedule order.");
        return false;
    }
    return true;
}

bool clsSchedLibGridPresenter::StartDrag()
{
    m_colDragged = SelectedRows();
    return !m_colDragged.empty();
}

std::wstring clsSchedLibGridPresenter::DraggedText() const
{
    return CountText(m_colDragged.size()) + (m_colDragged.size() == 1 ? L" cut" : L" cuts");
}

bool clsSchedLibGridPresenter::DropWouldMove(std::optional<std::size_t> row) const
{
    if (m_bBanOLEDrop || !m_order.IsSchedule() || m_colDragged.empty() || !AreConsecutive(m_colDragged))
        return false;
    const std::size_t into = row.value_or(RowCount());
    return into < m_colDragged.front() || into > m_colDragged.back() + 1;
}

void clsSchedLibGridPresenter::MoveRows(const std::vector<std::size_t>& colRows,
                                        std::optional<std::size_t> row)
{
    MoveAndShow(colRows, [&] { MoveRequested(row); });
}

void clsSchedLibGridPresenter::MoveTogether(const std::function<void()>& move)
{
    const std::vector<std::size_t> colRows = SelectedRows();
    if (MayMove(colRows))
        MoveAndShow(colRows, move);
}

void clsSchedLibGridPresenter::MoveAndShow(const std::vector<std::size_t>& colRows,
                                           const std::function<void()>& move)
{
    const RowOfCut first = RowOf(colRows.front());
    move();
    // The moved rows are still selected; the first of them becomes the current row, scrolled into view.
    const std::optional<std::size_t> now = FindRows({first}).front();
    if (!now)
        return;
    m_cView.SetCurrentRow(*now);
    m_cView.EnsureVisible(std::min(*now + colRows.size(), RowCount()) - 1);
    m_cView.EnsureVisible(*now);
}

// The rotation may have moved cuts since the rows were listed: use the cut's present position.
std::int32_t clsSchedLibGridPresenter::PositionInto(std::optional<std::size_t> row) const
{
    const CutCollection& colSchedCuts = *m_cCurrentCat->SchedCuts();
    const std::size_t end = colSchedCuts.Count() + 1;
    if (!row || *row >= RowCount())
        return static_cast<std::int32_t>(end);
    const std::optional<std::size_t> present = colSchedCuts.PositionOf(KeyAt(*row));
    return static_cast<std::int32_t>(present.value_or(*row) + 1);
}

// ---- removal ----

void clsSchedLibGridPresenter::RemoveSelectedFromCategory()
{
    const std::vector<std::size_t> colRows = SelectedRows();
    if (colRows.empty())
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"First Select Some Items In The Grid!",
                   L"There are no items selected to be remove category from!");
    else
        RemovalRequested(colRows);
}

} // namespace ravlo
