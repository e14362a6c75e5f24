// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/WindowSubclass.h"

#include <functional>
#include <memory>
#include <string>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

// What a screen reader reads of a tree view: all that the system says of it, and a description of each item,
// for what is drawn and not part of the items' texts.
class DescribedTree
{
public:
    // Empty: the item has no description.
    using Description = std::function<std::wstring(HTREEITEM hItem)>;

    DescribedTree(HWND hTree, Description description);
    DescribedTree(const DescribedTree&) = delete;
    DescribedTree& operator=(const DescribedTree&) = delete;

    // As WindowSubclass::Direct.
    LRESULT Direct(UINT lMessage, WPARAM wParam, LPARAM lParam) const
    {
        return m_cSubclass.Direct(lMessage, wParam, lParam);
    }

private:
    LRESULT OnGetObject(WPARAM wParam, LPARAM lParam) const noexcept;

    HWND m_hTree;
    // A reader may keep what it got longer than the window lives.
    std::shared_ptr<const Description> m_description;
    WindowSubclass m_cSubclass;
};

} // namespace ravlo
