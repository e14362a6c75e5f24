// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// Helpers around the system's own controls.

// Creates a visible child control. Controls are in the tab order in which they are created, and screen
// readers name a list or an edit field after the label created just before it.
HWND MakeControl(HWND hParent, const wchar_t* sClass, const std::wstring& sText, DWORD lStyle, int lId,
                 DWORD lExStyle = 0);

std::wstring WindowText(HWND hWindow);

// The size a text takes in a font; wrapped at a width when that is not 0. Mnemonic signs take no room.
// lFlags: further DT_ numbers.
SIZE TextSize(HDC hDC, const std::wstring& sText, int lWrapAt = 0, UINT lFlags = 0) noexcept;

void SetFont(HWND hControl, HFONT hFont) noexcept;

// Lets the window of this thread under the mouse set its pointer now, without waiting for a move.
void AskForPointer() noexcept;

// Moves many children of one window at once, so that they do not pass over each other.
class Mover
{
public:
    explicit Mover(int lExpected) noexcept : m_hMoves(::BeginDeferWindowPos(lExpected)) {}
    ~Mover() { ::EndDeferWindowPos(m_hMoves); }
    Mover(const Mover&) = delete;
    Mover& operator=(const Mover&) = delete;

    void Move(HWND hControl, int x, int y, int cx, int cy) noexcept;

private:
    HDWP m_hMoves;
};

// The background of selected rows in a control without the focus: a tint of the selection's colour, since the
// system's grey on white is hard to see.
COLORREF UnfocusedSelection() noexcept;

} // namespace ravlo
