// SPDX-License-Identifier: MIT
#pragma once

#include "base/SearchText.h"

#include <string>
#include <vector>

namespace ravlo
{

// The names of the main categories as a list shows them: in their own order or sorted by name, all of them or
// those that contain each word of a query.
class CategoryNames
{
public:
    // In their own order.
    void Set(std::vector<std::wstring> colNames);
    void SortByName(bool bSort);
    bool SortedByName() const noexcept { return m_bSorted; }
    // An empty query shows all.
    void Narrow(const std::wstring& sQuery);
    bool Narrowed() const noexcept { return !m_words.Empty(); }

    // In the order shown.
    const std::vector<std::wstring>& All() const noexcept { return m_colAll; }
    const std::vector<std::wstring>& Shown() const noexcept { return m_colShown; }

private:
    void Arrange();

    std::vector<std::wstring> m_colOwnOrder;
    std::vector<std::wstring> m_colAll;
    std::vector<std::wstring> m_colShown;
    SearchWords m_words;
    bool m_bSorted = false;
};

} // namespace ravlo
