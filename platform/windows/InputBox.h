// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <windows.h>

namespace ravlo
{

// Asks for one line of text in a modal dialog that is centred on its owner (or on the screen without one):
// the prompt, wrapped, an edit field with sText selected, OK (Enter) and Cancel (Esc). The prompt is the edit
// field's accessible name. Nothing when it was cancelled or could not be shown.
std::optional<std::wstring> ShowInputBox(HWND hOwner, const std::wstring& sTitle, const std::wstring& sPrompt,
                                         const std::wstring& sText = {});

// The ids of its controls; the buttons are IDOK and IDCANCEL.
inline constexpr int lInputBoxPrompt = 100;
inline constexpr int lInputBoxEdit = 101;

} // namespace ravlo
