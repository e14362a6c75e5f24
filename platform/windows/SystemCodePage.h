// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CodePage.h"

namespace ravlo
{

// The ANSI code page that this Windows is set to.
class SystemCodePage final : public CodePage
{
public:
    std::string Encode(std::wstring_view sText) const override;
    std::wstring Decode(std::string_view bytes) const override;
};

} // namespace ravlo
