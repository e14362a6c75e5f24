// SPDX-License-Identifier: MIT
#pragma once

#include "base/SearchText.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace ravlo
{

// What a user types in a list or tree to go to the entry that begins with it. A pause of more than a second
// starts a new text.
class TypeAhead
{
public:
    // lNow: the clock's tick count. False for a character that is not part of a text, such as a blank after
    // no letter.
    bool Type(wchar_t cTyped, std::uint32_t lNow)
    {
        constexpr std::uint32_t lPauseMs = 1000;
        const bool bContinues = !m_sTyped.empty() && lNow - m_lTyped < lPauseMs;
        if (cTyped < L' ' || cTyped == 0x7F || (cTyped == L' ' && !bContinues))
            return false;
        if (!bContinues)
            m_sTyped.clear();
        m_sTyped += cTyped;
        m_lTyped = lNow;
        return true;
    }

    // Calls find, which looks for the next entry that begins with the text, without regard to
    // case and accents: from the current one on, or behind it. The first letter looks behind it, further
    // letters from it on; the same letter again and again visits each entry that begins with it.
    using FindNext =
        std::function<std::optional<std::size_t>(const std::string& sFoldedBeginning, bool bBehind)>;
    std::optional<std::size_t> Find(const FindNext& find) const
    {
        std::optional<std::size_t> found = find(FoldForSearch(m_sTyped), m_sTyped.size() == 1);
        if (!found && m_sTyped.find_first_not_of(m_sTyped[0]) == std::wstring::npos)
            found = find(FoldForSearch(m_sTyped.substr(0, 1)), true);
        return found;
    }

private:
    std::wstring m_sTyped;
    std::uint32_t m_lTyped = 0;
};

} // namespace ravlo
