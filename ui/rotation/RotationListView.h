// SPDX-License-Identifier: MIT
#pragma once

#include "ui/rotation/ListPage.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// A list window on the screen. The page that is shown outlives its use here: the view reads rows when it
// paints them.
class RotationListView
{
public:
    virtual ~RotationListView() = default;
    virtual void SetTitle(const std::wstring& sTitle) = 0;
    // The heading, the columns and the rows; the view scrolls to the chosen row.
    virtual void ShowPage(const ListPage& page, std::size_t chosen) = 0;
    virtual void ShowSentence(const std::wstring& sText) = 0;
    virtual void CopyText(const std::wstring& sText) = 0; // to the clipboard
    virtual void Close() = 0;
};

} // namespace ravlo
