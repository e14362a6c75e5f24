// SPDX-License-Identifier: MIT
#include "ui/rotation/RotationListPresenter.h"

#include "base/ScopedFlag.h"
#include "modscheduler/ModScheduler.h"

#include <algorithm>

namespace ravlo
{

void RotationListPresenter::Open()
{
    m_cView.SetTitle(m_source.sTitle);
    Refresh();
}

void RotationListPresenter::Refresh()
{
    if (m_bReading) // the host ran during a read
        return;
    const ScopedFlag cReading(m_bReading);
    ListPage page;
    try
    {
        page = m_source.Read();
    }
    catch (...)
    {
        page.columns = m_page.columns;
        page.sHeading = L"This cannot be shown now: " + CurrentError().Description();
    }
    m_page = std::move(page);
    const std::size_t chosen = m_page.rows.empty() ? 0 : std::min(m_page.first, m_page.rows.size() - 1);
    m_cView.ShowPage(m_page, chosen);
    RowChosen(chosen);
}

void RotationListPresenter::RowChosen(std::size_t row)
{
    m_cView.ShowSentence(row < m_page.rows.size() ? m_page.rows[row].sSentence : std::wstring());
}

} // namespace ravlo
