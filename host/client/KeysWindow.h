// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <windows.h>

namespace ravlo
{

// The controls of its dialog.
inline constexpr int lKeysDialog = 300;
inline constexpr int lKeysList = 301;

// A line of the help on keys and mouse; without a meaning it is a heading.
struct KeyHelp
{
    const wchar_t* sKey;
    const wchar_t* sMeaning;
};
std::span<const KeyHelp> KeysAndMouse();

// Shows what keys and mouse do in the library window, until it is closed.
void ShowKeysAndMouse(HWND hOwner);

} // namespace ravlo
