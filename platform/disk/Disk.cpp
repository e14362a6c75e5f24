// SPDX-License-Identifier: MIT
// What both systems share.
#include "platform/disk/Disk.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"
#include "platform/disk/System.h"

#include <limits>

namespace ravlo::disk
{

namespace
{

std::wstring NameOf(const std::wstring& sPath)
{
    return sPath.substr(sPath.find_last_of(separators) + 1); // from the start when there is none
}

// Where the extension of a name begins; a name that begins with its only dot has none.
std::size_t DotOf(const std::wstring& sName)
{
    const std::size_t dot = sName.rfind(L'.');
    return dot == 0 || sName == L".." ? std::wstring::npos : dot;
}

} // namespace

void RequireName(const std::wstring& sPath)
{
    const std::string bytes = Utf8Of(sPath);
    if (bytes.empty() || bytes.find('\0') != std::string::npos || !TextFromUtf8(bytes))
        throw RuntimeError(error::BadFileName, L"\"" + sPath + L"\" is no file name.");
}

std::wstring FolderOf(const std::wstring& sPath)
{
    const std::size_t separator = sPath.find_last_of(separators);
    return separator == std::wstring::npos ? sPath : FullPath(sPath.substr(0, separator + 1));
}

std::wstring StemOf(const std::wstring& sPath)
{
    const std::wstring sName = NameOf(sPath);
    return sName.substr(0, DotOf(sName));
}

std::wstring ExtensionOf(const std::wstring& sPath)
{
    const std::wstring sName = NameOf(sPath);
    const std::size_t dot = DotOf(sName);
    return dot == std::wstring::npos ? std::wstring() : sName.substr(dot);
}

std::string ReadFile(const std::wstring& sPath)
{
    RequireName(sPath);
    const PathKind eKind = KindOf(sPath);
    if (eKind == PathKind::None)
        throw RuntimeError(error::FileNotFound, L"The file \"" + sPath + L"\" was not found.");
    OpenFile cFile(sPath);
    if (eKind == PathKind::Folder || !cFile.IsOpen())
        throw RuntimeError(error::PathFileAccess, L"The file \"" + sPath + L"\" cannot be opened.");
    const std::optional<std::int64_t> size = cFile.Size();
    std::string bytes;
    if (!size || *size > std::numeric_limits<std::ptrdiff_t>::max() / 2)
        throw RuntimeError(error::DeviceIo, L"The file \"" + sPath + L"\" could not be read.");
    bytes.resize(static_cast<std::size_t>(*size));
    if (!cFile.Read(bytes))
        throw RuntimeError(error::DeviceIo, L"The file \"" + sPath + L"\" could not be read.");
    return bytes;
}

} // namespace ravlo::disk
