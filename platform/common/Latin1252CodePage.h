// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CodePage.h"

namespace ravlo
{

// Windows-1252, the western ANSI code page, where the system has none of its own. What it lacks becomes '?';
// a character beyond the Basic Multilingual Plane becomes "??", since it is two units where the system knows
// code pages. The five bytes without a character stand for the control characters of the same number, as they
// do there.
class Latin1252CodePage final : public CodePage
{
public:
    std::string Encode(std::wstring_view sText) const override;
    std::wstring Decode(std::string_view bytes) const override;
};

} // namespace ravlo
