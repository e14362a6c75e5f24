// SPDX-License-Identifier: MIT
#pragma once

#include "ui/rotation/RotationListView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace ravlo
{

class ModScheduler;

// What a list window is about.
struct ListSource
{
    std::wstring sTitle;
    // Reads the page; may throw what the station throws, and may let the host run.
    std::function<ListPage()> Read;
};

// A window with a list that explains or forecasts: reads its page, reads it again on request, copies it.
class RotationListPresenter
{
public:
    RotationListPresenter(RotationListView& cView, ListSource source)
        : m_cView(cView), m_source(std::move(source))
    {
    }
    RotationListPresenter(const RotationListPresenter&) = delete;
    RotationListPresenter& operator=(const RotationListPresenter&) = delete;

    void Open();
    // A page that cannot be read leaves one sentence that says why.
    void Refresh();
    void RowChosen(std::size_t row);
    void CopyClick() { m_cView.CopyText(m_page.Text()); }
    void CloseClick() { m_cView.Close(); }

    const ListPage& Page() const noexcept { return m_page; }

private:
    RotationListView& m_cView;
    ListSource m_source;
    ListPage m_page;
    bool m_bReading = false;
};

} // namespace ravlo
