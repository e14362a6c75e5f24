// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// A text that follows the pointer during a drag, such as how much is dragged; as the system's tooltips look.
class DragLabel
{
public:
    // Shown while it lives.
    DragLabel(HWND hOwner, HFONT hFont, int lDpi, std::wstring sText);
    ~DragLabel();
    DragLabel(const DragLabel&) = delete;
    DragLabel& operator=(const DragLabel&) = delete;

    // Call when the pointer has moved.
    void Follow() const noexcept;

private:
    std::wstring m_sText;
    int m_lDpi;
    HWND m_hTip; // null when it could not be made: then there is no label
};

} // namespace ravlo
