// SPDX-License-Identifier: MIT
#include "modscheduler/FileNames.h"

#include "base/RuntimeError.h"
#include "platform/DeviceNames.h"

#include <algorithm>

namespace ravlo
{

bool CanBeFileName(std::wstring_view sName) noexcept
{
    if (sName.empty() || IsDeviceName(sName))
        return false;
    return std::none_of(sName.begin(), sName.end(), [](wchar_t c) {
        return c < L' ' || std::wstring_view(L"*/:<>?\\|\"").find(c) != std::wstring_view::npos;
    });
}

void RequireFileName(const std::wstring& sName)
{
    if (!CanBeFileName(sName))
        throw RuntimeError(error::BadFileName, L"Bad file name: \"" + sName + L"\"");
}

} // namespace ravlo
