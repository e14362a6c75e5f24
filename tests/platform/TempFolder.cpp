// SPDX-License-Identifier: MIT
#include "platform/TempFolder.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>
#include <system_error>

namespace ravlo
{

namespace
{

std::filesystem::path NativeOf(std::wstring sPath)
{
#ifndef _WIN32
    std::replace(sPath.begin(), sPath.end(), L'\\', L'/');
#endif
    return sPath;
}

} // namespace

TempFolder::TempFolder()
{
    std::random_device cChance; // several test processes run at the same time
    std::filesystem::path cPath;
    do
        cPath = std::filesystem::temp_directory_path() / (L"ravlo-test-" + std::to_wstring(cChance()));
    while (!std::filesystem::create_directory(cPath));
    m_sPath = cPath.wstring();
    std::replace(m_sPath.begin(), m_sPath.end(), L'/', L'\\');
}

TempFolder::~TempFolder()
{
    std::error_code cIgnored; // the system cleans its temporary folder
    std::filesystem::remove_all(NativeOf(m_sPath), cIgnored);
}

std::size_t TempFolder::EntryCount() const
{
    const std::filesystem::directory_iterator it(NativeOf(m_sPath));
    return static_cast<std::size_t>(std::distance(it, std::filesystem::directory_iterator()));
}

} // namespace ravlo
