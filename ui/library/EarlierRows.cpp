// SPDX-License-Identifier: MIT
#include "ui/library/EarlierRows.h"

namespace ravlo
{

std::optional<std::size_t> EarlierRows::Of(std::size_t listed) const
{
    if (SameRow(listed))
        return listed;
    if (m_colByCut.empty())
        for (std::size_t i = 0; i < m_before.colCuts.size(); ++i)
            m_colByCut.emplace(m_before.colCuts[i].get(), i);
    if (const auto found = m_colByCut.find(m_now.colCuts[listed].get()); found != m_colByCut.end())
        return found->second;
    if (m_now.colKeys.empty())
        return std::nullopt;
    if (m_colByKey.empty())
        for (std::size_t i = 0; i < m_before.colKeys.size(); ++i)
            m_colByKey.emplace(m_before.colKeys[i], i);
    const auto found = m_colByKey.find(m_now.colKeys[listed]);
    return found == m_colByKey.end() ? std::nullopt : std::optional(found->second);
}

bool EarlierRows::SameRow(std::size_t listed) const
{
    if (listed >= m_before.colCuts.size())
        return false;
    if (m_before.colCuts[listed] == m_now.colCuts[listed])
        return true;
    return listed < m_before.colKeys.size() && !m_now.colKeys.empty() &&
           m_before.colKeys[listed] == m_now.colKeys[listed];
}

} // namespace ravlo
