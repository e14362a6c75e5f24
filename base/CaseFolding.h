// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ravlo
{

// Case folding as the file system does it: ordinal and simple, one character at a time by the upper-case
// table of the Basic Multilingual Plane, without linguistic rules and without length changes; nothing outside
// ASCII folds into ASCII. The same on every platform. Every comparison of names and keys in the system goes
// through here.
wchar_t FoldCase(wchar_t c) noexcept;
std::wstring FoldCase(std::wstring_view sText);

bool EqualIgnoringCase(std::wstring_view sLeft, std::wstring_view sRight) noexcept;

// Equal for texts that EqualIgnoringCase calls equal.
std::size_t HashIgnoringCase(std::wstring_view sText) noexcept;

} // namespace ravlo
