// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// The system's ANSI code page, in which every file of the scheduler is written.
class CodePage
{
public:
    virtual ~CodePage() = default;
    // A character that the page lacks becomes the system's substitute, usually '?'. Never throws.
    virtual std::string Encode(std::wstring_view sText) const = 0;
    virtual std::wstring Decode(std::string_view bytes) const = 0;
};

} // namespace ravlo
