// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CodePage.h"

namespace ravlo
{

// Windows-1252, the western ANSI code page, for systems without code pages. A character that it lacks becomes
// '?', and one beyond the Basic Multilingual Plane "??", since it is two units on Windows. The five bytes
// without a character mean the control characters of the same number, also as on Windows.
class Latin1252CodePage final : public CodePage
{
public:
    std::string Encode(std::wstring_view sText) const override;
    std::wstring Decode(std::string_view bytes) const override;
};

} // namespace ravlo
