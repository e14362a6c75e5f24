// SPDX-License-Identifier: MIT
// The place of the cut grid on the screen: selection, current row and scroll position.
#include "ui/library/clsSchedLibGridPresenter.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace ravlo
{

clsSchedLibGridPresenter::RowOfCut clsSchedLibGridPresenter::RowOf(std::size_t row) const
{
    const std::shared_ptr<clsCat> cLevel = LevelAt(row);
    return {CutAt(row), cLevel ? cLevel->CatLevel() : 0, row};
}

clsSchedLibGridPresenter::Place clsSchedLibGridPresenter::CurrentPlace() const
{
    if (m_sought && m_sought->bSelected == SelectedListed())
        return m_sought->place;
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
    m_sought.reset();
    if (place.colSelected.empty() && !place.current && place.bAtTop)
        return;
    if (RowCount() == 0)
        return Seek(place);
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
    if (std::find(colRows.begin(), colRows.end(), std::nullopt) != colRows.end())
        Seek(place);
}

void clsSchedLibGridPresenter::Seek(const Place& place)
{
    if (m_bIncomplete)
        m_sought = Sought{place, SelectedListed()};
}

void clsSchedLibGridPresenter::SetIncomplete(bool bIncomplete)
{
    m_bIncomplete = bIncomplete;
    const std::optional<Sought> sought = bIncomplete ? std::nullopt : std::exchange(m_sought, std::nullopt);
    if (sought && sought->bSelected == SelectedListed())
        ReturnTo(sought->place);
}

bool clsSchedLibGridPresenter::GoToCut(const TextKey& cKey)
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
        return true;
    }
    return false;
}

} // namespace ravlo
