// SPDX-License-Identifier: MIT
#include "ui/library/ViewOrder.h"

#include <utility>

namespace ravlo
{

void ViewOrder::Reset(std::size_t listed)
{
    *this = ViewOrder();
    m_listed = listed;
}

void ViewOrder::Sort(std::vector<std::size_t> colSorted)
{
    m_colSorted = std::move(colSorted);
    Combine();
}

void ViewOrder::Narrow(std::vector<bool> bKept)
{
    m_bNarrowed = !bKept.empty();
    m_bKept = std::move(bKept);
    Combine();
}

void ViewOrder::Combine()
{
    m_colShown.clear();
    if (IsSchedule())
        return;
    for (std::size_t place = 0; place < m_listed; ++place)
    {
        const std::size_t row = IsSorted() ? m_colSorted[place] : place;
        if (!m_bNarrowed || m_bKept[row])
            m_colShown.push_back(row);
    }
}

} // namespace ravlo
