// SPDX-License-Identifier: MIT
#include "platform/posix/StandardMessages.h"

#include "base/Utf8.h"

#include <cstdio>

namespace ravlo
{

namespace
{

void Print(const std::wstring& sTitle, const std::wstring& sText)
{
    const std::string bytes = Utf8Of(sTitle + L": " + sText + L"\n");
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

} // namespace

BoxAnswer StandardMessages::Box(BoxIcon, BoxButtons, const std::wstring& sTitle, const std::wstring& sText)
{
    Print(sTitle, sText);
    return BoxAnswer::None;
}

std::optional<std::wstring> StandardMessages::Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                                    const std::wstring&)
{
    Print(sTitle, sPrompt);
    return std::nullopt;
}

} // namespace ravlo
