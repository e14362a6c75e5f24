// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ravlo
{

// Folds case as the file system does: one character at a time by the upper-case table of the Basic
// Multilingual Plane, without linguistic rules or changes of length, the same on every platform. Nothing
// outside ASCII folds into ASCII. All comparisons of names and keys use these functions.
wchar_t FoldCase(wchar_t c) noexcept;
std::wstring FoldCase(std::wstring_view sText);

bool EqualIgnoringCase(std::wstring_view sLeft, std::wstring_view sRight) noexcept;

// Texts that are equal for EqualIgnoringCase have the same hash.
std::size_t HashIgnoringCase(std::wstring_view sText) noexcept;

} // namespace ravlo
