// SPDX-License-Identifier: MIT
#include "ui/library/clsSchedLibGridPresenter.h"

#include "base/SearchText.h"
#include "base/Text.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sLayoutKey = L"iGridLibLayoutColSchedLib";
// A setting of its own: programs that know only the ten columns keep it, and read theirs as ever.
constexpr const wchar_t* sFurtherKey = L"iGridLibFurtherColSchedLib";

// Empty for a cut that cannot be read.
template <class Ask> std::wstring TextOrNone(Ask&& ask)
{
    try
    {
        return ask();
    }
    catch (const std::exception&)
    {
        return {};
    }
}

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
    const std::string sFolded = FoldForSearch(sBeginning);
    for (const auto TextOfCut : {&Cut::Artist, &Cut::Title})
        for (std::size_t step = 0; step < RowCount(); ++step)
        {
            const std::size_t row = (start + step) % RowCount();
            const std::shared_ptr<Cut> cCut = CutAt(row); // kept: a host's cut may list others when asked
            if (BeginsFolded(TextOrNone([&] { return (cCut.get()->*TextOfCut)(); }), sFolded))
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

// ---- the place on the screen ----

clsSchedLibGridPresenter::RowOfCut clsSchedLibGridPresenter::RowOf(std::size_t row) const
{
    const std::shared_ptr<clsCat> cLevel = LevelAt(row);
    return {CutAt(row), cLevel ? cLevel->CatLevel() : 0, row};
}

clsSchedLibGridPresenter::Place clsSchedLibGridPresenter::CurrentPlace() const
{
    Place place = PlaceOnScreen();
    for (const std::size_t row : SelectedRows())
        place.colSelected.push_back(RowOf(row));
    return place;
}

// The place without the selection.
clsSchedLibGridPresenter::Place clsSchedLibGridPresenter::PlaceOnScreen() const
{
    Place place;
    const std::optional<std::size_t> current = m_cView.CurrentRow();
    if (current && *current < RowCount())
        place.current = RowOf(*current);
    const std::size_t top = m_cView.TopRow();
    if (top != 0 && top < RowCount())
    {
        place.top = RowOf(top);
        place.bAtTop = false;
    }
    return place;
}

// The rows' present positions. Finds them by the cut's object first, which reads no cut, and the others by
// key.
std::vector<std::optional<std::size_t>>
clsSchedLibGridPresenter::FindRows(const std::vector<RowOfCut>& colWanted) const
{
    std::vector<std::optional<std::size_t>> colFound(colWanted.size());
    std::unordered_multimap<const Cut*, std::size_t> colByObject;
    for (std::size_t i = 0; i < colWanted.size(); ++i)
        colByObject.emplace(colWanted[i].cCut.get(), i);
    std::size_t left = colWanted.size();
    const auto Match = [&](const auto& range, std::size_t row) {
        for (auto it = range.first; it != range.second; ++it)
            if (!colFound[it->second] && colWanted[it->second].lLevel == RowOf(row).lLevel)
            {
                colFound[it->second] = row;
                --left;
            }
    };
    for (std::size_t row = 0; row < RowCount() && left > 0; ++row)
        Match(colByObject.equal_range(CutAt(row).get()), row);
    if (left == 0)
        return colFound;
    const auto KeyOf = [](const auto& ask) -> TextKey {
        try
        {
            return ask();
        }
        catch (const std::exception&)
        {
            return {}; // a cut that cannot be read is not found
        }
    };
    std::unordered_multimap<TextKey, std::size_t> colByKey;
    for (std::size_t i = 0; i < colWanted.size(); ++i)
        if (!colFound[i])
            if (TextKey cKey = KeyOf([&] { return colWanted[i].cCut->Key(); }); !cKey.Empty())
                colByKey.emplace(std::move(cKey), i);
    for (std::size_t row = 0; row < RowCount() && left > 0; ++row)
        Match(colByKey.equal_range(KeyOf([&] { return KeyAt(row); })), row);
    return colFound;
}

void clsSchedLibGridPresenter::ReturnTo(const Place& place)
{
    if (RowCount() == 0 || (place.colSelected.empty() && !place.current && place.bAtTop))
        return;
    std::vector<RowOfCut> colWanted = place.colSelected;
    if (place.current)
        colWanted.push_back(*place.current);
    if (!place.bAtTop)
        colWanted.push_back(place.top);
    const std::vector<std::optional<std::size_t>> colRows = FindRows(colWanted);

    std::vector<bool> bSelected(RowCount());
    std::size_t goneBefore = 0; // selected rows before the current one that no longer exist
    for (std::size_t i = 0; i < place.colSelected.size(); ++i)
        if (colRows[i])
            bSelected[*colRows[i]] = true;
        else if (place.current && colWanted[i].row < place.current->row)
            ++goneBefore;
    m_cView.SetSelection(bSelected);
    const std::size_t last = RowCount() - 1;
    if (place.current) // when it is gone: the row in its place
        m_cView.SetCurrentRow(
            colRows[place.colSelected.size()].value_or(std::min(place.current->row - goneBefore, last)));
    m_cView.SetTopRow(place.bAtTop ? 0 : colRows.back().value_or(std::min(place.top.row, last)));
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
        return m_colPale.count(KeyAt(row)) != 0;
    }
    catch (const std::exception&)
    {
        return false;
    }
}

void clsSchedLibGridPresenter::GoToCut(const TextKey& cKey)
{
    for (std::size_t row = 0; row < RowCount(); ++row)
    {
        if (KeyAt(row) != cKey)
            continue;
        std::vector<bool> bSelected(RowCount());
        bSelected[row] = true;
        m_cView.SetSelection(bSelected);
        m_cView.SetCurrentRow(row);
        m_cView.EnsureVisible(row);
        return;
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
