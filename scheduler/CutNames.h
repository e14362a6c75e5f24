// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <string>
#include <vector>

namespace ravlo
{

// The cut's category names as one text: its category text; when a name contains "/", which would then be
// split, each name behind the separator.
constexpr wchar_t cNameSeparator = L'\x1F';
std::wstring NamesText(const std::vector<std::wstring>& colNames);
std::wstring NamesTextOf(const Cut& cCut);
// Gives the cut exactly these names.
void SetNamesText(Cut& cCut, const std::wstring& sText);
// Whether two such texts have the same names, in any order and case.
bool HaveSameNames(const std::wstring& sLeft, const std::wstring& sRight);

} // namespace ravlo
