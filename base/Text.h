// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

inline constexpr wchar_t cTab = L'\t';
inline constexpr const wchar_t* sCrLf = L"\r\n";

// Leading and trailing blanks (U+0020 only) removed.
std::wstring Trim(std::wstring_view sText);

// The pieces between the delimiters; one more piece than there are delimiters, so "" gives one empty piece.
std::vector<std::wstring> Split(std::wstring_view sText, std::wstring_view sDelimiter);

std::wstring DecimalText(std::int64_t value);
std::wstring CountText(std::size_t count);

// A single as automation converts it to text: at most 7 significant digits, no trailing zeros, and the
// exponent form
// ("1E+07", "1.5E-05") where the platform's conversion uses it. Invariant locale.
std::wstring SingleText(float sngValue);

// The value of a text that reads as a number, by the platform's automation conversion in the invariant
// locale: surrounding blanks, a leading or trailing sign, parentheses for negative, a currency sign, digits
// with '.' and thousands commas, an exponent (E or D), &H and &O forms. Nothing when the text is no number.
// The same on every platform.
std::optional<double> NumericValue(std::wstring_view sText);
inline bool IsNumeric(std::wstring_view sText) { return NumericValue(sText).has_value(); }

// To a 32-bit integer, rounded to nearest with ties to even. Nothing when it does not fit or is no number.
std::optional<std::int32_t> ToLong(double dValue) noexcept;

// <name> TAB <level>: the key of a category level; with level 0 the key of a main category.
std::wstring CategoryKey(const std::wstring& sCatName, std::int32_t lCatLevel);

// A category key, split at its first TAB. The views refer to sKey.
struct CategoryKeyParts
{
    std::wstring_view sName;
    std::optional<std::wstring_view> sLevel; // nothing without a TAB
};
CategoryKeyParts SplitCategoryKey(std::wstring_view sKey) noexcept;

} // namespace ravlo
