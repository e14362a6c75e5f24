// SPDX-License-Identifier: MIT
// The view of the cut grid's rows: which are shown, and in which order.
#include "ui/library/clsSchedLibGridPresenter.h"

#include "base/CaseFolding.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

void clsSchedLibGridPresenter::Show(ListedCuts listed)
{
    const RedrawOff cOff(m_cView);
    if (!EqualIgnoringCase(listed.strCatKey, m_listed.strCatKey))
        m_hidden.reset();
    else if (m_hidden)
        m_hidden->bSelected.clear();
    m_sought.reset();
    const ListedCuts before = std::exchange(m_listed, std::move(listed));
    m_cNext.Reset();
    m_cBeginnings.Reset(m_listed.colCuts.size());
    m_order.Reset(m_listed.colCuts.size());
    const EarlierRows cEarlier(before, m_listed);
    for (const std::function<void(ViewOrder&, const EarlierRows&)>& Arrange : Arrangers)
        Arrange(m_order, cEarlier);
    m_cView.SetRowCount(RowCount());
}

void clsSchedLibGridPresenter::Rearrange(const std::function<void(ViewOrder& cOrder)>& change)
{
    const RedrawOff cOff(m_cView);
    const std::optional<std::size_t> current = m_cView.CurrentRow();
    const std::size_t top = m_cView.TopRow();
    const bool bWasNarrowed = m_order.IsNarrowed();
    const std::vector<bool> bSelected = RememberHidden(bWasNarrowed);
    const bool bCurrent = current && *current < RowCount();
    const std::size_t currentListed = bCurrent ? ListedRow(*current) : 0;

    change(m_order);
    m_cView.SetRowCount(RowCount());
    const std::optional<std::size_t> now = bCurrent ? RowOfListed(currentListed) : std::nullopt;
    if (now)
    {
        // As far below the upper edge as before.
        const std::size_t below = *current - std::min(top, *current);
        m_cView.SetCurrentRow(*now);
        m_cView.SetTopRow(*now - std::min(below, *now));
        m_cView.EnsureVisible(*now);
    }
    else if (bWasNarrowed && !m_order.IsNarrowed() && m_hidden)
        ReturnTo(m_hidden->place);
    // Last: what was selected in the narrowed list stays so in the whole one.
    std::vector<bool> bLeft = SelectListed(bSelected);
    if (m_sought)
        m_sought->bSelected = bLeft;
    if (!m_order.IsNarrowed())
        m_hidden.reset();
    else if (m_hidden)
        m_hidden->bLeft = std::move(bLeft);
}

// Returns what is to be selected next, by listed row: what is selected, and what was hidden unless the user
// has changed the selection since.
std::vector<bool> clsSchedLibGridPresenter::RememberHidden(bool bWasNarrowed)
{
    std::vector<bool> bSelected = SelectedListed();
    if (m_sought && m_sought->bSelected != bSelected)
        m_sought.reset();
    if (!bWasNarrowed)
        m_hidden = Hidden{PlaceOnScreen(), bSelected, {}};
    else if (m_hidden && !m_hidden->bSelected.empty() && m_hidden->bLeft == bSelected)
        return m_hidden->bSelected;
    else if (m_hidden)
        m_hidden->bSelected = bSelected;
    return bSelected;
}

std::vector<bool> clsSchedLibGridPresenter::SelectedListed() const
{
    std::vector<bool> bSelected(ListedCount());
    for (const std::size_t row : SelectedRows())
        bSelected[ListedRow(row)] = true;
    return bSelected;
}

// Returns those that are shown.
std::vector<bool> clsSchedLibGridPresenter::SelectListed(const std::vector<bool>& bListed)
{
    std::vector<bool> bSelected(RowCount());
    std::vector<bool> bShown(bListed.size());
    for (std::size_t row = 0; row < bSelected.size(); ++row)
        bShown[ListedRow(row)] = bSelected[row] = bListed[ListedRow(row)];
    if (std::find(bSelected.begin(), bSelected.end(), true) != bSelected.end())
        m_cView.SetSelection(bSelected);
    return bShown;
}

std::optional<std::size_t> clsSchedLibGridPresenter::RowOfListed(std::size_t listed) const
{
    if (m_order.IsSchedule())
        return listed;
    for (std::size_t row = 0; row < RowCount(); ++row)
        if (ListedRow(row) == listed)
            return row;
    return std::nullopt;
}

bool clsSchedLibGridPresenter::ShowsSchedule() const
{
    if (m_order.IsSchedule())
        return true;
    if (ReorderRefused)
        ReorderRefused(m_order.IsNarrowed() ? L"The list is narrowed: clear Find to change the order."
                                            : L"The list is sorted: return to schedule order to change it.");
    return false;
}

} // namespace ravlo
