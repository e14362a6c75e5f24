// SPDX-License-Identifier: MIT
#include "platform/posix/PosixText.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace ravlo
{

namespace
{

bool IsCharacter(std::uint32_t lCode) { return lCode <= 0x10FFFF && (lCode < 0xD800 || lCode > 0xDFFF); }

} // namespace

std::string NativePathOf(const std::wstring& sPath)
{
    if (sPath.empty() || std::any_of(sPath.begin(), sPath.end(), [](wchar_t c) {
            return c == 0 || !IsCharacter(static_cast<std::uint32_t>(c));
        }))
        throw RuntimeError(error::BadFileName);
    std::string bytes = Utf8Of(sPath);
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return bytes;
}

std::wstring HostPathOf(std::string_view bytes)
{
    std::wstring sPath = TextFromStore(bytes);
    std::replace(sPath.begin(), sPath.end(), L'/', L'\\');
    return sPath;
}

} // namespace ravlo
