// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"

#include <string>
#include <string_view>

namespace ravlo
{

// The names of the main categories that an operation has touched, each once. To save them, look each up again
// by name.
class AffectedCats
{
public:
    void Touch(const std::wstring& sCatName)
    {
        if (!Contains(sCatName)) // it usually does
            m_colNames.Add(TextKey(sCatName), sCatName);
    }
    void Remove(const std::wstring& sCatName) noexcept { m_colNames.Remove(std::wstring_view(sCatName)); }
    bool Contains(std::wstring_view sCatName) const noexcept { return m_colNames.Exists(sCatName); }
    std::size_t Count() const noexcept { return m_colNames.Count(); }
    auto begin() const { return m_colNames.begin(); }
    auto end() const { return m_colNames.end(); }

private:
    OrderedKeyedCollection<std::wstring> m_colNames;
};

} // namespace ravlo
