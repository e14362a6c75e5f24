// SPDX-License-Identifier: MIT
#include "ravlobase/FilePath.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"

#include <fstream>
#include <system_error>

namespace ravlo
{

std::filesystem::path FilePath(const std::wstring& sPath)
{
    const std::string bytes = Utf8Of(sPath);
    if (bytes.empty() || bytes.find('\0') != std::string::npos || !TextFromUtf8(bytes))
        throw RuntimeError(error::BadFileName, L"\"" + sPath + L"\" is no file name.");
    return std::u8string(bytes.begin(), bytes.end());
}

std::wstring PathText(const std::filesystem::path& cPath)
{
    const auto bytes = cPath.u8string();
    return TextFromStore({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

std::string ReadFile(const std::wstring& sPath)
{
    const auto cPath = FilePath(sPath);
    std::error_code failed;
    if (!std::filesystem::exists(cPath, failed))
        throw RuntimeError(error::FileNotFound, L"The file \"" + sPath + L"\" was not found.");
    std::ifstream file(cPath, std::ios::binary);
    if (std::filesystem::is_directory(cPath, failed) || !file)
        throw RuntimeError(error::PathFileAccess, L"The file \"" + sPath + L"\" cannot be opened.");
    const auto size = std::filesystem::file_size(cPath, failed);
    std::string bytes;
    if (failed || size > bytes.max_size())
        throw RuntimeError(error::DeviceIo, L"The file \"" + sPath + L"\" could not be read.");
    bytes.resize(static_cast<std::size_t>(size));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<std::size_t>(file.gcount()) != bytes.size())
        throw RuntimeError(error::DeviceIo, L"The file \"" + sPath + L"\" could not be read.");
    return bytes;
}

} // namespace ravlo
