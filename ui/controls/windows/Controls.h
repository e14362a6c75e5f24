// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <windows.h>

namespace ravlo
{

// Helpers around the system's own controls.

// Makes a visible child control. The order in which controls are made is their tab order, and a list or an
// edit field is named for screen readers by the label made right before it.
HWND MakeControl(HWND hParent, const wchar_t* sClass, const std::wstring& sText, DWORD lStyle, int lId,
                 DWORD lExStyle = 0);

std::wstring WindowText(HWND hWindow);

// The size a text takes in a font; wrapped at a width when that is not 0. Mnemonic signs take no room.
// lFlags: DT_ numbers besides.
SIZE TextSize(HDC hDC, const std::wstring& sText, int lWrapAt = 0, UINT lFlags = 0) noexcept;

void SetFont(HWND hControl, HFONT hFont) noexcept;

// Lets the window of this thread that is under the mouse set its pointer anew, without waiting for a move.
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

} // namespace ravlo
