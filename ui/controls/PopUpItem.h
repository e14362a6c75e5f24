// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// An item of a pop-up menu that a presenter makes and its view shows.
struct PopUpItem
{
    std::wstring sCaption;        // "&" marks the letter that chooses it; empty: a line between items
    std::function<void()> chosen; // called by the presenter, after the menu has closed
    bool bEnabled = true;
    bool bChecked = false;
    std::vector<PopUpItem> colItems = {}; // of the menu it opens; empty: it is chosen itself
};
using PopUpMenu = std::vector<PopUpItem>;

// A text as a caption needs it to show "&" as it is.
inline std::wstring PlainCaption(const std::wstring& sText)
{
    std::wstring sDoubled;
    for (const wchar_t c : sText)
        sDoubled.append(c == L'&' ? 2 : 1, c);
    return sDoubled;
}

} // namespace ravlo
