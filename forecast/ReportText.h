// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "forecast/Health.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ravlo
{

// A text for HTML and SVG, in content and in quoted attributes: & < > and quotes escaped, what those formats
// do not allow (control characters, halves of surrogate pairs) replaced by U+FFFD.
std::string HtmlText(std::wstring_view sText);

// The text, or the beginning of a longer one and an ellipsis, together that many characters. Keeps surrogate
// pairs whole. Precondition: most is at least 2.
std::wstring Shortened(const std::wstring& sText, std::size_t most);

// A text for JSON, with its quotes.
std::string JsonText(std::wstring_view sText);

// A number with at most so many decimals, without trailing zeros, with a point in every locale.
std::string NumberText(double dValue, int lDecimals = 2);
inline std::string NumberText(std::int32_t lValue) { return std::to_string(lValue); }

// "45", or "any" when nothing limits it.
std::string AttainableText(std::int32_t lMins);

// "37 %".
std::string PercentText(double dShare);

// "pop 1": a category level as people read it.
std::wstring LevelText(const std::wstring& sCategoryKey);

// "1.25 of 1": how much an artist is asked, rounded up, so that it never reads as if it could be kept.
std::string LoadText(double dLoad);

// "2026-11-22 06:00".
std::string MomentText(DateTime dtWhen);

const char* NameOf(Light eLight);         // "green", "yellow", "red"
const char* NameOf(eRuleViolation eRule); // "artist", "title", "album"; empty for none

} // namespace ravlo
