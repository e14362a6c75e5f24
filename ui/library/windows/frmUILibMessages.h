// SPDX-License-Identifier: MIT
#pragma once

// For the parts of frmUILibWindow alone: its posted messages, timers and keys.

#include <windows.h>

namespace ravlo
{

// What is not done inside a control's own message is posted: it may fill that control anew.
enum PostedMessage : UINT
{
    ePostedChecks = WM_APP + 1, // ticks may have changed
    ePostedShowNode,
    ePostedExpandRoot,
    ePostedEdit, // row and column from 1
    ePostedDrag,
    ePostedDropped,
    ePostedRepaint,
};

enum TimerId : UINT_PTR
{
    eTimerGrey = 1,
    eTimerDrag,
    eTimerRefresh,
};

inline bool Down(int lKey) { return ::GetKeyState(lKey) < 0; }

} // namespace ravlo
